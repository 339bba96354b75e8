#include <gtest/gtest.h>

#include <cwchar>

#include "base/ticks.h"
#include "events/event_file.h"
#include "support/code_page.h"
#include "support/temp_folder.h"
#include "support/times.h"

namespace {

using testsupport::CalendarText;
using testsupport::Duration;
using testsupport::Time;

EventFileText SampleEvent()
{
    EventFileText text{};
    FormatEventNumbers(text, Time(2026, 5, 3, 1, 2, 3), Duration(0, 10, 0));
    wcscpy(text.hibernate, L"TRUE");
    wcscpy(text.shutdown, L"FALSE");
    wcscpy(text.comment, L"Com\u00E8te & <check> \"it\"");
    wcscpy(text.asteroidName, L"2002KB");
    wcscpy(text.starName, L"TYC1234");
    return text;
}

const char kSampleEventBytes[] =
    "<?xml version='1.0'?>\r\n"
    "<!--MAVU Event File Version 2.1-->\r\n"
    "<Root>\r\n"
    "\t<EventYear Value=\"2026\"/>\r\n"
    "\t<EventMonth Value=\" 5\"/>\r\n"
    "\t<EventDay Value=\" 3\"/>\r\n"
    "\t<EventHour Value=\" 1\"/>\r\n"
    "\t<EventMinute Value=\" 2\"/>\r\n"
    "\t<EventSecond Value=\" 3\"/>\r\n"
    "\t<DurationHour Value=\" 0\"/>\r\n"
    "\t<DurationMinute Value=\"10\"/>\r\n"
    "\t<DurationSecond Value=\" 0\"/>\r\n"
    "\t<Hibernate Value=\"TRUE\"/>\r\n"
    "\t<Shutdown Value=\"FALSE\"/>\r\n"
    "\t<Comment Value=\"Com\xE8te &amp; &lt;check&gt; &quot;it&quot;\"/>\r\n"
    "\t<AsteroidName Value=\"2002KB\"/>\r\n"
    "\t<StarName Value=\"TYC1234\"/>\r\n"
    "</Root>\r\n";

}  // namespace

