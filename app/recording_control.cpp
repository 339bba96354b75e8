#include "app/recording_control.h"

#include "app/app_state.h"
#include "app/commands.h"
#include "app/main_window.h"
#include "persistence/options.h"
#include "ui/user_messages.h"
#include "video/video_player.h"
#include "video/video_sources.h"

HRESULT StopVideo()
{
    MainWindow& app = *mainWindowObject;
    VideoSourceInfo* source = CurrentSource();
    bool wasRecording = source && (source->isManualRecording || source->isEventRecording);

    // The marks are still on the device here: the report's heading follows them.
    HRESULT result = app.videoPlayer->StopCamera(wasRecording);
    if (FAILED(result)) {
        ReportUserMessage(L"WARNING: command to stop camera failed\r\n", true);
        return result;
    }
    // The GPS link that a recording closed comes back.
    if (source && wasRecording && !appClosing && options.AutostartGPS)
        SendMessageW(app.mainWindow, WM_COMMAND, IDM_USB_GPS_RECEIVER, 0);
    return S_OK;
}

HRESULT StartVideo()
{
    MainWindow& app = *mainWindowObject;
    cameraStarting = 1;
    HRESULT result = app.videoPlayer->StartCamera(options.VideoDirectory[0] == 0);
    cameraStarting = 0;
    return result;
}

void OnStartRecordingButton()
{
    // Manual recording arrives with the recording control; the button is
    // only shown while a device is active.
}

void OnStopRecordingButton()
{
}
