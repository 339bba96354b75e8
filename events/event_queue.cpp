#include "events/event_queue.h"

#include "app/disk_space.h"
#include "app/power_actions.h"
#include "app/recording_control.h"
#include "app/time_zone.h"
#include "base/report.h"
#include "base/ticks.h"
#include "base/timer_queue_timer.h"
#include "events/event_state.h"
#include "ui/countdown_window.h"
#include "ui/power_window.h"
#include "ui/window_layout.h"
#include "ui/window_set.h"
#include "video/video_sources.h"

#include <algorithm>
#include <memory>

namespace {

TimerQueueTimer tickTimer;
TimerQueueTimer endTimer;

// The armed event's three lines for the countdown window.
std::wstring startLine, eventLine, endLine;

VOID CALLBACK TickCallback(PVOID, BOOLEAN)
{
    if (eventRecording)
        return;
    CountdownTick();
}

VOID CALLBACK EndCallback(PVOID, BOOLEAN)
{
    OnEventRecordingEnd();
}

std::wstring WithoutLineEnd(const std::wstring& line)
{
    std::wstring text = line;
    while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r'))
        text.pop_back();
    return text;
}

}  // namespace

int AdmitEvent(EventRecord* record)
{
    // The list holds owners; the rule works on plain pointers.
    std::vector<EventRecord*> list;
    for (auto& owned : scheduledEvents)
        list.push_back(owned.get());
    AdmitResult result = AdmitEventInto(list, record, UtcNowTicks());
    if (result != EventAdmitted)
        return result;
    auto position = std::find(list.begin(), list.end(), record) - list.begin();
    scheduledEvents.insert(scheduledEvents.begin() + position, std::unique_ptr<EventRecord>(record));
    return EventAdmitted;
}

