// The size of the current format's frame and of the picture on the screen.
// The engine sets them at each camera start and each magnify change; the
// window layout fits the windows to them.
#pragma once

#include <cstdint>

extern int32_t videoWidth, videoHeight;
extern int32_t displayedWidth, displayedHeight;

// The Magnify tool's choice; 0 is the video size.
extern int32_t magnifyChoice;

// Size of the picture for a magnify choice (0 to 4): the video size, a half,
// three quarters, one and a half, or double; integer division.
int32_t MagnifiedSize(int32_t videoSize, int32_t magnifyChoice);
