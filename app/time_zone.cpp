#include "app/time_zone.h"

#include "base/report.h"
#include "base/ticks.h"

int32_t utcOffsetMinutes = 0;

SYSTEMTIME PresentUtcFromLocalClock()
{
    SYSTEMTIME local{};
    GetLocalTime(&local);
    return UtcFromLocal(local, utcOffsetMinutes);
}

TimeZoneReport DescribeTimeZone(DWORD result, const DYNAMIC_TIME_ZONE_INFORMATION& zone)
{
    TimeZoneReport report{true, 0, L"Computer local time is "};
    switch (result) {
    case TIME_ZONE_ID_DAYLIGHT:
        report.utcOffsetMinutes = zone.Bias + zone.DaylightBias;
        report.line += zone.DaylightName;
        report.line += L"\r\n";
        break;
    case TIME_ZONE_ID_STANDARD:
        report.utcOffsetMinutes = zone.Bias + zone.StandardBias;
        report.line += zone.StandardName;
        report.line += L"\r\n";
        break;
    case TIME_ZONE_ID_UNKNOWN:
        report.utcOffsetMinutes = zone.Bias + zone.StandardBias;
        report.line += zone.StandardName;
        report.line += L".  Transition dates to daylight savings are unknown or disabled.\r\n";
        break;
    default:
        report.offsetKnown = false;
        report.line = L"Computer time zone is unknown.  You may only use local time and not use UTC time\r\n";
        break;
    }
    return report;
}

void ReportTimeZone()
{
    DYNAMIC_TIME_ZONE_INFORMATION zone{};
    DWORD result = GetDynamicTimeZoneInformation(&zone);
    TimeZoneReport report = DescribeTimeZone(result, zone);
    if (report.offsetKnown)
        utcOffsetMinutes = report.utcOffsetMinutes;
    ReportUserMessage(report.line.c_str(), true);
}
