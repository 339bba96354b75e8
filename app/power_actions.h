// Hibernation and shut down after an event recording.
#pragma once

#include <windows.h>
#include <powrprof.h>

#include "base/flag.h"

// Starts as 1; cleared at start-up when the computer can't hibernate.
extern Flag hibernateSupported;
// The armed event's requests, set when it is armed.
extern Flag hibernateAfterEvent;
extern Flag shutdownAfterEvent;
// Seconds left in the Hibernate window's count.
extern Flag powerActionCountdown;
// An accepted shut down: the message loop ends at the next message.
extern Flag leaveMessageLoop;

// The Hiberboot flag: the byte after FastSystemS4, which some SDK headers
// still call spare.
BYTE HiberbootFlag(const SYSTEM_POWER_CAPABILITIES& capabilities);

// At start-up: whether the computer can hibernate, and whether the process may
// adjust its privileges for a power action. Reports what it can't do.
void CheckPowerCapabilities();

// At the count's end: hibernates or shuts down as the armed flags ask, and
// reports what the system refused.
void PerformPowerAction();
