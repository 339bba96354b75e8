// Times as 64-bit counts of 100-nanosecond ticks, the unit of FILETIME, and
// the conversions to and from SYSTEMTIME.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr uint64_t kTicksPerMillisecond = 10000;
constexpr uint64_t kTicksPerSecond = 10000000;
constexpr uint64_t kTicksPerMinute = 600000000;
constexpr uint64_t kTicksPerDay = 864000000000;

// 0 when the time isn't a valid date.
uint64_t SystemTimeToTicks(const SYSTEMTIME& time);
SYSTEMTIME TicksToSystemTime(uint64_t ticks);

// UTC worked out from a local time by a bias in minutes, with the
// milliseconds dropped.
SYSTEMTIME UtcFromLocal(const SYSTEMTIME& local, int32_t utcOffsetMinutes);

// The present UTC time by GetSystemTime, as ticks.
uint64_t UtcNowTicks();
// The present UTC time as precisely as the system keeps it, as ticks.
uint64_t PreciseUtcNowTicks();
