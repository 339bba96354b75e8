// SYSTEMTIME values for tests, written as the calendar reads.
#pragma once

#include <windows.h>

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

}  // namespace testsupport