void LoadEvents()
{
    if (videoSources.empty())
        return;
    // A recording in progress (a save or a delete in the event windows,
    // which stand open during one) keeps its file's path: its stop writes
    // the report to it.
    if (!CurrentSourceRecording())
        RecordingFilePath[0] = 0;
    scheduledEvents.clear();
    // The event armed before is freed one scan later: a countdown tick on
    // its timer's thread may be reading it this very moment. So no scan
    // leaves more than one record behind, however many a night holds.
    static std::unique_ptr<EventRecord> retiredEvent;
    retiredEvent.reset(currentEvent.exchange(nullptr));

    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(L"Events\\*.mef", &found);
    if (search == INVALID_HANDLE_VALUE) {
        ReportUserMessage(L"There are no scheduled Events\r\n", true);
        return;
    }
    bool listed = false;
    do {
        auto record = std::make_unique<EventRecord>();
        std::wstring path = std::wstring(L"Events\\") + found.cFileName;
        ReadEventFile(path.c_str(), record->text);
        ParseEventRecord(*record);
        if (MatchesStoppedEvent(stoppedEvents, *record))
            continue;
        EventRecord* raw = record.release();
        int result = AdmitEvent(raw);
        if (result == EventAdmitted) {
            if (!listed)
                ReportUserMessage(L"The following Events are Loaded (scheduled):", true);
            listed = true;
            std::wstring name = found.cFileName;
            name = name.size() > 4 ? name.substr(0, name.size() - 4) : std::wstring();
            ReportUserMessage((L"    " + name).c_str(), false);
            continue;
        }
        delete raw;
        if (result == EventOverlaps)
            ReportUserMessage((std::wstring(L"NOTE: the Event ") + found.cFileName +
                               L" is ignored because it overlaps (within one minute) another Event\r\n")
                                  .c_str(),
                              !listed);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    if (listed)
        ReportUserMessage(L"", false);
    ArmNextEvent();
}

void ArmNextEvent()
{
    if (scheduledEvents.empty()) {
        currentEventTime = SYSTEMTIME{};
        currentEventDuration = SYSTEMTIME{};
        ReportUserMessage(L"There are no scheduled Events\r\n", true);
        return;
    }
    EventRecord* next = scheduledEvents.back().get();
    if (RecordingFilePath[0] == 0 && currentSourceIndex >= videoSources.size())
        ReportUserMessage(L"Logic error: current source index out of range for starting future event\r\n", true);
    PrepareEventTimes(next->eventTime, next->duration);
    EventRecord scratch{};
    scratch.eventTime = next->eventTime;
    scratch.duration = next->duration;
    ComputeEventTimes(scratch, next->eventTime, next->duration);
    ReportUserMessage(EventReportText(scratch).c_str(), false);
    hibernateAfterEvent = next->hibernate;
    if (hibernateAfterEvent && !hibernateSupported) {
        hibernateAfterEvent = 0;
        ReportUserMessage(L"Hibernation is not supported even though Event requests it", true);
    }
    shutdownAfterEvent = next->shutdown;
    currentEvent = scheduledEvents.back().release();
    scheduledEvents.pop_back();
    currentEventTime = next->eventTime;
    currentEventDuration = next->duration;
    StartCountdown();
    WarnIfRecordingWontFit(eventDurationMs);
}

void PrepareEventTimes(const SYSTEMTIME& eventTime, const SYSTEMTIME& duration)
{
    EventRecord scratch{};
    ComputeEventTimes(scratch, eventTime, duration);
    eventDurationMs = static_cast<uint32_t>(scratch.durationTicks / 10000);
    countdownDeadline = CountdownDeadlineTicks(scratch.startTicks, utcOffsetMinutes);
    startLine = EventTimeLine(L"    Start time:\t", scratch.startTicks);
    eventLine = EventTimeLine(L"    Event time:\t", eventTime);
    endLine = EventTimeLine(L"    End time:\t", scratch.endTicks);
}

void StartCountdown()
{
    if (hibernateAfterEvent)
        ReportUserMessage(L"NOTE: computer will be placed in hibernate 30 seconds after recording ends\r\n", false);
    else if (shutdownAfterEvent)
        ReportUserMessage(L"NOTE: computer will shut down 30 seconds after recording ends\r\n", false);
    // A countdown already running keeps its queue: its handles are simply
    // replaced, and its ticks find the same state.
    tickTimer.Start(TickCallback, 1000, 1000);
    keepAwakeCounter = 0;
    eventPending = 1;
    SetWindowTextW(mainWindow, L"MAVU Video Capture -- Event pending");
    if (countdownWindow) {
        SetWindowTextW(countdownWindow, L"Event Pending");
        SetCountdownHeading();
        SetCountdownLines(WithoutLineEnd(startLine).c_str(), WithoutLineEnd(eventLine).c_str(),
                          WithoutLineEnd(endLine).c_str());
        PlaceDialog(countdownWindow);
        ShowWindow(countdownWindow, SW_SHOWNOACTIVATE);
    }
}

void CountdownTick()
{
    if (!eventPending)
        return;
    SYSTEMTIME local;
    GetLocalTime(&local);
    FILETIME localFile;
    if (!SystemTimeToFileTime(&local, &localFile))
        return;
    uint64_t now = (static_cast<uint64_t>(localFile.dwHighDateTime) << 32) | localFile.dwLowDateTime;
    uint64_t deadline = countdownDeadline;
    if (now < deadline) {
        if (keepAwakeCounter == 0)
            SetThreadExecutionState(ES_SYSTEM_REQUIRED);
        keepAwakeCounter = (keepAwakeCounter + 1) % 60;
        std::wstring text;
        if (showUtcClock) {
            SYSTEMTIME utc;
            GetSystemTime(&utc);
            text = ClockText(utc);
        } else {
            text = CountdownLeftText(static_cast<int64_t>(deadline - now));
        }
        SetCountdownValue(text.c_str());
        return;
    }
    // The deadline: the camera restarts into the event's file, on this thread.
    EventRecord* event = currentEvent;
    StopTickTimer();
    eventPending = 0;
    StopVideo();
    if (currentSourceIndex >= videoSources.size()) {
        ReportUserMessage(L"Logic error: attempting to record an event with current source index out of range\r\n",
                          true);
        // Nothing to record with: the event ends here.
        CancelCountdown();
        return;
    }
    // Armed before the camera starts, so the start-up time comes out of the
    // recording rather than adding to it.
    StartEventEndTimer(eventDurationMs + 450);
    MakeVideoPathname(true, event);
    MarkRecordingStarted(true);
    StartVideo();
}

void StopTickTimer()
{
    tickTimer.Delete();
}

void StartEventEndTimer(uint32_t milliseconds)
{
    eventRecording = 1;
    endTimer.Start(EndCallback, milliseconds, 0);
}

void DeleteEventEndTimer()
{
    endTimer.Delete();
}

void ForgetEventTimers()
{
    tickTimer.Forget();
    endTimer.Forget();
}

void OnEventRecordingEnd()
{
    if (!eventRecording)
        return;
    eventRecording = 0;
    endTimer.Delete();
    StopVideo();
    MarkRecordingStopped();
    RecordingFilePath[0] = 0;
    eventDurationMs = 0;
    eventRecordingName[0] = 0;
    ReportUserMessage(L"", false);
    StartVideo();
    if (hibernateAfterEvent || shutdownAfterEvent)
        StartPowerCountdown();
    LoadEvents();
}

void CancelCountdown()
{
    StopTickTimer();
    eventPending = 0;
    if (countdownWindow)
        ShowWindow(countdownWindow, SW_HIDE);
    // Only the countdown goes: a recording in progress keeps its file, its
    // event's end and its report.
    if (CurrentSourceRecording()) {
        SetWindowTextW(mainWindow, kRecordingWindowTitle);
        return;
    }
    eventRecording = 0;
    RecordingFilePath[0] = 0;
    eventDurationMs = 0;
    SetWindowTextW(mainWindow, kMainWindowTitle);
}
