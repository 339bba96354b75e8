// The ordered start-up. Options are read before any window is placed, the
// User Messages window exists before errors are shown, and the camera runs
// and the events are loaded before the main window appears.
#include "app/main_window.h"

#include <commctrl.h>

#include <new>

#include "app/commands.h"
#include "app/power_actions.h"
#include "app/program_folder.h"
#include "app/recording_control.h"
#include "app/time_zone.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/dialog_common.h"
#include "events/event_queue.h"
#include "ui/countdown_window.h"
#include "ui/fonts.h"
#include "ui/power_window.h"
#include "ui/menus.h"
#include "ui/record_controls.h"
#include "ui/unresponsive_notice.h"
#include "ui/user_messages.h"
#include "ui/video_windows.h"
#include "ui/window_layout.h"
#include "video/device_list.h"
#include "video/video_player.h"
#include "video/video_sources.h"

namespace {

// The source the program starts with: the default device if one qualifies,
// else the first that is neither ignored nor disconnected.
uint32_t ChooseCurrentDevice()
{
    uint32_t first = kNoSource;
    for (uint32_t i = 0; i < videoSources.size(); ++i) {
        const VideoSourceInfo& source = *videoSources[i];
        if (source.isIgnored || source.isDisconnected)
            continue;
        if (source.isDefault)
            return i;
        if (first == kNoSource)
            first = i;
    }
    return first;
}

void MarkDefaultSource()
{
    for (VideoSourceInfo* source : videoSources)
        source->isDefault = wcscmp(source->name, options.DefaultVideoSource) == 0;
}

}  // namespace

MainWindow::MainWindow(HINSTANCE instanceHandle)
{
    // C1
    nextCommandId = IDM_SELECT_INPUT_DEVICE;
    instance = instanceHandle;
    startingUp = 1;
    mainWindowObject = this;
    currentSourceIndex = kNoSource;
    RecordingFilePath[0] = 0;

    // C2
    ReadWorkArea();

    // C3
    videoPlayer = new (std::nothrow) VideoPlayer();
    if (!videoPlayer) {
        fatalStartupError = 1;
        return;
    }

    // C4 to C6
    RECT workArea{workLeft, workTop, workRight, workBottom};
    SetOptionDefaults(options, workArea);
    bool optionsRead = LoadOptions() != 0;
    if (!optionsRead)
        ReportUserMessage(L"No Options File or unreadable Options File\r\n", false);
    defaultDuration = {1943, 5, 1, 3, 0, 10, 0, 0};
    if (optionsRead)
        ApplyLoadedOptions();

    // C7
    if (!CreateMainWindow()) {
        ReportUserMessage(L"FATAL: cannot create main window", false);
        fatalStartupError = 1;
        return;
    }

    // C8
    clippingWindow = CreateClippingWindow(instance, mainWindow);
    if (!clippingWindow) {
        ReportUserMessage(L"FATAL: cannot create video display window", false);
        fatalStartupError = 1;
        return;
    }
    videoPlayer->clippingWindow = clippingWindow;

    // C9
    if (FAILED(GetAttachedVideoDeviceList()))
        ReportUserMessage(L"WARNING: call to get video device list failed\r\n", false);
    MarkIgnoredSources();
    userMessagesWindow = CreateUserMessagesWindow(instance, options.messageWindowSavedWidth,
                                                  options.messageWindowSavedHeight);
    if (!userMessagesWindow) {
        ReportUserMessage(L"FATAL: cannot create User Messages window", false);
        fatalStartupError = 1;
        return;
    }
    richEdit = CreateUserMessagesRichEdit(userMessagesWindow);
    if (!richEdit) {
        ReportUserMessage(L"FATAL: cannot create User Messages rich edit window", false);
        fatalStartupError = 1;
        return;
    }

    // C10
    userMessagesWindowReady = 1;

    // C11, C12
    ReportTimeZone();
    SetWindowIcons(mainWindow);
    SetWindowIcons(userMessagesWindow);

    // C13, C14
    CreateAppFonts();
    unresponsiveWindow = CreateUnresponsiveNotice(instance);

    // C15
    if (!CreateDialogWindows()) {
        ReportUserMessage(L"FATAL: cannot create Capture Mode windows", false);
        FlushQueuedUserMessages();
        fatalStartupError = 1;
        return;
    }

    // C16
    if (!CreateRecordControls(instance)) {
        fatalStartupError = 1;
        return;
    }

    // C17
    scrollWindow = CreateScrollWindow(instance, mainWindow);
    if (!scrollWindow)
        ReportUserMessage(L"WARNING: scroll window not created\r\n", false);

    // C18 to C21
    ApplySavedConfigurations();
    MarkDefaultSource();
    currentSourceIndex = ChooseCurrentDevice();
    if (FAILED(ActivateCurrentDevice())) {
        fatalStartupError = 1;
        return;
    }

    // C22
    RECT outer{}, inner{};
    GetWindowRect(mainWindow, &outer);
    GetClientRect(mainWindow, &inner);
    frameWidth = (outer.right - outer.left) - inner.right;
    frameHeight = (outer.bottom - outer.top) - inner.bottom;

    // C23
    videoWidth = 640;
    videoHeight = 480;
    if (const VideoFormat* format = CurrentVideoFormat()) {
        videoWidth = format->width;
        videoHeight = format->height < 0 ? -format->height : format->height;
    }
    displayedWidth = videoWidth;
    displayedHeight = videoHeight;

    // C24, C25
    CheckPowerCapabilities();

    // C26
    PlaceInitialWindows(mainWindow, clippingWindow, userMessagesWindow, richEdit, recordControlsWindow);

    // C27
    ShowWindow(richEdit, SW_SHOW);
    if (deviceFormatWindow)
        ShowWindow(deviceFormatWindow, SW_HIDE);
    if (miscellaneousWindow)
        ShowWindow(miscellaneousWindow, SW_HIDE);
    if (gpsWindow)
        ShowWindow(gpsWindow, SW_HIDE);

    // C28
    if (deviceAvailable) {
        ShowWindow(recordControlsWindow, SW_SHOW);
        StartVideo();
        LoadEvents();
    }

    // C29
    ShowWindow(mainWindow, SW_SHOW);
    UpdateWindow(mainWindow);
    ShowWindow(userMessagesWindow, SW_SHOW);
    BringWindowToTop(recordControlsWindow);

    // C30: after the events are loaded. A countdown armed above keeps
    // running, but its handles are forgotten here.
    gpsTimer = gpsTimerQueue = tickTimer = tickTimerQueue = endTimer = endTimerQueue = nullptr;

    // C31 to C33
    CreateDefaultFolders();

    // C36, C37
    FlushQueuedUserMessages();
    startingUp = 0;
}

