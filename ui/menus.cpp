#include "ui/menus.h"

#include <windows.h>

#include "app/commands.h"
#include "app/main_window.h"
#include "video/video_sources.h"

namespace {

// Positions of the popups on the main menu bar.
enum MainPopup : UINT { FilePopup, EventsPopup, DisplayPopup, OptionsPopup, HelpPopup };

void Append(HMENU menu, UINT id, const wchar_t* text)
{
    AppendMenuW(menu, MF_STRING, id, text);
}

void Grey(HMENU menu, UINT id)
{
    EnableMenuItem(menu, id, MF_BYCOMMAND | MF_GRAYED);
}

}  // namespace

void BuildMenus(bool deviceAvailable)
{
    MainWindow& app = *mainWindowObject;
    if (app.mainMenu) {
        SetMenu(app.mainWindow, nullptr);
        DestroyMenu(app.mainMenu);
    }
    if (app.userMessagesMenu) {
        SetMenu(app.userMessagesWindow, nullptr);
        DestroyMenu(app.userMessagesMenu);
    }

    app.mainMenu = CreateMenu();
    app.fileMenu = CreatePopupMenu();
    app.eventsMenu = CreatePopupMenu();
    app.displayMenu = CreatePopupMenu();
    app.optionsMenu = CreatePopupMenu();
    app.helpMenu = CreatePopupMenu();
    HMENU recordingOptions = CreatePopupMenu();

    Append(app.fileMenu, IDM_EXIT, L"Exit");
    Append(app.eventsMenu, IDM_SCHEDULE, L"Schedule...");
    Append(app.eventsMenu, IDM_EDIT_AND_DELETE, L"Edit and Delete...");
    Append(app.displayMenu, IDM_BRIGHTNESS_CONTRAST, L"Brightness/Contrast...");
    Append(app.displayMenu, IDM_PIXEL_SATURATION, L"Pixel Saturation...");
    Append(app.displayMenu, IDM_FRAME_INTEGRATION, L"Frame Integration...");
    Append(app.displayMenu, IDM_MAGNIFY, L"Magnify...");
    Append(app.optionsMenu, IDM_SELECT_INPUT_DEVICE, L"Select Input Device...");
    Append(app.optionsMenu, IDM_DEVICE_PROPERTIES, L"Device Properties...");
    AppendMenuW(app.optionsMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(recordingOptions), L"Recording Options");
    Append(recordingOptions, IDM_FILE_OPTIONS, L"File...");
    Append(recordingOptions, IDM_CODEC, L"Codec...");
    Append(recordingOptions, IDM_DURATION_DEFAULT, L"Duration Default...");
    Append(app.optionsMenu, IDM_EVENT_PENDING, L"Event Pending...");
    Append(app.optionsMenu, IDM_PERFORMANCE, L"Performance...");
    Append(app.optionsMenu, IDM_MISCELLANEOUS, L"Miscellaneous...");
    Append(app.optionsMenu, IDM_USB_GPS_RECEIVER, L"USB GPS Receiver...");
    Append(app.optionsMenu, IDM_SET_WINDOW_POSITIONS, L"Set Window Positions");
    Append(app.helpMenu, IDM_ABOUT, L"About MAVU Video Capture");

    AppendMenuW(app.mainMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(app.fileMenu), L"File");
    AppendMenuW(app.mainMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(app.eventsMenu), L"Events");
    AppendMenuW(app.mainMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(app.displayMenu), L"Display");
    AppendMenuW(app.mainMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(app.optionsMenu), L"Options");
    AppendMenuW(app.mainMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(app.helpMenu), L"Help");

    app.userMessagesMenu = CreateMenu();
    app.userMessagesFileMenu = CreatePopupMenu();
    Append(app.userMessagesFileMenu, IDM_SAVE_MESSAGES, L"Save Messages");
    Append(app.userMessagesFileMenu, IDM_SAVE_MESSAGES_AND_CLEAR, L"Save Messages and Clear");
    AppendMenuW(app.userMessagesMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(app.userMessagesFileMenu), L"File");

    if (!deviceAvailable) {
        // With devices present but all ignored, Select Input Device stays the
        // way to restore one.
        if (videoSources.empty())
            Grey(app.mainMenu, IDM_SELECT_INPUT_DEVICE);
        Grey(app.mainMenu, IDM_DEVICE_PROPERTIES);
        Grey(app.mainMenu, IDM_CODEC);
        Grey(app.mainMenu, IDM_BRIGHTNESS_CONTRAST);
        Grey(app.mainMenu, IDM_MAGNIFY);
        Grey(app.mainMenu, IDM_FRAME_INTEGRATION);
        Grey(app.mainMenu, IDM_PIXEL_SATURATION);
    }

    SetMenu(app.mainWindow, app.mainMenu);
    SetMenu(app.userMessagesWindow, app.userMessagesMenu);
    DrawMenuBar(app.mainWindow);
    DrawMenuBar(app.userMessagesWindow);
}

void SetRecordingMenuGreying(bool grey)
{
    MainWindow& app = *mainWindowObject;
    UINT state = MF_BYPOSITION | (grey ? MF_GRAYED : MF_ENABLED);
    for (UINT popup : {EventsPopup, DisplayPopup, OptionsPopup, HelpPopup})
        EnableMenuItem(app.mainMenu, popup, state);
    EnableMenuItem(app.userMessagesMenu, 0, state);
    DrawMenuBar(app.mainWindow);
    DrawMenuBar(app.userMessagesWindow);
}
