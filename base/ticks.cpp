#include "base/ticks.h"

uint64_t SystemTimeToTicks(const SYSTEMTIME& time)
{
    FILETIME fileTime{};
    if (!SystemTimeToFileTime(&time, &fileTime))
        return 0;
    return (static_cast<uint64_t>(fileTime.dwHighDateTime) << 32) | fileTime.dwLowDateTime;
}

SYSTEMTIME TicksToSystemTime(uint64_t ticks)
{
    FILETIME fileTime{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SYSTEMTIME time{};
    FileTimeToSystemTime(&fileTime, &time);
    return time;
}

SYSTEMTIME UtcFromLocal(const SYSTEMTIME& local, int32_t offsetMinutes)
{
    SYSTEMTIME whole = local;
    whole.wMilliseconds = 0;
    // The offset may be negative: unsigned wrap-around adds it correctly.
    uint64_t ticks =
        SystemTimeToTicks(whole) + static_cast<uint64_t>(static_cast<int64_t>(offsetMinutes)) * kTicksPerMinute;
    return TicksToSystemTime(ticks);
}

uint64_t UtcNowTicks()
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    return SystemTimeToTicks(now);
}

uint64_t PreciseUtcNowTicks()
{
    FILETIME now{};
    GetSystemTimePreciseAsFileTime(&now);
    return (static_cast<uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime;
}