TEST(EventFile, WrittenBytesAreExactAndReadBackGivesTheSameFieldsAndTimes)
{
    ASSERT_TRUE(NarrowCodePageIs1252());
    TempFolder folder;
    EventFileText written = SampleEvent();
    ASSERT_EQ(WriteEventFile(folder.File(L"event.mef").c_str(), &written), 1);
    EXPECT_EQ(ReadFileBytes(folder.File(L"event.mef")), kSampleEventBytes);

    EventRecord record{};
    ASSERT_EQ(ReadEventFile(folder.File(L"event.mef").c_str(), record.text), 1);
    for (const wchar_t* name : kEventFieldNames) {
        EventFileText a = written, b = record.text;
        EXPECT_STREQ(EventFieldByName(a, name, nullptr), EventFieldByName(b, name, nullptr))
            << testing::PrintToString(name);
    }
    ParseEventRecordAt(record, SystemTimeToTicks(Time(2026, 5, 3, 0, 0, 0)));
    EXPECT_EQ(CalendarText(record.eventTime), "2026-05-03 01:02:03.000");
    EXPECT_EQ(CalendarText(record.duration), "0000-00-00 00:10:00.000");
    EXPECT_EQ(record.hibernate, 1);
    EXPECT_EQ(record.shutdown, 0);
    EXPECT_EQ(record.startTicks, SystemTimeToTicks(Time(2026, 5, 3, 0, 57, 3)));
    EXPECT_EQ(record.endTicks, SystemTimeToTicks(Time(2026, 5, 3, 1, 7, 3)));
    EXPECT_EQ(record.expired, 0);

    // Empty values are written too; no path or no record writes nothing.
    EventFileText empty{};
    ASSERT_EQ(WriteEventFile(folder.File(L"empty.mef").c_str(), &empty), 1);
    std::string bytes = ReadFileBytes(folder.File(L"empty.mef"));
    EXPECT_NE(bytes.find("\t<Comment Value=\"\"/>\r\n"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("\t<EventYear Value=\"\"/>\r\n"), std::string::npos) << bytes;
    EXPECT_EQ(WriteEventFile(nullptr, &empty), 0);
    EXPECT_EQ(WriteEventFile(folder.File(L"x.mef").c_str(), nullptr), 0);
}

TEST(EventFile, ReadingRulesForElementsAndAttributes)
{
    TempFolder folder;
    // No declaration, no comment, no whitespace nodes, another root name,
    // keys out of order, a repeated key (the later wins), an unknown key, a
    // key in the wrong case, an attribute of another name, two attributes
    // (the first counts), an element without attributes, and blanks.
    WriteFileBytes(folder.File(L"odd.mef"),
                   "<Events><StarName Value=\"Star\"/><EventYear Other=\"2030\"/><EventMonth Other=\"1\" "
                   "Value=\"9\"/><EventDay Value=\"  7\"/><EventHour Value=\"3\"/><EventHour Value=\"4\"/>"
                   "<EventMinute Value=\"05\"/><EventSecond Value=\"6\"/><DurationHour Value=\"0\"/>"
                   "<DurationMinute Value=\"1\"/><DurationSecond Value=\"0\"/><hibernate Value=\"TRUE\"/>"
                   "<Shutdown Value=\"true\"/><Unknown Value=\"x\"/><Comment/></Events>");
    EventRecord record{};
    ASSERT_EQ(ReadEventFile(folder.File(L"odd.mef").c_str(), record.text), 1);
    EXPECT_STREQ(record.text.starName, L"Star");
    EXPECT_STREQ(record.text.eventYear, L"2030");
    EXPECT_STREQ(record.text.eventMonth, L"1");
    EXPECT_STREQ(record.text.eventHour, L"4");
    EXPECT_STREQ(record.text.hibernate, L"");
    EXPECT_STREQ(record.text.comment, L"");
    ParseEventRecordAt(record, SystemTimeToTicks(Time(2026, 1, 1, 0, 0, 0)));
    EXPECT_EQ(CalendarText(record.eventTime), "2030-01-07 04:05:06.000");
    EXPECT_EQ(record.hibernate, 0);
    EXPECT_EQ(record.shutdown, 0);  // "true" is not "TRUE"
}

TEST(EventTimes, RecordingIsCentredOnThePredictedMomentAndExpiresAtItsEnd)
{
    // Zero duration: start, end and event coincide.
    SYSTEMTIME event = Time(2026, 7, 15, 12, 0, 0);
    EventRecord zero{};
    ComputeEventTimesAt(zero, event, Duration(0, 0, 0), 0);
    EXPECT_EQ(zero.startTicks, SystemTimeToTicks(event));
    EXPECT_EQ(zero.endTicks, SystemTimeToTicks(event));

    // The longest duration the picker allows: half of it is 43,199.5 s.
    EventRecord longest{};
    ComputeEventTimesAt(longest, event, Duration(23, 59, 59), 0);
    EXPECT_EQ(longest.durationTicks, 86399ull * kTicksPerSecond);
    EXPECT_EQ(SystemTimeToTicks(event) - longest.startTicks, 431995000000ull);
    EXPECT_EQ(longest.endTicks - SystemTimeToTicks(event), 431995000000ull);

    // Expired from the end onwards.
    EventRecord record{};
    uint64_t end = SystemTimeToTicks(Time(2026, 7, 15, 12, 0, 30));
    ComputeEventTimesAt(record, event, Duration(0, 1, 0), end - 1);
    EXPECT_EQ(record.expired, 0);
    ComputeEventTimesAt(record, event, Duration(0, 1, 0), end);
    EXPECT_EQ(record.expired, 1);
    EXPECT_EQ(record.nowTicks, end);
}
