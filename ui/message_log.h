// Saving the User Messages text as a log file, on the user's command only.
#pragma once

#include <windows.h>

#include <string>

constexpr int kLogPathCapacity = 512;

// Path of the last save, rewritten by each save.
extern wchar_t userMessageLogPath[kLogPathCapacity];

// folder + (prefix "_" when the prefix isn't empty) + time name + ".txt"
std::wstring LogFilePath(const wchar_t* folder, const wchar_t* prefix, const SYSTEMTIME& utc);

// Rewrites userMessageLogPath: the log folder (LogfileDirectory, or
// "LogFiles\" made on the spot), the prefix and the present UTC time.
void BuildUserMessageLogPath();

// The two commands of the window's File menu.
void SaveUserMessages(bool clearAfter);
