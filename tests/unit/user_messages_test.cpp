#include <gtest/gtest.h>

#include <cwctype>

#include "base/time_text.h"
#include "ui/user_messages.h"

TEST(UserMessageEntry, ScrollCountFollowsLineFeedsOnly)
{
    EXPECT_EQ(CountLineFeeds(L"\r\n09:05:07 (UTC)\r\nline\r\n"), 3);
    EXPECT_EQ(CountLineFeeds(L"\n\n\n"), 3);
    EXPECT_EQ(CountLineFeeds(L"\r\r"), 0);
}

// Zero-padded, and the evening's hours as they are: no 12-hour clock, no marker.
TEST(UserMessageEntry, TimeStampIsTwoDigitTwentyFourHourWithoutMarker)
{
    EXPECT_EQ(FormatTimeOfDay({2026, 2, 2, 3, 9, 5, 7, 999}), L"09:05:07");
    EXPECT_EQ(FormatTimeOfDay({2026, 2, 2, 3, 23, 59, 59, 999}), L"23:59:59");
}

// Lines reported before the window exists wait in the queue; at the end of
// start-up they are flushed into the real control, in order, the first with
// a time stamp and the others without, whatever each asked for.
TEST(UserMessageQueue, FlushShowsTheQueuedLinesInOrderWithOnlyTheFirstStamped)
{
    ASSERT_NE(LoadLibraryW(L"Msftedit.dll"), nullptr);
    userMessagesWindowReady = 0;
    TakeQueuedUserMessages();
    ReportUserMessage(L"first\r\n", false);
    ReportUserMessage(L"second", true);
    ReportUserMessage(L"third\r\n", false);

    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(parent, nullptr);
    ASSERT_NE(CreateUserMessagesRichEdit(parent), nullptr);
    EXPECT_EQ(UserMessagesText(), L"");
    userMessagesWindowReady = 1;
    FlushQueuedUserMessages();
    ReportUserMessage(L"after", false);

    std::wstring text = UserMessagesText();
    // "\r\nHH:MM:SS (UTC)\r\n" before the first line only.
    ASSERT_GE(text.size(), 18u) << testing::PrintToString(text);
    std::wstring stamp = text.substr(2, 8);
    for (size_t i : {0u, 1u, 3u, 4u, 6u, 7u})
        EXPECT_TRUE(iswdigit(stamp[i])) << testing::PrintToString(text);
    EXPECT_EQ(stamp[2], L':');
    EXPECT_EQ(stamp[5], L':');
    EXPECT_EQ(text.substr(0, 2) + text.substr(10), L"\r\n (UTC)\r\nfirst\r\n\r\nsecond\r\nthird\r\n\r\nafter");
    EXPECT_TRUE(TakeQueuedUserMessages().empty());

    userMessagesWindowReady = 0;
    DestroyWindow(parent);
    richEdit = nullptr;
}
