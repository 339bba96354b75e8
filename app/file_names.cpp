#include "app/file_names.h"

#include <cwchar>

#include "app/app_state.h"

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
    uint64_t ticks = SystemTimeToTicks(whole) + static_cast<uint64_t>(static_cast<int64_t>(offsetMinutes)) * kTicksPerMinute;
    return TicksToSystemTime(ticks);
}

SYSTEMTIME PresentUtcForFileName()
{
    SYSTEMTIME local{};
    GetLocalTime(&local);
    return UtcFromLocal(local, utcOffsetMinutes);
}

std::wstring TimeFileName(const SYSTEMTIME& time, const wchar_t* extension)
{
    wchar_t text[64];
    swprintf(text, 64, L"%2.2hu_%2.2hu_%4.4hu_%2.2hu_%2.2hu_%2.2hu%ls", time.wMonth, time.wDay, time.wYear,
             time.wHour, time.wMinute, time.wSecond, extension);
    return text;
}

std::wstring LogFilePath(const wchar_t* folder, const wchar_t* prefix, const SYSTEMTIME& utc)
{
    std::wstring path = folder;
    if (prefix[0]) {
        path += prefix;
        path += L'_';
    }
    path += TimeFileName(utc, L".txt");
    return path;
}
