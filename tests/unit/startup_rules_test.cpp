#include <gtest/gtest.h>

#include <vector>

#include "app/power_actions.h"
#include "app/program_folder.h"
#include "app/time_zone.h"
#include "base/steady_clock.h"
#include "base/ticks.h"
#include "ui/user_messages.h"

TEST(ProgramFolder, CutAtTheLastMavuBeforeTheTail)
{
    struct Case {
        const wchar_t* path;
        const wchar_t* folder;
    };
    const Case cases[] = {
        {L"C:\\Astro\\MAVU_VideoCapture.exe", L"C:\\Astro\\"},
        // The compare is case-sensitive: "Mavu" is not the word.
        {L"C:\\Astro\\Mavu_VideoCapture.exe", L"C:\\Astro\\Mavu_VideoCapture.exe\\"},
        // No word at all: the whole path, file name included.
        {L"C:\\Astro\\capture.exe", L"C:\\Astro\\capture.exe\\"},
        // The search starts ten characters before the end and goes back.
        {L"C:\\MAVU\\x\\capture.exe", L"C:\\"},
        {L"C:\\a\\MAVU.exe", L"C:\\a\\MAVU.exe\\"},
        {L"C:\\a\\bMAVU12345.exe", L"C:\\a\\b\\"},
        // Index 0 is never looked at.
        {L"MAVU_1234567890", L"MAVU_1234567890\\"},
        {L"", L"\\"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ProgramFolderFromModulePath(c.path), c.folder) << "path: " << testing::PrintToString(c.path);
}

TEST(TimeZone, EachResultGivesItsOffsetAndLine)
{
    DYNAMIC_TIME_ZONE_INFORMATION zone{};
    zone.Bias = 300;
    zone.StandardBias = 0;
    zone.DaylightBias = -60;
    wcscpy(zone.StandardName, L"Eastern Standard Time");
    wcscpy(zone.DaylightName, L"Eastern Daylight Time");

    TimeZoneReport daylight = DescribeTimeZone(TIME_ZONE_ID_DAYLIGHT, zone);
    EXPECT_TRUE(daylight.offsetKnown);
    EXPECT_EQ(daylight.utcOffsetMinutes, 240);
    EXPECT_EQ(daylight.line, L"Computer local time is Eastern Daylight Time\r\n");

    TimeZoneReport standard = DescribeTimeZone(TIME_ZONE_ID_STANDARD, zone);
    EXPECT_EQ(standard.utcOffsetMinutes, 300);
    EXPECT_EQ(standard.line, L"Computer local time is Eastern Standard Time\r\n");

    TimeZoneReport unknown = DescribeTimeZone(TIME_ZONE_ID_UNKNOWN, zone);
    EXPECT_EQ(unknown.utcOffsetMinutes, 300);
    EXPECT_EQ(unknown.line, L"Computer local time is Eastern Standard Time.  Transition dates to daylight savings "
                            L"are unknown or disabled.\r\n");

    TimeZoneReport invalid = DescribeTimeZone(TIME_ZONE_ID_INVALID, zone);
    EXPECT_FALSE(invalid.offsetKnown);
    EXPECT_EQ(invalid.line, L"Computer time zone is unknown.  You may only use local time and not use UTC time\r\n");

    // Half-hour zones east of Greenwich have negative biases.
    zone.Bias = -570;
    EXPECT_EQ(DescribeTimeZone(TIME_ZONE_ID_DAYLIGHT, zone).utcOffsetMinutes, -630);
}

// The zone this process runs in (ctest runs this test in two zones): the
// offset that ReportTimeZone keeps must turn the local clock into UTC, which
// the platform's two clocks show independently.
TEST(TimeZone, ReportTimeZoneKeepsTheOffsetThatTurnsLocalTimeIntoUtc)
{
    TakeQueuedUserMessages();
    utcOffsetMinutes = 12345;
    ReportTimeZone();
    SYSTEMTIME utc{}, local{};
    GetSystemTime(&utc);
    GetLocalTime(&local);
    int64_t measured = (static_cast<int64_t>(SystemTimeToTicks(utc)) - static_cast<int64_t>(SystemTimeToTicks(local)));
    int64_t minutes = (measured + (measured >= 0 ? 1 : -1) * static_cast<int64_t>(kTicksPerMinute) / 2) /
        static_cast<int64_t>(kTicksPerMinute);
    EXPECT_EQ(utcOffsetMinutes, minutes);
    std::vector<std::wstring> lines = TakeQueuedUserMessages();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].rfind(L"Computer local time is ", 0), 0u) << testing::PrintToString(lines[0]);
    EXPECT_EQ(lines[0].substr(lines[0].size() - 2), L"\r\n");
}

TEST(SteadyClock, CounterConversionDoesNotOverflow)
{
    EXPECT_EQ(CounterToNanoseconds(10000000, 10000000), 1000000000ull);
    EXPECT_EQ(CounterToNanoseconds(15, 10), 1500000000ull);
    // Eleven and a half days of a 10 MHz counter: a plain product with 10^9
    // would overflow, the nanoseconds fit.
    EXPECT_EQ(CounterToNanoseconds(10000001234567ull, 10000000), 1000000123456700ull);
    uint64_t before = SteadyNanoseconds();
    YieldFor(3500000);
    EXPECT_GE(SteadyNanoseconds() - before, 3500000ull);
}

// SYSTEM_POWER_CAPABILITIES begins with one-byte flags; in the platform's
// own declaration Hiberboot is the nineteenth, at offset 18, between
// FastSystemS4 and WakeAlarmPresent.
TEST(PowerCapabilities, HiberbootIsTheFlagAtOffsetEighteen)
{
    SYSTEM_POWER_CAPABILITIES capabilities{};
    BYTE* bytes = reinterpret_cast<BYTE*>(&capabilities);
    bytes[18] = 1;
    EXPECT_EQ(HiberbootFlag(capabilities), 1);
    bytes[18] = 0;
    bytes[17] = 1;
    bytes[19] = 1;
    EXPECT_EQ(HiberbootFlag(capabilities), 0);
}

// What this platform answers decides both the flag and the line.
TEST(PowerCapabilities, AComputerWithoutHiberbootIsReportedAsUnableToHibernate)
{
    SYSTEM_POWER_CAPABILITIES capabilities{};
    ASSERT_TRUE(GetPwrCapabilities(&capabilities));
    bool canHibernate = reinterpret_cast<const BYTE*>(&capabilities)[18] != 0;
    TakeQueuedUserMessages();
    hibernateSupported = 1;
    CheckPowerCapabilities();
    EXPECT_EQ(hibernateSupported != 0, canHibernate);
    std::vector<std::wstring> lines = TakeQueuedUserMessages();
    bool reported = !lines.empty() && lines[0] == L"Computer cannot be placed into hibernation\n";
    EXPECT_EQ(reported, !canHibernate) << testing::PrintToString(lines);
    hibernateSupported = 1;
}
