#include <gtest/gtest.h>

#include "ui/video_windows.h"
#include "ui/window_layout.h"

TEST(KeepOnScreen, WindowsMayHangOutByHalfAFrame)
{
    struct Case {
        RECT window;
        bool moves;
        POINT to;
    };
    // limitRight = 1920 - 2 + 8 = 1926, limitBottom = 1040 - 2 + 8 = 1046, minLeft = 2 - 8 = -6.
    const Case cases[] = {
        {{-6, 0, 394, 300}, false, {}},
        {{-7, 0, 393, 300}, true, {-6, 0}},
        {{100, -5, 500, 295}, true, {100, 0}},
        {{1600, 100, 2000, 400}, true, {1526, 100}},
        {{100, 900, 500, 1200}, true, {100, 746}},
        // Wider than the area: the right limit wins, the left edge goes out.
        {{0, 0, 2100, 300}, true, {-174, 0}},
        // Minimised windows are parked, not pulled back.
        {{-32000, -32000, -31840, -31970}, false, {}},
        // Only one coordinate parked: pulled back.
        {{-32000, 10, -31840, 40}, true, {-6, 10}},
    };
    for (const Case& c : cases) {
        POINT to{};
        bool moved = KeepOnScreenPosition(c.window, 16, 1920, 1040, to);
        EXPECT_EQ(moved, c.moves) << c.window.left << "," << c.window.top;
        if (moved && c.moves) {
            EXPECT_EQ(to.x, c.to.x) << c.window.left << "," << c.window.top;
            EXPECT_EQ(to.y, c.to.y) << c.window.left << "," << c.window.top;
        }
    }
}

TEST(DialogPosition, DefaultsAvoidTheMainWindow)
{
    struct Case {
        const char* what;
        RECT main;
        POINT at;
    };
    const Case kCases[] = {
        {"main window right-aligned at the top: to its left", {1184, 0, 1920, 634}, {0, 0}},
        {"main window at the far left: below it", {0, 0, 736, 300}, {0, 1046 - 560}},
        {"tall main window at the left: to its right", {0, 0, 736, 1000}, {1926 - 400, 0}},
        {"nowhere fits: bottom left", {0, 0, 1900, 1000}, {0, 1046 - 560}},
    };
    for (const Case& c : kCases) {
        POINT at = DefaultDialogPosition({400, 560}, c.main, 16, 1920, 1040);
        EXPECT_EQ(at.x, c.at.x) << c.what;
        EXPECT_EQ(at.y, c.at.y) << c.what;
    }
}

TEST(WindowLayout, MainLayoutFitsThePictureOrFallsBackOnScrolling)
{
    // A 1920 by 1080 desktop with a 40-pixel task bar, main window frame 16 by 58.
    workLeft = workTop = 0;
    workRight = 1920;
    workBottom = 1040;
    frameWidth = 16;
    frameHeight = 58;
    videoWidth = displayedWidth = 720;
    videoHeight = displayedHeight = 576;
    MainLayoutInput input{};
    input.window = {1000, 0, 1000 + 736, 634};
    input.currentLeft = input.currentTop = kNoPosition;
    input.useDeviceSize = true;
    MainLayout fitted = ComputeMainLayout(input);
    EXPECT_EQ(fitted.width, 736);
    EXPECT_EQ(fitted.height, 634);
    EXPECT_TRUE(fitted.fits);
    EXPECT_EQ(fitted.pictureWidth, 720);
    EXPECT_EQ(fitted.left, 1000) << "no remembered position: where the window stands";

    // A device change puts the window back at its remembered position, which
    // a device dialog may have moved it from.
    input.currentLeft = 300;
    input.currentTop = 20;
    MainLayout remembered = ComputeMainLayout(input);
    EXPECT_EQ(remembered.left, 300);
    EXPECT_EQ(remembered.top, 20);

    // The user makes it smaller: the scroll window takes over, where the
    // window stands.
    input.useDeviceSize = false;
    input.window = {1000, 0, 1500, 500};
    MainLayout smaller = ComputeMainLayout(input);
    EXPECT_EQ(smaller.left, 1000);
    EXPECT_FALSE(smaller.fits);
    EXPECT_EQ(smaller.roomWidth, 500 - 16);
    EXPECT_EQ(smaller.roomHeight, 500 - 58);

    // Never below 400 by 300.
    input.window = {10, 10, 110, 60};
    MainLayout tiny = ComputeMainLayout(input);
    EXPECT_EQ(tiny.width, 400);
    EXPECT_EQ(tiny.height, 300);

    // A picture larger than the desktop: maxW by maxH at 0, 0, scrolled.
    videoWidth = displayedWidth = 3840;
    videoHeight = displayedHeight = 2160;
    input.useDeviceSize = true;
    input.window = {500, 500, 900, 800};
    MainLayout huge = ComputeMainLayout(input);
    EXPECT_EQ(huge.width, 1920 - 0 - 4 + 16);
    EXPECT_EQ(huge.height, 16 / 2 - 0 + 1040 - 2);
    EXPECT_EQ(huge.left, 0);
    EXPECT_EQ(huge.top, 0);
    EXPECT_FALSE(huge.fits);
}

TEST(ScrollWindow, OnlyReleasedThumbAndStepsMoveThePicture)
{
    EXPECT_EQ(ScrollTarget(SB_LINEDOWN, 0, 0, 100), 5);
    EXPECT_EQ(ScrollTarget(SB_LINEUP, 3, 0, 100), 0);
    EXPECT_EQ(ScrollTarget(SB_PAGEDOWN, 80, 0, 100), 100);
    EXPECT_EQ(ScrollTarget(SB_PAGEUP, 80, 0, 100), 30);
    EXPECT_EQ(ScrollTarget(SB_THUMBPOSITION, 0, 42, 100), 42);
    EXPECT_EQ(ScrollTarget(SB_THUMBTRACK, 0, 42, 100), -1);
    EXPECT_EQ(ScrollTarget(SB_ENDSCROLL, 10, 0, 100), -1);
}
