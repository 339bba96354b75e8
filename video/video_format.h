// Reading a capture pin's media types into the program's format records,
// and grouping usable formats by frame rate.
#pragma once

#include "filters/media_type.h"

#include <windows.h>
#include <dshow.h>

#include <cstdint>
#include <vector>

#include "video/video_sources.h"

// Whole frames per second from AvgTimePerFrame (100 ns units): 10,000,000
// divided by it, rounded half down; 0 when no rate can be worked out.
uint32_t FrameRateFromAvgTimePerFrame(int64_t avgTimePerFrame);

// Fills a format record from a media type, which it keeps. A type without a
// format block gives rate 0 and subtype "no format".
void ParseVideoFormat(VideoFormat& format, AM_MEDIA_TYPE* mediaType);

// The formats the program works with: YUY2, RGB24 or MJPG, a known rate, and
// at least 640 by 480 (a negative, top-down height is not kept).
bool IsUsableCaptureSubtype(const GUID& subtype);
bool IsUsableVideoFormat(const VideoFormat& format);

// Appends formats to the device's groups: the group of the same rate, or a
// new one at the end. Order of discovery is kept; nothing is sorted.
void GroupFormatsByRate(VideoSourceInfo& source, const std::vector<VideoFormat*>& formats);

// Frees a device record with its groups and formats.
void DestroyVideoSource(VideoSourceInfo* source);
