// SYSTEMTIME values for tests, written as the calendar reads.
#pragma once

#include <windows.h>

#include <cstdio>
#include <string>

namespace testsupport {

inline SYSTEMTIME Time(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second, WORD millisecond = 0)
{
    SYSTEMTIME time{};
    time.wYear = year;
    time.wMonth = month;
    time.wDay = day;
    time.wHour = hour;
    time.wMinute = minute;
    time.wSecond = second;
    time.wMilliseconds = millisecond;
    return time;
}

// A duration as event records hold it: hour, minute and second only.
inline SYSTEMTIME Duration(WORD hour, WORD minute, WORD second)
{
    return Time(0, 0, 0, hour, minute, second);
}

// "YYYY-MM-DD hh:mm:ss.mmm", for comparing whole times (the day of the week
// left out) with a readable failure.
inline std::string CalendarText(const SYSTEMTIME& time)
{
    char text[32];
    std::snprintf(text, sizeof text, "%04hu-%02hu-%02hu %02hu:%02hu:%02hu.%03hu", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    return text;
}

}  // namespace testsupport
