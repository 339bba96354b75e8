// The menus' enable and check rules, on real menu bars in hidden windows of this process (only it can read them).
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "app/recording_control.h"
#include "ui/commands.h"
#include "ui/display_tools.h"
#include "ui/menus.h"
#include "ui/record_buttons.h"
#include "ui/user_messages_window.h"
#include "ui/window_set.h"
#include "video/capture_settings.h"
#include "video/video_sources.h"

namespace {

const unsigned kAllCommands[] = {
    IDM_EXIT,          IDM_SCHEDULE,           IDM_EDIT_AND_DELETE,   IDM_BRIGHTNESS_CONTRAST, IDM_PIXEL_SATURATION,
    IDM_FRAME_INTEGRATION, IDM_MAGNIFY,        IDM_SELECT_INPUT_DEVICE, IDM_DEVICE_PROPERTIES, IDM_FILE_OPTIONS,
    IDM_CODEC,         IDM_DURATION_DEFAULT,   IDM_EVENT_PENDING,     IDM_PERFORMANCE,         IDM_MISCELLANEOUS,
    IDM_USB_GPS_RECEIVER, IDM_SET_WINDOW_POSITIONS, IDM_ABOUT,
};

class MenuRules : public testing::Test {
protected:
    static HWND Window(const wchar_t* kind, const wchar_t* title, HWND parent = nullptr)
    {
        return CreateWindowExW(0, kind, title, parent ? WS_CHILD : WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, parent,
                               nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    void SetUp() override
    {
        mainWindow = Window(L"STATIC", kMainWindowTitle);
        userMessagesWindow = Window(L"STATIC", L"User Messages");
        recordControlsWindow = Window(L"STATIC", L"Record");
        startButton = Window(L"BUTTON", L"Start", recordControlsWindow);
        stopButton = Window(L"BUTTON", L"Stop", recordControlsWindow);
        ClearRuntimeSwitches();
    }
    void TearDown() override
    {
        for (VideoSourceInfo* source : videoSources)
            delete source;
        videoSources.clear();
        SetMenu(mainWindow, nullptr);
        SetMenu(userMessagesWindow, nullptr);
        DestroyMenu(mainMenu);
        DestroyMenu(userMessagesMenu);
        mainMenu = userMessagesMenu = nullptr;
        DestroyWindow(recordControlsWindow);
        DestroyWindow(mainWindow);
        DestroyWindow(userMessagesWindow);
        startButton = stopButton = recordControlsWindow = mainWindow = userMessagesWindow = nullptr;
        ClearRuntimeSwitches();
    }

    static bool Grey(unsigned command)
    {
        UINT state = GetMenuState(mainMenu, command, MF_BYCOMMAND);
        EXPECT_NE(state, 0xFFFFFFFFu) << command;
        return (state & MF_GRAYED) != 0;
    }
    static bool Checked(unsigned command) { return (GetMenuState(mainMenu, command, MF_BYCOMMAND) & MF_CHECKED) != 0; }
    static bool PopupGrey(HMENU bar, int position)
    {
        return (GetMenuState(bar, position, MF_BYPOSITION) & MF_GRAYED) != 0;
    }
    // Every command's greying, with the given ones grey and the rest not.
    static void ExpectGreyExactly(const std::vector<unsigned>& grey)
    {
        std::map<unsigned, bool> expected;
        for (unsigned command : kAllCommands)
            expected[command] = false;
        for (unsigned command : grey)
            expected[command] = true;
        for (const auto& [command, isGrey] : expected)
            EXPECT_EQ(Grey(command), isGrey) << "command " << command;
    }
    static void ExpectNoPopupGrey()
    {
        for (int position = 0; position < 5; ++position)
            EXPECT_FALSE(PopupGrey(mainMenu, position)) << position;
        EXPECT_FALSE(PopupGrey(userMessagesMenu, 0));
    }
};

}  // namespace

TEST_F(MenuRules, TheDevicesAndAnOpenDeviceDialogDecideWhichItemsAreGreyAndNothingIsChecked)
{
    // Schedule, GPS and the options stay available without a device; with
    // devices all ignored, Select Input Device stays the way back.
    const struct {
        const char* what;
        bool device, active, selectGrey, deviceItemsGrey;
    } kCases[] = {{"no device", false, false, true, true},
                  {"devices all ignored", true, false, false, true},
                  {"an active device", true, true, false, false}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        if (c.device && videoSources.empty())
            videoSources.push_back(new VideoSourceInfo{});
        BuildMenus(c.active);
        std::vector<unsigned> grey;
        if (c.selectGrey)
            grey.push_back(IDM_SELECT_INPUT_DEVICE);
        if (c.deviceItemsGrey)
            grey.insert(grey.end(), {IDM_DEVICE_PROPERTIES, IDM_CODEC, IDM_BRIGHTNESS_CONTRAST, IDM_MAGNIFY,
                                     IDM_FRAME_INTEGRATION, IDM_PIXEL_SATURATION});
        ExpectGreyExactly(grey);
        ExpectNoPopupGrey();
        for (unsigned command : kAllCommands)
            EXPECT_FALSE(Checked(command)) << command;
    }
    // With the active device, an open device dialog greys Magnify and both device items until it closes.
    SetDeviceDialogGreying(true);
    ExpectGreyExactly({IDM_MAGNIFY, IDM_SELECT_INPUT_DEVICE, IDM_DEVICE_PROPERTIES});
    SetDeviceDialogGreying(false);
    ExpectGreyExactly({});
}

TEST_F(MenuRules, DisplayToolsSetTheirMarksWithTheirFlagsAndARebuildLosesOnlyTheMarks)
{
    videoSources.push_back(new VideoSourceInfo{});
    BuildMenus(true);
    TurnOnPixelSaturation();
    TurnOnFrameIntegration();
    TurnOnMagnify();
    TurnOnBrightnessContrast();
    for (unsigned command : {IDM_BRIGHTNESS_CONTRAST, IDM_PIXEL_SATURATION, IDM_FRAME_INTEGRATION, IDM_MAGNIFY})
        EXPECT_TRUE(Checked(command)) << command;
    EXPECT_TRUE(pixelSaturationOn && frameIntegrationOn && magnifyOn && brightnessContrastOn);
    // Frame integration integrates nothing until its window's Start.
    EXPECT_EQ(frameIntegrationCount, 1);
    for (unsigned command : kAllCommands) {
        if (command < IDM_BRIGHTNESS_CONTRAST || command > IDM_MAGNIFY) {
            EXPECT_FALSE(Checked(command)) << command;
        }
    }

    BuildMenus(true);
    for (unsigned command : {IDM_BRIGHTNESS_CONTRAST, IDM_PIXEL_SATURATION, IDM_FRAME_INTEGRATION, IDM_MAGNIFY})
        EXPECT_FALSE(Checked(command)) << command;
    EXPECT_TRUE(pixelSaturationOn && frameIntegrationOn && magnifyOn && brightnessContrastOn);

    TurnOnPixelSaturation();
    ClosePixelSaturation();
    CloseFrameIntegration();
    CloseBrightnessContrast();
    EXPECT_FALSE(pixelSaturationOn || frameIntegrationOn || brightnessContrastOn || colorInCaptureFile);
    EXPECT_FALSE(Checked(IDM_PIXEL_SATURATION));
}

// The main menu's popups, the buttons and the title while recording are the
// recording scenario's to check; the User Messages window's File is read here.
TEST_F(MenuRules, ARecordingUnderRemoveFiltersTakesTheBrightnessToolDownAndGreysTheMessagesFileWhileItRuns)
{
    videoSources.push_back(new VideoSourceInfo{});
    BuildMenus(true);
    TurnOnBrightnessContrast();
    removeFiltersWhileRecording = 1;
    ApplyRecordingState(true);
    EXPECT_FALSE(brightnessContrastOn);
    EXPECT_FALSE(Checked(IDM_BRIGHTNESS_CONTRAST));
    ApplyRecordingState(false);

    removeFiltersWhileRecording = 0;
    TurnOnBrightnessContrast();
    ApplyRecordingState(true);
    EXPECT_TRUE(brightnessContrastOn) << "without the option the tool stays on";
    EXPECT_TRUE(PopupGrey(userMessagesMenu, 0));
    ApplyRecordingState(false);
    ExpectNoPopupGrey();
}
