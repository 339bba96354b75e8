// The Start and Stop buttons of the Record Controls window: a recording by
// hand, which cancels a countdown and reloads the events afterwards, or the
// stop by hand of an event recording.
#pragma once

#include "base/flag.h"

// A manual recording interrupted a countdown; events are reloaded when it
// stops.
extern Flag resumeEventsAfterManual;

// BN_CLICKED of the two buttons.
void OnStartRecordingButton();
void OnStopRecordingButton();
