// The state of the event queue: the scheduled events, the armed one, and the
// flags that order the countdown, the recording and its end across the
// user-interface thread and the timer threads. No lock guards any of it; the
// order of the flag writes does.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/flag.h"
#include "events/event_file.h"
#include "events/event_rules.h"

extern std::vector<std::unique_ptr<EventRecord>> scheduledEvents;  // latest first
extern std::atomic<EventRecord*> currentEvent;  // the armed event, freed by the scan after next
// Copies of the armed event's time and duration; zero when nothing is armed.
extern SYSTEMTIME currentEventTime;
extern SYSTEMTIME currentEventDuration;
// Events the user stopped by hand in this run.
extern std::vector<StoppedEventKey> stoppedEvents;
extern Flag eventPending;  // a countdown runs
extern Flag eventRecording;  // an event recording runs
extern std::atomic<uint64_t> countdownDeadline;  // local time, FILETIME ticks
extern std::atomic<uint32_t> eventDurationMs;
extern std::atomic<uint32_t> keepAwakeCounter;
