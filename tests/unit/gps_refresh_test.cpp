// The GPS window's refresh where no link is open: it says so and shows
// nothing new.
#include <gtest/gtest.h>

#include "ui/gps_window.h"
#include "ui/user_messages.h"

TEST(GpsRefresh, WithoutAnOpenLinkARefreshSaysSoAndKeepsTheLastReading)
{
    userMessagesWindowReady = 0;
    TakeQueuedUserMessages();
    GpsSnapshot last{};
    lstrcpyW(last.latitude, L" 48.070038 N");
    EXPECT_EQ(RefreshGpsWindow(last), 0);
    EXPECT_STREQ(last.latitude, L" 48.070038 N");
    EXPECT_EQ(TakeQueuedUserMessages(), std::vector<std::wstring>{L"GPS receiver is not connected\r\n\r\n"});
}
