// The two analog standards the program works with, what goes with each of
// them (decoder value, frame-rate group, format), and the rules that decide
// a trial. The trial itself runs the main graph: VideoPlayer's
// TestAnalogDeviceFormat (video_player_analog.cpp).
#pragma once

#include <cstdint>
#include <string>

#include "video/video_sources.h"

// The decoder's values of the two standards (AnalogVideo_NTSC_M, _PAL_B).
constexpr long kDecoderNtscM = 1;
constexpr long kDecoderPalB = 16;

// How long a trial runs, and the least number of frames drawn meanwhile
// that says the signal is PAL: a decoder on the wrong standard locks to
// nothing and draws next to no frames, one on the right standard about 40.
constexpr unsigned kAnalogTrialMs = 1600;
constexpr long kLeastPalFramesDrawn = 6;

bool TrialShowsPal(long framesDrawn);

// Whether the standard a trial found differs from the decoder's at its
// start.
bool AnalogStandardChanged(long startDecoderValue, DeviceStandard found);

// "Auto Detect: device \"NAME\" format changed from NTSC to PAL\r\n" or
// "... from PAL to NTSC\r\n", by the standard now set.
std::wstring AutoDetectChangeLine(const wchar_t* deviceName, DeviceStandard now);

// The format a trial sets: the first of exactly 720 by 576 in a group of 25
// frames, or null. An empty group or format entry is reported and passed
// over.
const VideoFormat* FindPalTrialFormat(const VideoSourceInfo& source);

// Points the device at the rate group of its standard (30 for NTSC, 25 for
// PAL, with 720 by 576 chosen in it) and switches the other groups off. A
// standard that is neither switches every group off and selects nothing.
void SetAnalogDeviceFrameRate(VideoSourceInfo* source);
