// The computer's time zone, read once at start-up.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// Minutes that turn local time into UTC, read once at start-up.
extern int32_t utcOffsetMinutes;

// The present UTC time, worked out from the local clock by that bias with
// the milliseconds dropped. The program names its files this way, not by
// GetSystemTime.
SYSTEMTIME PresentUtcFromLocalClock();

struct TimeZoneReport {
    bool offsetKnown;
    int32_t utcOffsetMinutes;  // minutes that turn local time into UTC
    std::wstring line;
};

// What a GetDynamicTimeZoneInformation result means for the program.
TimeZoneReport DescribeTimeZone(DWORD result, const DYNAMIC_TIME_ZONE_INFORMATION& zone);

// Sets utcOffsetMinutes and reports the zone. A change of daylight saving
// during a run is not followed.
void ReportTimeZone();
