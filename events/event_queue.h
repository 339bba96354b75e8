// The queue of scheduled events: loading "Events\*.mef", arming the next
// event, the one-second countdown on a timer queue, the recording's start
// at the deadline and its end by a one-shot timer. Everything here may run
// on a timer-queue thread; the flags of event_state.h carry the order. The
// two timers belong to this queue, and only it deletes them.
#pragma once

#include <cstdint>

#include "events/event_file.h"

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

// Ends the event recording's one-shot timer, as a stop by hand does.
void DeleteEventEndTimer();

// Lets go of both timers' handles without deleting them: a countdown armed
// at start-up keeps running, out of reach of StopTickTimer.
void ForgetEventTimers();
