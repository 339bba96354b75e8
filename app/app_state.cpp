#include "app/app_state.h"

MainWindow* mainWindowObject = nullptr;

Flag startingUp{0};
Flag fatalStartupError{0};
Flag leaveMessageLoop{0};
Flag userMessagesWindowReady{0};
Flag appClosing{0};

Flag cameraStarting{0};
Flag deviceChangeBusy{0};

wchar_t RecordingFilePath[kRecordingFilePathCapacity];
Flag resumeEventsAfterManual{0};

Flag showUtcClock{0};
Flag hibernateSupported{1};
Flag hibernateAfterEvent{0};
Flag shutdownAfterEvent{0};
Flag powerActionCountdown{0};

int32_t utcOffsetMinutes = 0;

Flag displayOffWhileRecording{0};
Flag removeFiltersWhileRecording{0};
Flag rendererChoice{0};

Flag brightnessContrastOn{0};
Flag pixelSaturationOn{0};
Flag frameIntegrationOn{0};
Flag magnifyOn{0};
Flag frameIntegrationCount{1};
Flag colorInCaptureFile{0};
wchar_t eventRecordingName[kEventRecordingNameCapacity] = L"";
Flag gpsSnapshotValid{0};
wchar_t gpsSnapshotLatitude[kGpsSnapshotTextCapacity] = L"";
wchar_t gpsSnapshotLongitude[kGpsSnapshotTextCapacity] = L"";
wchar_t gpsSnapshotAltitude[kGpsSnapshotTextCapacity] = L"";
wchar_t gpsSnapshotSatellites[kGpsSnapshotTextCapacity] = L"";

Flag selectDeviceOpen{0};
Flag deviceFormatOpen{0};
Flag scheduleEditMode{0};
uint64_t scheduleMinimumTicks = ~0ull;
Flag showExpiredEvents{0};
Flag ascendingEventTimes{0};

SYSTEMTIME defaultDuration = {1943, 5, 1, 3, 0, 10, 0, 0};

std::vector<DWORD> nonVideoThreadIds;

AppIcons appIcons;

static HICON LoadIconFile(const wchar_t* path)
{
    return static_cast<HICON>(LoadImageW(nullptr, path, IMAGE_ICON, 0, 0, LR_LOADFROMFILE));
}

void LoadAppIcons()
{
    appIcons.logoLarge = LoadIconFile(L"MavuVideoIcons\\MAVU_logo_large.ico");
    appIcons.logoSmall = LoadIconFile(L"MavuVideoIcons\\MAVU_logo_small.ico");
    appIcons.stop = LoadIconFile(L"MavuVideoIcons\\stop64x.ico");
    appIcons.record = LoadIconFile(L"MavuVideoIcons\\record56x.ico");
    appIcons.folder = LoadIconFile(L"MavuVideoIcons\\folder32x.ico");
    appIcons.folderClear = LoadIconFile(L"MavuVideoIcons\\folderClear32x.ico");
}

void ClearRuntimeSwitches()
{
    brightnessContrastOn = 0;
    pixelSaturationOn = 0;
    frameIntegrationOn = 0;
    magnifyOn = 0;
    frameIntegrationCount = 1;
}
