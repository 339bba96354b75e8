// The ordered start-up. Options are read before any window is placed, the
// User Messages window exists before errors are shown, and the camera runs
// and the events are loaded before the main window appears.
#include "app/main_window.h"

#include <commctrl.h>

#include <new>

#include "app/loaded_options.h"
#include "app/power_actions.h"
#include "app/program_folder.h"
#include "app/recording_repair.h"
#include "app/recording_control.h"
#include "app/startup_state.h"
#include "app/time_zone.h"
#include "base/report.h"
#include "events/event_list_window.h"
#include "events/event_queue.h"
#include "events/schedule_window.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/commands.h"
#include "ui/codec_selector_window.h"
#include "ui/countdown_window.h"
#include "ui/device_format_window.h"
#include "ui/dialog_common.h"
#include "ui/duration_window.h"
#include "ui/event_pending_window.h"
#include "ui/file_options_window.h"
#include "ui/fonts.h"
#include "ui/gps_window.h"
#include "ui/menus.h"
#include "ui/misc_options_window.h"
#include "ui/performance_window.h"
#include "ui/power_window.h"
#include "ui/record_buttons.h"
#include "ui/record_controls.h"
#include "ui/select_device_window.h"
#include "ui/tool_windows.h"
#include "ui/unresponsive_notice.h"
#include "ui/user_messages.h"
#include "ui/user_messages_window.h"
#include "ui/video_windows.h"
#include "ui/window_layout.h"
#include "ui/window_set.h"
#include "video/device_list.h"
#include "video/device_scan_rules.h"
#include "video/frame_size.h"
#include "video/video_configuration.h"
#include "video/video_player.h"
#include "video/video_sources.h"

MainWindow* mainWindowObject = nullptr;
Flag deviceChangeBusy{0};

namespace {

void MarkDefaultSource()
{
    for (VideoSourceInfo* source : videoSources)
        source->isDefault = wcscmp(source->name, options.DefaultVideoSource) == 0;
}

}  // namespace

