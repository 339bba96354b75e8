#include "ui/menus.h"

#include <initializer_list>

#include "ui/commands.h"
#include "ui/user_messages.h"
#include "ui/user_messages_window.h"
#include "ui/window_set.h"
#include "video/video_sources.h"

HMENU mainMenu = nullptr;
HMENU fileMenu = nullptr;
HMENU eventsMenu = nullptr;
HMENU displayMenu = nullptr;
HMENU optionsMenu = nullptr;
HMENU helpMenu = nullptr;
HMENU userMessagesMenu = nullptr;
HMENU userMessagesFileMenu = nullptr;

Flag selectDeviceOpen{0};
Flag deviceFormatOpen{0};

namespace {

// Positions of the popups on the main menu bar.
enum MainPopup : UINT { FilePopup, EventsPopup, DisplayPopup, OptionsPopup, HelpPopup };

struct Command {
    UINT id;
    const wchar_t* text;
};

void AppendCommands(HMENU menu, std::initializer_list<Command> commands)
{
    for (const Command& command : commands)
        AppendMenuW(menu, MF_STRING, command.id, command.text);
}

void AppendPopup(HMENU bar, HMENU popup, const wchar_t* text)
{
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), text);
}

void Grey(HMENU menu, UINT id)
{
    EnableMenuItem(menu, id, MF_BYCOMMAND | MF_GRAYED);
}

}  // namespace

void BuildMenus(bool deviceAvailable)
{
    if (mainMenu) {
        SetMenu(mainWindow, nullptr);
        DestroyMenu(mainMenu);
    }
    if (userMessagesMenu) {
        SetMenu(userMessagesWindow, nullptr);
        DestroyMenu(userMessagesMenu);
    }

    mainMenu = CreateMenu();
    fileMenu = CreatePopupMenu();
    eventsMenu = CreatePopupMenu();
    displayMenu = CreatePopupMenu();
    optionsMenu = CreatePopupMenu();
    helpMenu = CreatePopupMenu();
    userMessagesMenu = CreateMenu();
    userMessagesFileMenu = CreatePopupMenu();
    HMENU recordingOptions = CreatePopupMenu();

    AppendCommands(fileMenu, {{IDM_EXIT, L"Exit"}});
    AppendCommands(eventsMenu, {{IDM_SCHEDULE, L"Schedule..."}, {IDM_EDIT_AND_DELETE, L"Edit and Delete..."}});
    AppendCommands(displayMenu, {{IDM_BRIGHTNESS_CONTRAST, L"Brightness/Contrast..."},
                                 {IDM_PIXEL_SATURATION, L"Pixel Saturation..."},
                                 {IDM_FRAME_INTEGRATION, L"Frame Integration..."},
                                 {IDM_MAGNIFY, L"Magnify..."}});
    AppendCommands(optionsMenu, {{IDM_SELECT_INPUT_DEVICE, L"Select Input Device..."},
                                 {IDM_DEVICE_PROPERTIES, L"Device Properties..."}});
    AppendPopup(optionsMenu, recordingOptions, L"Recording Options");
    AppendCommands(recordingOptions,
                   {{IDM_FILE_OPTIONS, L"File..."}, {IDM_CODEC, L"Codec..."}, {IDM_DURATION_DEFAULT, L"Duration Default..."}});
    AppendCommands(optionsMenu, {{IDM_EVENT_PENDING, L"Event Pending..."},
                                 {IDM_PERFORMANCE, L"Performance..."},
                                 {IDM_MISCELLANEOUS, L"Miscellaneous..."},
                                 {IDM_USB_GPS_RECEIVER, L"USB GPS Receiver..."},
                                 {IDM_SET_WINDOW_POSITIONS, L"Set Window Positions"}});
    AppendCommands(helpMenu, {{IDM_ABOUT, L"About MAVU Video Capture"}});
    AppendCommands(userMessagesFileMenu,
                   {{IDM_SAVE_MESSAGES, L"Save Messages"}, {IDM_SAVE_MESSAGES_AND_CLEAR, L"Save Messages and Clear"}});

    AppendPopup(mainMenu, fileMenu, L"File");
    AppendPopup(mainMenu, eventsMenu, L"Events");
    AppendPopup(mainMenu, displayMenu, L"Display");
    AppendPopup(mainMenu, optionsMenu, L"Options");
    AppendPopup(mainMenu, helpMenu, L"Help");
    AppendPopup(userMessagesMenu, userMessagesFileMenu, L"File");

    if (!deviceAvailable) {
        // With devices present but all ignored, Select Input Device stays the
        // way to restore one.
        if (videoSources.empty())
            Grey(mainMenu, IDM_SELECT_INPUT_DEVICE);
        for (UINT command : {IDM_DEVICE_PROPERTIES, IDM_CODEC, IDM_BRIGHTNESS_CONTRAST, IDM_MAGNIFY,
                             IDM_FRAME_INTEGRATION, IDM_PIXEL_SATURATION})
            Grey(mainMenu, command);
    }

    SetMenu(mainWindow, mainMenu);
    SetMenu(userMessagesWindow, userMessagesMenu);
    DrawMenuBar(mainWindow);
    DrawMenuBar(userMessagesWindow);
}

void SetMenuCheck(unsigned command, bool checked)
{
    CheckMenuItem(mainMenu, command, MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED));
}

void SetDeviceDialogGreying(bool grey)
{
    UINT state = MF_BYCOMMAND | (grey ? MF_GRAYED : MF_ENABLED);
    for (UINT command : {IDM_MAGNIFY, IDM_SELECT_INPUT_DEVICE, IDM_DEVICE_PROPERTIES})
        EnableMenuItem(mainMenu, command, state);
}

void SetRecordingMenuGreying(bool grey)
{
    UINT state = MF_BYPOSITION | (grey ? MF_GRAYED : MF_ENABLED);
    for (UINT popup : {EventsPopup, DisplayPopup, OptionsPopup, HelpPopup})
        EnableMenuItem(mainMenu, popup, state);
    EnableMenuItem(userMessagesMenu, 0, state);
    DrawMenuBar(mainWindow);
    DrawMenuBar(userMessagesWindow);
}
