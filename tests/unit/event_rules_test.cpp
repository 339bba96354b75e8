// The event queue's rules over plain values.
#include "events/event_rules.h"
#include "support/times.h"

#include <gtest/gtest.h>

namespace {

using testsupport::Duration;
using testsupport::Time;

EventRecord Event(const SYSTEMTIME& moment, int seconds, uint64_t now)
{
    EventRecord record{};
    record.eventTime = moment;
    record.duration = Duration(static_cast<WORD>(seconds / 3600), static_cast<WORD>(seconds / 60 % 60),
                               static_cast<WORD>(seconds % 60));
    ComputeEventTimesAt(record, record.eventTime, record.duration, now);
    return record;
}

const uint64_t kNoon = SystemTimeToTicks(Time(2026, 11, 22, 12, 0, 0));

}  // namespace

TEST(EventRules, AdmissionKeepsLatestFirstAndTheOrderOfFilesDecidesOverlaps)
{
    // 20 s apart (each 10 s long): the later one in time is refused only
    // when it comes second.
    EventRecord early = Event(Time(2026, 11, 22, 12, 10, 0), 10, kNoon);
    EventRecord late = Event(Time(2026, 11, 22, 12, 10, 20), 10, kNoon);
    std::vector<EventRecord*> list;
    EXPECT_EQ(AdmitEventInto(list, &early, kNoon), EventAdmitted);
    EXPECT_EQ(AdmitEventInto(list, &late, kNoon), EventOverlaps);
    list.clear();
    EXPECT_EQ(AdmitEventInto(list, &late, kNoon), EventAdmitted);
    EXPECT_EQ(AdmitEventInto(list, &early, kNoon), EventAdmitted);

    // 60 s apart: both, in either order, latest first (the next event is last).
    EventRecord a = Event(Time(2026, 11, 22, 12, 20, 0), 10, kNoon);
    EventRecord b = Event(Time(2026, 11, 22, 12, 21, 0), 10, kNoon);
    EventRecord c = Event(Time(2026, 11, 22, 12, 22, 0), 10, kNoon);
    list.clear();
    for (EventRecord* record : {&b, &c, &a})
        EXPECT_EQ(AdmitEventInto(list, record, kNoon), EventAdmitted);
    EXPECT_EQ(list, (std::vector<EventRecord*>{&c, &b, &a}));
}

TEST(EventRules, AnEventUnderwayKeepsItsRestUnlessTenSecondsOrLessRemain)
{
    // Centred on 12:00:05 with 20 s: 11:59:55 to 12:00:15.
    EventRecord running = Event(Time(2026, 11, 22, 12, 0, 5), 20, kNoon);
    std::vector<EventRecord*> list;
    EXPECT_EQ(AdmitEventInto(list, &running, kNoon), EventAdmitted);
    EXPECT_EQ(running.durationTicks, 15 * kTicksPerSecond);

    // Exactly 10 s left, and 5 s left: refused.
    for (int secondsLeft : {10, 5}) {
        EventRecord ending = Event(Time(2026, 11, 22, 12, 0, 0), 20, kNoon);
        uint64_t now = ending.endTicks - static_cast<uint64_t>(secondsLeft) * kTicksPerSecond;
        list.clear();
        EXPECT_EQ(AdmitEventInto(list, &ending, now), EventTooLate) << secondsLeft;
        EXPECT_TRUE(list.empty());
    }
}

TEST(EventRules, StoppedEventsMatchWithoutTheYearAndTakeItOn)
{
    std::vector<StoppedEventKey> stopped{{Time(2025, 11, 22, 12, 10, 0), Duration(0, 0, 10)}};
    EventRecord same = Event(Time(2026, 11, 22, 12, 10, 0), 10, kNoon);
    EXPECT_TRUE(MatchesStoppedEvent(stopped, same));
    EXPECT_EQ(stopped[0].eventTime.wYear, 2026);
    EventRecord longer = Event(Time(2026, 11, 22, 12, 10, 0), 20, kNoon);
    EXPECT_FALSE(MatchesStoppedEvent(stopped, longer));
    EventRecord otherDay = Event(Time(2026, 11, 23, 12, 10, 0), 10, kNoon);
    EXPECT_FALSE(MatchesStoppedEvent(stopped, otherDay));
}

TEST(EventRules, DeadlineIsTheLocalNominalStartLessHalfASecond)
{
    uint64_t start = SystemTimeToTicks(Time(2026, 11, 22, 12, 0, 0));
    // New York in winter: UTC is local plus 300 minutes, so local is UTC less.
    EXPECT_EQ(CountdownDeadlineTicks(start, 300), SystemTimeToTicks(Time(2026, 11, 22, 7, 0, 0)) - 5000000);
    // A half-hour zone east of UTC, across midnight.
    uint64_t late = SystemTimeToTicks(Time(2026, 12, 31, 23, 45, 0));
    EXPECT_EQ(CountdownDeadlineTicks(late, -630), SystemTimeToTicks(Time(2027, 1, 1, 10, 15, 0)) - 5000000);
}

TEST(EventRules, CountdownTextsForClockAndDays)
{
    struct Row {
        int64_t left;
        const wchar_t* text;
    } rows[] = {
        {0, L"00:00:00"},
        {static_cast<int64_t>(kTicksPerSecond) * 3725, L"01:02:05"},
        {static_cast<int64_t>(kTicksPerDay), L"00:00:00"},  // exactly one day: the clock form
        {static_cast<int64_t>(kTicksPerDay) + 1, L"> 1 day "},
        {static_cast<int64_t>(kTicksPerDay) * 2 + 5, L"> 2 days"},
        {static_cast<int64_t>(kTicksPerDay) * 99 + 5, L"> 99 days"},
        {static_cast<int64_t>(kTicksPerDay) * 100 + 5, L"> 100 days"},
        {static_cast<int64_t>(kTicksPerDay) * 400, L"> 100 days"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(CountdownLeftText(row.left), row.text) << row.left;
    EXPECT_EQ(ClockText(Time(2026, 1, 1, 7, 5, 9)), L"07:05:09");
}

TEST(EventRules, EventReportGivesTheThreeTimesAndTheDurationInWords)
{
    EventRecord record = Event(Time(2026, 1, 3, 0, 0, 30), 3661, kNoon);
    EXPECT_EQ(EventReportText(record),
              L"Current Event Information:\n"
              L"    Start time:\tJAN 2, 2026  23:29:59\r\n"
              L"    Event time:\tJAN 3, 2026  00:00:30\r\n"
              L"    End time:\tJAN 3, 2026  00:31:00\r\n"
              L"    Recording duration: 1 hour  1 minute  1 second\r\n");
    EventRecord plural = Event(Time(2026, 12, 31, 23, 59, 59), 7322, kNoon);
    EXPECT_NE(EventReportText(plural).find(L"2 hours  2 minutes  2 seconds\r\n"), std::wstring::npos);
}
