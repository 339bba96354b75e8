// The options record: every setting of the program, filled with defaults at
// start-up and then from the options file.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

// A coordinate that was never set.
constexpr int32_t kNoPosition = 2147483647;

struct WindowPosition {
    int32_t savedLeft;
    int32_t savedTop;
    int32_t currentLeft;
    int32_t currentTop;
};

// The windows with a remembered position, in the order of their keys in the
// options file.
enum WindowKey : int {
    MainWindowKey,
    MessageWindowKey,
    RecordControlsWindowKey,
    DevicesWindowKey,
    DeviceFormatWindowKey,
    MiscellaneousOptionsWindowKey,
    CodecSelectorWindowKey,
    FileOptionsWindowKey,
    EventDurationWindowKey,
    EventPendingOptionsWindowKey,
    PerformanceOptionsWindowKey,
    HibernationWindowKey,
    GpsWindowKey,
    PixelSaturationWindowKey,
    FrameIntegrationWindowKey,
    CountdownWindowKey,
    ScheduleEventWindowKey,
    ViewEventsWindowKey,
    BrightnessContrastWindowKey,
    MagnifyWindowKey,
    WindowKeyCount
};

// Option key names of the window positions, indexed by WindowKey.
extern const wchar_t* const kWindowPositionKeys[WindowKeyCount];

constexpr int kShortTextCapacity = 21;   // name prefixes
constexpr int kPathCapacity = 512;       // folders
constexpr int kGlobalPrefixCapacity = 13;
constexpr int kSmallTextCapacity = 20;   // DefaultDuration, EventPendingDisplay
constexpr int kDeviceNameCapacity = 256;

struct Options {
    wchar_t VideoNamePrefix[kShortTextCapacity];
    wchar_t VideoDirectory[kPathCapacity];
    wchar_t LogfileNamePrefix[kShortTextCapacity];
    wchar_t LogfileDirectory[kPathCapacity];
    wchar_t EventFileGlobalPrefix[kGlobalPrefixCapacity];
    wchar_t DefaultDuration[kSmallTextCapacity];
    wchar_t EventPendingDisplay[kSmallTextCapacity];
    int32_t PixelSaturationValue;

    WindowPosition windows[WindowKeyCount];
    // The User Messages window also keeps its outer size.
    int32_t messageWindowSavedWidth;
    int32_t messageWindowSavedHeight;
    int32_t messageWindowWidth;
    int32_t messageWindowHeight;

    wchar_t DefaultVideoSource[kDeviceNameCapacity];
    std::vector<std::wstring> ExcludedVideoSource;

    int32_t RecordButtonsSpace;
    int32_t DisplayOffWhileRecording;
    int32_t RemoveFiltersWhileRecording;
    int32_t AutostartGPS;
    int32_t EnableVideoBrightnessContrast;
    int32_t DefaultRenderer;  // 0 EVR, 1 VMR9, 2 VMR7
};

extern Options options;

// The default recording duration, read from DefaultDuration; its date part
// only makes it a valid value for a date-time picker.
extern SYSTEMTIME defaultDuration;
// Ten minutes, when no options file says otherwise.
constexpr SYSTEMTIME kDefaultDuration = {1943, 5, 1, 3, 0, 10, 0, 0};

// Fills the record with its defaults. The hibernation window's default
// position is worked out from the desktop's work area.
void SetOptionDefaults(Options& record, const RECT& workArea);
