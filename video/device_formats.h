// A capture filter's formats: which ones the program can use, grouped by
// frame rate, and telling the filter which one to deliver.
#pragma once

#include <windows.h>
#include <dshow.h>

#include "video/video_sources.h"

// Reads the first output pin that offers any usable format and groups its
// usable formats into the device's record.
HRESULT GetVideoDeviceFormats(VideoSourceInfo* source);

// ICaptureGraphBuilder2::FindInterface on a device's filter (the filter
// itself, then its pins), through the engine's capture graph builder, or a
// builder of its own when the engine has none yet.
HRESULT FindSourceInterface(const GUID* category, IBaseFilter* filter, REFIID interfaceId, void** found);
