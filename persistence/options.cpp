#include "persistence/options.h"

#include <cwchar>

Options options;
SYSTEMTIME defaultDuration = kDefaultDuration;

const wchar_t* const kWindowPositionKeys[WindowKeyCount] = {
    L"MainWindowPosition",
    L"MessageWindowPosition",
    L"RecordControlsWindowPosition",
    L"DevicesWindowPosition",
    L"DeviceFormatWindowPosition",
    L"MiscellaneousOptionsWindowPosition",
    L"CodecSelectorWindowPosition",
    L"FileOptionsWindowPosition",
    L"EventDurationWindowPosition",
    L"EventPendingOptionsWindowPosition",
    L"PerformanceOptionsWindowPosition",
    L"HibernationWindowPosition",
    L"GpsWindowPosition",
    L"PixelSaturationWindowPosition",
    L"FrameIntegrationWindowPosition",
    L"CountdownWindowPosition",
    L"ScheduleEventWindowPosition",
    L"ViewEventsWindowPosition",
    L"BrightnessContrastWindowPosition",
    L"MagnifyWindowPosition",
};

void SetOptionDefaults(Options& record, const RECT& workArea)
{
    record.VideoNamePrefix[0] = 0;
    record.VideoDirectory[0] = 0;
    record.LogfileNamePrefix[0] = 0;
    record.LogfileDirectory[0] = 0;
    record.EventFileGlobalPrefix[0] = 0;
    record.DefaultDuration[0] = 0;
    wcscpy(record.EventPendingDisplay, L"COUNTDOWN");
    record.PixelSaturationValue = -1;

    for (WindowPosition& position : record.windows)
        position = {kNoPosition, kNoPosition, kNoPosition, kNoPosition};
    record.messageWindowSavedWidth = 600;
    record.messageWindowSavedHeight = 460;
    record.messageWindowWidth = 600;
    record.messageWindowHeight = 460;

    // The hibernation window has no current position; it sits mid-screen.
    WindowPosition& hibernation = record.windows[HibernationWindowKey];
    if (workArea.right == 0) {
        hibernation.savedLeft = 100;
        hibernation.savedTop = 500;
    } else {
        hibernation.savedLeft = (workArea.right - workArea.left) / 2 - 150;
        hibernation.savedTop = (workArea.bottom - workArea.top) / 2 - 100;
    }

    record.DefaultVideoSource[0] = 0;
    record.ExcludedVideoSource.clear();
    record.RecordButtonsSpace = 0;
    record.DisplayOffWhileRecording = 0;
    record.RemoveFiltersWhileRecording = 0;
    record.AutostartGPS = 0;
    record.EnableVideoBrightnessContrast = 0;
    record.DefaultRenderer = 0;
}
