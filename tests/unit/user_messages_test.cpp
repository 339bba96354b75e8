#include <gtest/gtest.h>

#include "base/time_text.h"
#include "ui/user_messages.h"

TEST(UserMessageEntry, StampedEntryStandsOnItsOwnLineAfterABlankOne)
{
    EXPECT_EQ(ComposeUserMessageEntry(L"USB GPS connected\r\n", L"09:05:07"),
              L"\r\n09:05:07 (UTC)\r\nUSB GPS connected\r\n");
    EXPECT_EQ(ComposeUserMessageEntry(L"continued", nullptr), L"\r\ncontinued");
    EXPECT_EQ(ComposeUserMessageEntry(L"", nullptr), L"\r\n");
}

TEST(UserMessageEntry, ScrollCountFollowsLineFeedsOnly)
{
    EXPECT_EQ(CountLineFeeds(L"\r\n09:05:07 (UTC)\r\nline\r\n"), 3);
    EXPECT_EQ(CountLineFeeds(L"\r\nno end"), 1);
    EXPECT_EQ(CountLineFeeds(L"\n\n\n"), 3);
    EXPECT_EQ(CountLineFeeds(L"\r\r"), 0);
}

TEST(UserMessageEntry, TimeStampIsTwoDigitTwentyFourHourWithoutMarker)
{
    struct Case {
        WORD hour, minute, second;
        const wchar_t* expected;
    };
    const Case cases[] = {
        {9, 5, 7, L"09:05:07"},
        {0, 0, 0, L"00:00:00"},
        {23, 59, 59, L"23:59:59"},
        {13, 0, 1, L"13:00:01"},
        {12, 30, 0, L"12:30:00"},
    };
    for (const Case& c : cases) {
        SYSTEMTIME time{2026, 2, 2, 3, c.hour, c.minute, c.second, 999};
        EXPECT_EQ(FormatTimeOfDay(time), c.expected);
    }
}