MainWindow::MainWindow(HINSTANCE instanceHandle)
{
    instance = instanceHandle;
    startingUp = 1;
    mainWindowObject = this;
    currentSourceIndex = kNoSource;
    RecordingFilePath[0] = 0;

    ReadWorkArea();

    videoPlayer = new (std::nothrow) VideoPlayer();
    if (!videoPlayer) {
        fatalStartupError = 1;
        return;
    }

    // The options, before any window is placed.
    RECT workArea{workLeft, workTop, workRight, workBottom};
    SetOptionDefaults(options, workArea);
    bool optionsRead = LoadOptions() != 0;
    if (!optionsRead)
        ReportUserMessage(L"No Options File or unreadable Options File\r\n", false);
    defaultDuration = kDefaultDuration;
    if (optionsRead)
        ApplyLoadedOptions();

    if (!CreateMainWindow()) {
        ReportUserMessage(L"FATAL: cannot create main window", false);
        fatalStartupError = 1;
        return;
    }
    if (!CreateClippingWindow(instance, mainWindow)) {
        ReportUserMessage(L"FATAL: cannot create video display window", false);
        fatalStartupError = 1;
        return;
    }
    videoPlayer->clippingWindow = clippingWindow;

    // The devices, then the User Messages window: the lines reported so far
    // wait in the queue until the end of start-up.
    if (FAILED(GetAttachedVideoDeviceList()))
        ReportUserMessage(L"WARNING: call to get video device list failed\r\n", false);
    MarkIgnoredSources();
    if (!CreateUserMessagesWindow(instance, options.messageWindowSavedWidth, options.messageWindowSavedHeight)) {
        ReportUserMessage(L"FATAL: cannot create User Messages window", false);
        fatalStartupError = 1;
        return;
    }
    if (!CreateUserMessagesRichEdit(userMessagesWindow)) {
        ReportUserMessage(L"FATAL: cannot create User Messages rich edit window", false);
        fatalStartupError = 1;
        return;
    }
    userMessagesWindowReady = 1;

    ReportTimeZone();
    SetWindowIcons(mainWindow);
    SetWindowIcons(userMessagesWindow);

    CreateAppFonts();
    CreateUnresponsiveNotice(instance);

    if (!CreateDialogWindows()) {
        ReportUserMessage(L"FATAL: cannot create Capture Mode windows", false);
        FlushQueuedUserMessages();
        fatalStartupError = 1;
        return;
    }
    if (!CreateRecordControls(instance)) {
        fatalStartupError = 1;
        return;
    }
    if (!CreateScrollWindow(instance, mainWindow))
        ReportUserMessage(L"WARNING: scroll window not created\r\n", false);

    // The saved configurations, then the choice of device.
    ApplySavedConfigurations();
    MarkDefaultSource();
    ChooseCurrentDevice();
    if (FAILED(ActivateCurrentDevice())) {
        fatalStartupError = 1;
        return;
    }

    // The main window's frame, and the size of the picture it holds.
    RECT outer{}, inner{};
    GetWindowRect(mainWindow, &outer);
    GetClientRect(mainWindow, &inner);
    frameWidth = (outer.right - outer.left) - inner.right;
    frameHeight = (outer.bottom - outer.top) - inner.bottom;
    videoWidth = 640;
    videoHeight = 480;
    if (const VideoFormat* format = CurrentVideoFormat()) {
        videoWidth = format->width;
        videoHeight = format->height < 0 ? -format->height : format->height;
    }
    displayedWidth = videoWidth;
    displayedHeight = videoHeight;

    CheckPowerCapabilities();

    PlaceInitialWindows(mainWindow, clippingWindow, userMessagesWindow, richEdit, recordControlsWindow);
    ShowWindow(richEdit, SW_SHOW);

    // Recordings that a crash or a power cut left unfinished are mended
    // before an event can record again, perhaps under the same name.
    RepairCutRecordings(options.VideoDirectory[0] ? options.VideoDirectory : L"VideoFiles\\");

    // The camera runs and the events are loaded before the main window
    // appears. Without a device neither happens.
    if (deviceAvailable) {
        ShowWindow(recordControlsWindow, SW_SHOW);
        StartVideo();
        LoadEvents();
    }

    ShowWindow(mainWindow, SW_SHOW);
    UpdateWindow(mainWindow);
    ShowWindow(userMessagesWindow, SW_SHOW);
    BringWindowToTop(recordControlsWindow);

    // After the events are loaded: a countdown armed above keeps running,
    // but its handles are forgotten here.
    ForgetEventTimers();

    CreateDefaultFolders();
    FillFileOptions();

    // The same command the menu gives, and synchronously: a full scan
    // blocks start-up with the notice up.
    if (options.AutostartGPS)
        SendMessageW(mainWindow, WM_COMMAND, IDM_USB_GPS_RECEIVER, 0);

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
    if (!CreateCountdownWindow(instance))
        return true;
    if (!CreateBrightnessContrastWindow(instance) || !CreateSelectDeviceWindow(instance, ActivateCurrentDevice) ||
        !CreateDeviceFormatWindow(instance) || !CreateMiscellaneousWindow(instance) ||
        !CreateCodecSelectorWindow(instance) || !CreateFileOptionsWindow(instance) || !CreateDurationWindow(instance) ||
        !CreateEventPendingWindow(instance) || !CreatePerformanceWindow(instance) || !CreatePowerWindow(instance))
        return false;
    // Like the Countdown window, a Magnify window that can't be made ends
    // the creation of the rest silently.
    if (!CreateMagnifyWindow(instance))
        return true;
    return CreateGpsWindow(instance) && CreatePixelSaturationWindow(instance) &&
        CreateFrameIntegrationWindow(instance) && CreateScheduleWindow(instance) && CreateEventListWindow(instance);
}

HRESULT ActivateCurrentDevice()
{
    MainWindow& app = *mainWindowObject;
    bool active = currentSourceIndex != kNoSource;
    ShowWindow(clippingWindow, active ? SW_SHOW : SW_HIDE);
    if (scrollWindow)
        ShowWindow(scrollWindow, SW_HIDE);
    app.deviceAvailable = active;
    BuildMenus(active);
    if (active) {
        if (currentSourceIndex >= videoSources.size()) {
            ReportUserMessage(L"Logic error: current source index out of range for setting active device\r\n", true);
            return E_FAIL;
        }
        // A device plugged in during a recording restarts the camera into the
        // recording's next file: the device keeps its recording mark, so that
        // a later pull is taken as the recording's, and the buttons and menus
        // stay as the recording has them.
        if (CurrentSourceRecording()) {
            ApplyRecordingState(true);
        } else {
            videoSources[currentSourceIndex]->isActive = 1;
            SetRecordButtons(true, false);
        }
        ShowWindow(recordControlsWindow, SW_SHOW);
    } else {
        ShowWindow(recordControlsWindow, SW_HIDE);
        ReportUserMessage(L"There is no video capture device connected to the computer\r\n", true);
    }
    return S_OK;
}
