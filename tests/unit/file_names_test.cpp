#include <gtest/gtest.h>

#include <ctime>

#include "base/name_text.h"
#include "base/ticks.h"
#include "base/time_text.h"
#include "events/event_file.h"
#include "events/event_rules.h"
#include "ui/message_log.h"
#include "support/times.h"

namespace {

using testsupport::CalendarText;
using testsupport::Time;

}  // namespace

// Log, event and video file names and the patterns shown for them: the
// folder as it stands, the prefixes in their order with an underscore
// behind each that isn't empty, then the UTC time and the extension.
TEST(FileNames, PrefixesJoinInTheirOrderBeforeTheTimeAndEmptyOnesLeaveNone)
{
    SYSTEMTIME utc = Time(2026, 2, 3, 9, 5, 7);
    EventFileText event{};
    wcscpy(event.asteroidName, L"2002KB");
    wcscpy(event.starName, L"TYC1234");
    EventFileText starOnly{};
    wcscpy(starOnly.starName, L"TYC1234");
    const std::pair<std::wstring, const wchar_t*> cases[] = {
        {LogFilePath(L"LogFiles\\", L"abc", utc), L"LogFiles\\abc_02_03_2026_09_05_07.txt"},
        {LogFilePath(L"D:\\logs\\", L"", Time(1999, 12, 31, 23, 59, 59)), L"D:\\logs\\12_31_1999_23_59_59.txt"},
        {EventFileName(event, L"OBS", utc), L"Events\\2002KB_TYC1234_OBS_02_03_2026_09_05_07.mef"},
        {EventFileName(starOnly, L"", utc), L"Events\\TYC1234_02_03_2026_09_05_07.mef"},
        {EventFileName(EventFileText{}, L"", utc), L"Events\\02_03_2026_09_05_07.mef"},
        {VideoFilePath(L"VideoFiles\\", L"Vesta", L"TYC 1", L"OBS", L"cam", utc),
         L"VideoFiles\\Vesta_TYC 1_OBS_cam_02_03_2026_09_05_07.avi"},
        {VideoFilePath(L"D:\\v\\", nullptr, nullptr, nullptr, L"", utc), L"D:\\v\\02_03_2026_09_05_07.avi"},
        {VideoFilePath(L"", L"", L"Star", L"", L"", utc), L"Star_02_03_2026_09_05_07.avi"},
        {NamePattern(L"ab", L".avi"), L"ab_mm_dd_yyyy_hh_mm_ss.avi"},
        {NamePattern(L"", L".txt"), L"mm_dd_yyyy_hh_mm_ss.txt"},
        {TimeFileName(Time(2027, 11, 1, 0, 0, 0), L".avi"), L"11_01_2027_00_00_00.avi"},
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(name, expected);
}

TEST(FileNames, UtcFromLocalAppliesTheBiasAndDropsMilliseconds)
{
    struct Case {
        SYSTEMTIME local;
        int32_t offsetMinutes;
        SYSTEMTIME utc;
    };
    const Case cases[] = {
        // New York in winter: UTC is five hours later.
        {Time(2026, 1, 15, 20, 30, 0, 500), 300, Time(2026, 1, 16, 1, 30, 0)},
        // Adelaide in summer: half-hour zone ahead of UTC, back across midnight and a month end.
        {Time(2026, 3, 1, 0, 10, 5, 999), -630, Time(2026, 2, 28, 13, 40, 5)},
        // Year end, leap day.
        {Time(2024, 12, 31, 23, 0, 0), 120, Time(2025, 1, 1, 1, 0, 0)},
        {Time(2024, 2, 28, 23, 59, 59), 1, Time(2024, 2, 29, 0, 0, 59)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CalendarText(UtcFromLocal(c.local, c.offsetMinutes)), CalendarText(c.utc));
}

// Ticks count 100 ns from 1601-01-01 UTC. The expected counts were worked
// out apart from the program: days since 1601 times 864,000,000,000, plus the
// time of day.
TEST(FileNames, TicksCountFrom1601AndRoundTrip)
{
    SYSTEMTIME time = Time(2026, 11, 22, 17, 4, 33, 250);
    uint64_t ticks = SystemTimeToTicks(time);
    EXPECT_EQ(ticks, 134398406732500000ull);
    EXPECT_EQ(CalendarText(TicksToSystemTime(ticks)), CalendarText(time));
    EXPECT_EQ(SystemTimeToTicks(Time(2026, 11, 23, 17, 4, 33, 250)) - ticks, kTicksPerDay);
    // The Unix epoch.
    EXPECT_EQ(SystemTimeToTicks(Time(1970, 1, 1, 0, 0, 0)), 116444736000000000ull);
    // An impossible date gives 0 rather than a wrong time.
    EXPECT_EQ(SystemTimeToTicks(Time(2026, 13, 1, 0, 0, 0)), 0u);
    // The present UTC, against the C library's clock.
    uint64_t fromUnix = 116444736000000000ull + static_cast<uint64_t>(std::time(nullptr)) * kTicksPerSecond;
    uint64_t now = UtcNowTicks();
    EXPECT_LT((now > fromUnix ? now - fromUnix : fromUnix - now), 2 * kTicksPerSecond);
}
