// Hibernation and shut down after an event recording.
#pragma once

#include <windows.h>
#include <powrprof.h>

// The Hiberboot flag: the byte after FastSystemS4, which some SDK headers
// still call spare.
BYTE HiberbootFlag(const SYSTEM_POWER_CAPABILITIES& capabilities);

// At start-up: whether the computer can hibernate, and whether the process may
// adjust its privileges for a power action. Reports what it can't do.
void CheckPowerCapabilities();

// At the count's end: hibernates or shuts down as the armed flags ask, and
// reports what the system refused.
void PerformPowerAction();
