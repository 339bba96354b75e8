#include "app/recording_buttons.h"

#include "app/recording_control.h"
#include "base/report.h"
#include "events/event_queue.h"
#include "events/event_state.h"
#include "ui/countdown_window.h"
#include "ui/record_buttons.h"
#include "ui/window_set.h"

Flag resumeEventsAfterManual{0};

void OnStartRecordingButton()
{
    resumeEventsAfterManual = 0;
    if (eventPending) {
        resumeEventsAfterManual = 1;
        CancelCountdown();
    }
    StopVideo();
    MakeVideoPathname(false, nullptr);
    MarkRecordingStarted(true);
    StartVideo();
}

void OnStopRecordingButton()
{
    if (eventRecording) {
        if (MessageBoxW(nullptr, L"Event recording in progress.  Stop now?", L"Attention",
                        MB_YESNO | MB_ICONEXCLAMATION) != IDYES)
            return;
        eventRecording = 0;
        DeleteEventEndTimer();
        stoppedEvents.push_back(StoppedEventKey{currentEventTime, currentEventDuration});
        ReportUserMessage(L"Event recording is manually stopped", true);
        if (countdownWindow)
            ShowWindow(countdownWindow, SW_HIDE);
        SetRecordButtons(false, false);
        SetWindowTextW(mainWindow, kMainWindowTitle);
    }
    StopVideo();
    MarkRecordingStopped();
    RecordingFilePath[0] = 0;
    eventDurationMs = 0;
    eventRecordingName[0] = 0;
    if (resumeEventsAfterManual) {
        resumeEventsAfterManual = 0;
        LoadEvents();
    }
    StartVideo();
}
