#include <gtest/gtest.h>

#include <ctime>

#include "base/ticks.h"
#include "base/time_text.h"
#include "ui/message_log.h"
#include "support/times.h"

namespace {

using testsupport::Duration;
using testsupport::Time;

bool Same(const SYSTEMTIME& a, const SYSTEMTIME& b)
{
    return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour &&
           a.wMinute == b.wMinute && a.wSecond == b.wSecond && a.wMilliseconds == b.wMilliseconds;
}

}  // namespace

TEST(FileNames, LogPathHasFolderPrefixAndUtcTime)
{
    SYSTEMTIME utc = Time(2026, 2, 3, 9, 5, 7);
    EXPECT_EQ(LogFilePath(L"LogFiles\\", L"abc", utc), L"LogFiles\\abc_02_03_2026_09_05_07.txt");
    // No prefix, no leading underscore.
    EXPECT_EQ(LogFilePath(L"LogFiles\\", L"", utc), L"LogFiles\\02_03_2026_09_05_07.txt");
    // A chosen folder is used as it stands.
    EXPECT_EQ(LogFilePath(L"D:\\logs\\", L"x", Time(1999, 12, 31, 23, 59, 59)),
              L"D:\\logs\\x_12_31_1999_23_59_59.txt");
    EXPECT_EQ(TimeFileName(Time(2027, 11, 1, 0, 0, 0), L".avi"), L"11_01_2027_00_00_00.avi");
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
        {Time(2026, 6, 1, 12, 0, 0), 0, Time(2026, 6, 1, 12, 0, 0)},
    };
    for (const Case& c : cases) {
        SYSTEMTIME got = UtcFromLocal(c.local, c.offsetMinutes);
        EXPECT_TRUE(Same(got, c.utc)) << got.wYear << "-" << got.wMonth << "-" << got.wDay << " " << got.wHour << ":"
                                      << got.wMinute << ":" << got.wSecond << "." << got.wMilliseconds;
    }
}

// Ticks count 100 ns from 1601-01-01 UTC. The expected counts were worked
// out apart from the program: days since 1601 times 864,000,000,000, plus the
// time of day.
TEST(FileNames, TicksCountFrom1601AndRoundTrip)
{
    SYSTEMTIME time = Time(2026, 11, 22, 17, 4, 33, 250);
    uint64_t ticks = SystemTimeToTicks(time);
    EXPECT_EQ(ticks, 134398406732500000ull);
    EXPECT_TRUE(Same(TicksToSystemTime(ticks), time));
    EXPECT_EQ(SystemTimeToTicks(Time(2026, 11, 23, 17, 4, 33, 250)) - ticks, kTicksPerDay);
    // The Unix epoch.
    EXPECT_EQ(SystemTimeToTicks(Time(1970, 1, 1, 0, 0, 0)), 116444736000000000ull);
    // An impossible date gives 0 rather than a wrong time.
    EXPECT_EQ(SystemTimeToTicks(Time(2026, 13, 1, 0, 0, 0)), 0u);
    EXPECT_EQ(SystemTimeToTicks(Time(2026, 2, 30, 0, 0, 0)), 0u);
    // The present UTC, against the C library's clock.
    uint64_t fromUnix = 116444736000000000ull + static_cast<uint64_t>(std::time(nullptr)) * kTicksPerSecond;
    uint64_t now = UtcNowTicks();
    EXPECT_LT((now > fromUnix ? now - fromUnix : fromUnix - now), 2 * kTicksPerSecond);
}