bool MainWindow::CreateMainWindow()
{
    WNDCLASSEXW windowClass{sizeof windowClass};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = MainWindowProc;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(DKGRAY_BRUSH));
    windowClass.lpszClassName = kMainWindowClass;
    RegisterClassExW(&windowClass);
    mainWindow = CreateWindowExW(0, kMainWindowClass, kMainWindowTitle, WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX,
                                 0, 0, 400, 300, nullptr, nullptr, instance, nullptr);
    return mainWindow != nullptr;
}

bool MainWindow::CreateDialogWindows()
{
    // A Countdown window that can't be made ends the creation of the rest,
    // silently and without the fatal flag.
    countdownWindow = CreateCountdownWindow(instance);
    if (!countdownWindow)
        return true;
    hibernateWindow = CreatePowerWindow(instance);
    if (!hibernateWindow)
        return false;
    // The other tool and option windows are added here as they are built.
    return true;
}

HRESULT ActivateCurrentDevice()
{
    MainWindow& app = *mainWindowObject;
    bool active = currentSourceIndex != kNoSource;
    ShowWindow(app.clippingWindow, active ? SW_SHOW : SW_HIDE);
    if (app.scrollWindow)
        ShowWindow(app.scrollWindow, SW_HIDE);
    app.deviceAvailable = active;
    BuildMenus(active);
    if (active) {
        if (currentSourceIndex >= videoSources.size()) {
            ReportUserMessage(L"Logic error: current source index out of range for setting active device\r\n", true);
            return E_FAIL;
        }
        videoSources[currentSourceIndex]->isActive = 1;
        SetRecordButtons(true, false);
        ShowWindow(app.recordControlsWindow, SW_SHOW);
    } else {
        ShowWindow(app.recordControlsWindow, SW_HIDE);
        ReportUserMessage(L"There is no video capture device connected to the computer\r\n", true);
    }
    return S_OK;
}
