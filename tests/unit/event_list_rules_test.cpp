#include <gtest/gtest.h>

#include <array>
#include <cwchar>

#include "base/name_text.h"
#include "base/ticks.h"
#include "events/event_list_rules.h"
#include "support/times.h"

using testsupport::Duration;
using testsupport::Time;

TEST(NameCharacters, OnlyLettersDigitsHyphenBlankAndUnderscoreStayInNames)
{
    struct Case {
        const wchar_t* typed;
        bool comment;
        const wchar_t* kept;
        int removed;
    };
    const Case cases[] = {
        {L"TYC 1234-5_a", false, L"TYC 1234-5_a", 0},
        {L"a{b}(c)[d].e:f+g#h*i", false, L"abcdefghi", 1},
        {L"a{b}(c)[d].e:f+g#h*i", true, L"a{b}(c)[d].e:f+g#h*i", 0},
        // Characters no name may hold, in a comment too.
        {L"a/b\\c'd\"e<f>g|h?i!j,k;l=m&n%o$p@q~r`s^t", true, L"abcdefghijklmnopqrst", 1},
        {L"Caf\u00e9 \u03b1", true, L"Caf ", 1},
        {L"\t\r\nx", false, L"x", 1},
        {L"", false, L"", 0},
        {L"///", true, L"", 1},
    };
    for (const Case& c : cases) {
        wchar_t text[64];
        wcscpy(text, c.typed);
        EXPECT_EQ(FilterNameCharacters(text, c.comment), c.removed) << testing::PrintToString(c.typed);
        EXPECT_STREQ(text, c.kept) << testing::PrintToString(c.typed);
    }
}

TEST(NameCharacters, HostNamesBecomeLowerCasePrefixesOfTwelve)
{
    struct Case {
        const wchar_t* computer;
        const wchar_t* prefix;
        bool removed;
    };
    const Case cases[] = {
        {L"Lab_PC.local", L"lab_pclocal", true},
        {L"OBSERVATORY-NORTH", L"observatory-", false},
        {L"", L"", false},
        {L"##", L"", true},
    };
    for (const Case& c : cases) {
        bool removed = !c.removed;
        EXPECT_EQ(HostNamePrefix(c.computer, &removed), c.prefix) << testing::PrintToString(c.computer);
        EXPECT_EQ(removed, c.removed) << testing::PrintToString(c.computer);
    }
}

namespace {

EventRecord Record(const SYSTEMTIME& moment, const SYSTEMTIME& duration, const wchar_t* comment, bool hibernate,
                   bool shutdown, bool expired)
{
    EventRecord record{};
    FormatEventNumbers(record.text, moment, duration);
    wcscpy(record.text.comment, comment);
    record.eventTime = moment;
    record.duration = duration;
    record.hibernate = hibernate;
    record.shutdown = shutdown;
    record.expired = expired;
    return record;
}

}  // namespace

TEST(EventList, CellsShowTheFieldsAsTheFileHoldsThem)
{
    const wchar_t* mark = kEventListMark;
    // A file written by hand without the blanks shows as it stands.
    EventRecord hand = Record(Time(2026, 1, 9, 8, 7, 6), Duration(0, 1, 0), L"", false, false, false);
    wcscpy(hand.text.eventDay, L"9");
    wcscpy(hand.text.eventHour, L"8");
    // A file that couldn't be read: its expired mark and its name only.
    EventRecord unread{};
    unread.expired = 1;
    struct Case {
        EventRecord record;
        const wchar_t* name;
        bool read;
        std::array<std::wstring, 8> cells;
    };
    const Case kCases[] = {
        {Record(Time(2026, 5, 3, 1, 2, 3), Duration(0, 10, 0), L"faint star", true, false, false),
         L"a_05_03_2026_01_02_03.mef", true,
         {L" MAY  3, 2026", L" 01:02:03", L"00:10:00", L"faint star", mark, L"", L"", L"a_05_03_2026_01_02_03.mef"}},
        {Record(Time(2027, 12, 31, 23, 59, 59), Duration(23, 59, 59), L"", false, true, true), L"b.mef", true,
         {L" DEC 31, 2027", L" 23:59:59", L"23:59:59", L"", L"", mark, mark, L"b.mef"}},
        {hand, L"c.mef", true, {L" JAN 9, 2026", L" 8:07:06", L"00:01:00", L"", L"", L"", L"", L"c.mef"}},
        {unread, L"broken.mef", false, {L"", L"", L"", L"", L"", L"", mark, L"broken.mef"}},
    };
    for (const Case& c : kCases) {
        auto cells = EventListCells(c.record, c.name, c.read);
        for (size_t column = 0; column < c.cells.size(); ++column)
            EXPECT_EQ(cells[column], c.cells[column]) << testing::PrintToString(std::wstring(c.name)) << " " << column;
    }
}

TEST(EventList, RowsSortByStartWithTiesToTheLaterItem)
{
    // Starts: 5, 9, 5, 1, 9 (items 0 to 4).
    std::vector<uint64_t> starts = {5, 9, 5, 1, 9};
    // Latest first: of the two 9s the later item wins first, then the other;
    // of the two 5s likewise.
    EXPECT_EQ(EventListOrder(starts, false), (std::vector<size_t>{4, 1, 2, 0, 3}));
    EXPECT_EQ(EventListOrder(starts, true), (std::vector<size_t>{3, 2, 0, 4, 1}));
    EXPECT_TRUE(EventListOrder({}, false).empty());
    EXPECT_EQ(EventListOrder({7}, true), (std::vector<size_t>{0}));
}

TEST(EventList, AnEventMustLieFiveSecondsOrMoreAhead)
{
    const uint64_t now = SystemTimeToTicks(Time(2026, 11, 23, 12, 0, 0));
    EXPECT_TRUE(EventTimeFarEnoughAhead(now + 5 * kTicksPerSecond, now));
    EXPECT_TRUE(EventTimeFarEnoughAhead(now + kTicksPerDay, now));
    EXPECT_FALSE(EventTimeFarEnoughAhead(now + 5 * kTicksPerSecond - 1, now));
    EXPECT_FALSE(EventTimeFarEnoughAhead(now - kTicksPerSecond, now));
}
