// Names of the files that the program writes: message logs now, recordings
// later. Pure functions over times the caller supplies.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// 100-nanosecond ticks.
constexpr uint64_t kTicksPerMillisecond = 10000;
constexpr uint64_t kTicksPerSecond = 10000000;
constexpr uint64_t kTicksPerMinute = 600000000;
constexpr uint64_t kTicksPerDay = 864000000000;

uint64_t SystemTimeToTicks(const SYSTEMTIME& time);
SYSTEMTIME TicksToSystemTime(uint64_t ticks);

// UTC worked out from a local time by the bias measured at start-up, with the
// milliseconds dropped. The program names its files this way, not by
// GetSystemTime.
SYSTEMTIME UtcFromLocal(const SYSTEMTIME& local, int32_t utcOffsetMinutes);

// The present UTC time by that rule.
SYSTEMTIME PresentUtcForFileName();

// "mm_dd_yyyy_hh_mm_ss" followed by the extension (".txt", ".avi").
std::wstring TimeFileName(const SYSTEMTIME& time, const wchar_t* extension);

// folder + (prefix "_" when the prefix isn't empty) + time name + ".txt"
std::wstring LogFilePath(const wchar_t* folder, const wchar_t* prefix, const SYSTEMTIME& utc);
