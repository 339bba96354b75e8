// Times as the program writes them in its lines and file names.
#pragma once

#include <windows.h>

#include <string>

// "HH:mm:ss" of the given time: 24-hour clock, no time marker, by the
// platform's time formatting.
std::wstring FormatTimeOfDay(const SYSTEMTIME& time);

// "HH:mm:ss" of the UTC clock now.
std::wstring UtcClockText();

// "mm_dd_yyyy_hh_mm_ss" followed by the extension (".txt", ".avi", ".mef").
std::wstring TimeFileName(const SYSTEMTIME& time, const wchar_t* extension);
