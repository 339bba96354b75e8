// The computer's clock against GPS time: the GGA time field, the offset across midnight, and the warning's text.
#include "gps/clock_check.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/ticks.h"

namespace {

uint64_t Utc(WORD day, WORD hour, WORD minute, WORD second, WORD millisecond)
{
    SYSTEMTIME time{2026, 11, 0, day, hour, minute, second, millisecond};
    return SystemTimeToTicks(time);
}

}  // namespace

TEST(ClockCheck, TheGgaTimeField)
{
    struct Row {
        const char* field;
        bool known;
        double seconds;
    } rows[] = {
        {"123519", true, 12 * 3600 + 35 * 60 + 19},
        {"123519.50", true, 12 * 3600 + 35 * 60 + 19.5},
        {"000000.00", true, 0},
        {"235959.999", true, 86399.999},
        {"235960.00", true, 86400},  // a leap second
        {"12351", false, 0},
        {"1235a9.00", false, 0},
        {"123519,", false, 0},
        {"123519.5x", false, 0},
        {"246000", false, 0},
        {"126000", false, 0},
    };
    for (const Row& row : rows) {
        double seconds = -1;
        EXPECT_EQ(GgaTimeOfDay(row.field, std::strlen(row.field), &seconds), row.known) << row.field;
        if (row.known) {
            EXPECT_NEAR(seconds, row.seconds, 1e-9) << row.field;
        }
    }
    EXPECT_FALSE(GgaTimeOfDay(nullptr, 0, nullptr));
}

TEST(ClockCheck, TheOffsetIsTheComputerMinusGpsAcrossMidnight)
{
    struct Row {
        double gps;
        uint64_t computer;
        double offset;
    } rows[] = {
        {12 * 3600 + 3, Utc(26, 12, 0, 0, 0), -3.0},  // the computer 3 s behind
        {12 * 3600, Utc(26, 12, 0, 1, 500), 1.5},
        // GPS already past midnight, the computer not yet.
        {1.0, Utc(26, 23, 59, 59, 0), -2.0},
        // The computer past midnight, GPS not yet.
        {86399.5, Utc(27, 0, 0, 0, 500), 1.0},
        // Twelve hours apart is as far as it goes.
        {0, Utc(26, 11, 59, 0, 0), 43140.0},
        {0, Utc(26, 12, 1, 0, 0), -43140.0},
    };
    for (const Row& row : rows)
        EXPECT_NEAR(ClockOffsetSeconds(row.gps, row.computer), row.offset, 1e-6) << row.gps;
}

TEST(ClockCheck, AWarningOnlyBeyondOneSecond)
{
    struct Row {
        double offset;
        const wchar_t* warning;
    } rows[] = {
        {-3.04, L"WARNING: computer clock is 3.0 s behind GPS time\r\n"},
        {1.06, L"WARNING: computer clock is 1.1 s ahead of GPS time\r\n"},
        {-1.0, L""},
        {1.0, L""},
        {-3600.0, L"WARNING: computer clock is 3600.0 s behind GPS time\r\n"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ClockOffsetWarning(row.offset), row.warning) << row.offset;
}
