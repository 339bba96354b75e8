// The queue of scheduled events: loading "Events\*.mef", arming the next
// event, the one-second countdown on a timer queue, the recording's start
// at the deadline and its end by a one-shot timer. Everything here may run
// on a timer-queue thread; the flags carry the order.
#pragma once

#include "app/app_state.h"
#include "events/event_rules.h"

#include <memory>
#include <vector>

extern std::vector<std::unique_ptr<EventRecord>> scheduledEvents;  // latest first
extern std::atomic<EventRecord*> currentEvent;  // the armed event, never freed
extern SYSTEMTIME currentEventTime;
extern SYSTEMTIME currentEventDuration;
extern std::vector<StoppedEventKey> stoppedEvents;
extern Flag eventPending;
extern Flag eventRecording;
extern std::atomic<uint64_t> countdownDeadline;  // local time, FILETIME ticks
extern std::atomic<uint32_t> eventDurationMs;
extern std::atomic<uint32_t> keepAwakeCounter;

void LoadEvents();
int AdmitEvent(EventRecord* record);
void ArmNextEvent();
void PrepareEventTimes(const SYSTEMTIME& eventTime, const SYSTEMTIME& duration);
void StartCountdown();
void CountdownTick();
void StopTickTimer();
void StartEventEndTimer(uint32_t milliseconds);
void OnEventRecordingEnd();
void CancelCountdown();
