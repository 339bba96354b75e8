#include "events/event_queue.h"

#include "app/main_window.h"
#include "app/power_actions.h"
#include "app/recording_control.h"
#include "ui/countdown_window.h"
#include "ui/power_window.h"
#include "ui/user_messages.h"
#include "ui/window_layout.h"
#include "video/video_sources.h"

#include <algorithm>

std::vector<std::unique_ptr<EventRecord>> scheduledEvents;
// Armed records are never freed: a timer thread may still be naming a file
// after the event that a reload on the interface thread has just replaced.
std::atomic<EventRecord*> currentEvent{nullptr};
SYSTEMTIME currentEventTime{};
SYSTEMTIME currentEventDuration{};
// Room for more stops than a run can have: a stop on the interface thread
// appends while an end timer's reload may be walking the list.
std::vector<StoppedEventKey> stoppedEvents = [] {
    std::vector<StoppedEventKey> keys;
    keys.reserve(1024);
    return keys;
}();
Flag eventPending{0};
Flag eventRecording{0};
std::atomic<uint64_t> countdownDeadline{0};
std::atomic<uint32_t> eventDurationMs{0};
std::atomic<uint32_t> keepAwakeCounter{0};

namespace {

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
    RecordingFilePath[0] = 0;
    scheduledEvents.clear();
    currentEvent = nullptr;

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
    MainWindow& app = *mainWindowObject;
    if (hibernateAfterEvent)
        ReportUserMessage(L"NOTE: computer will be placed in hibernate 30 seconds after recording ends\r\n", false);
    else if (shutdownAfterEvent)
        ReportUserMessage(L"NOTE: computer will shut down 30 seconds after recording ends\r\n", false);
    // A countdown already running keeps its queue: its handles are simply
    // replaced, and its ticks find the same state.
    app.tickTimerQueue = CreateTimerQueue();
    CreateTimerQueueTimer(&app.tickTimer, app.tickTimerQueue, TickCallback, nullptr, 1000, 1000, 0);
    keepAwakeCounter = 0;
    eventPending = 1;
    SetWindowTextW(app.mainWindow, L"MAVU Video Capture -- Event pending");
    if (app.countdownWindow) {
        SetWindowTextW(app.countdownWindow, L"Event Pending");
        SetCountdownHeading(showUtcClock ? L"         Computer time (UTC):" : L"Countdown to recording start time:");
        SetCountdownLines(WithoutLineEnd(startLine).c_str(), WithoutLineEnd(eventLine).c_str(),
                          WithoutLineEnd(endLine).c_str());
        PlaceDialog(app.countdownWindow);
        ShowWindow(app.countdownWindow, SW_SHOWNOACTIVATE);
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
    MainWindow& app = *mainWindowObject;
    if (app.tickTimerQueue) {
        DeleteTimerQueueTimer(app.tickTimerQueue, app.tickTimer, nullptr);
        DeleteTimerQueueEx(app.tickTimerQueue, nullptr);
        app.tickTimerQueue = nullptr;
    }
}

void StartEventEndTimer(uint32_t milliseconds)
{
    MainWindow& app = *mainWindowObject;
    eventRecording = 1;
    app.endTimerQueue = CreateTimerQueue();
    CreateTimerQueueTimer(&app.endTimer, app.endTimerQueue, EndCallback, nullptr, milliseconds, 0, 0);
}

void OnEventRecordingEnd()
{
    if (!eventRecording)
        return;
    MainWindow& app = *mainWindowObject;
    eventRecording = 0;
    if (app.endTimerQueue) {
        DeleteTimerQueueTimer(app.endTimerQueue, app.endTimer, nullptr);
        DeleteTimerQueueEx(app.endTimerQueue, nullptr);
        app.endTimerQueue = nullptr;
    }
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
    MainWindow& app = *mainWindowObject;
    StopTickTimer();
    eventRecording = 0;
    RecordingFilePath[0] = 0;
    eventPending = 0;
    eventDurationMs = 0;
    SetWindowTextW(app.mainWindow, kMainWindowTitle);
    if (app.countdownWindow)
        ShowWindow(app.countdownWindow, SW_HIDE);
}
