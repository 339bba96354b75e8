// Finding the attached capture devices, validating each, and binding its
// capture filter. A device is known by its friendly name and nothing else.
#pragma once

#include <windows.h>
#include <dshow.h>

#include <string>
#include <vector>

#include "video/video_sources.h"

// Names of attached devices that failed validation; they aren't tried again.
extern std::vector<std::wstring> unusableDeviceNames;

// Walks the video input devices at start-up, adding the usable ones to
// videoSources.
HRESULT GetAttachedVideoDeviceList();

// Makes, validates and appends one device; on failure records its name as
// unusable and says so.
HRESULT AddVideoSource(const wchar_t* name, IMoniker* moniker);

HRESULT ValidateVideoCaptureDevice(VideoSourceInfo* source, IMoniker* moniker);

// A device that failed validation: its name is remembered as unusable, the
// refusal is reported, and the record goes with its filter.
void RecordUnusableDevice(VideoSourceInfo* source);

// Binds the device's capture filter if it isn't bound (after a reconnection).
HRESULT GetVideoSourceBaseFilter(VideoSourceInfo* source);

// One picture property of a device; 1 when it is available (manual mode,
// with a range), 0 otherwise.
int SetDevicePropertyValues(IAMVideoProcAmp* procAmp, long propertyNumber, DeviceProperty* property);

// Sets isIgnored on the sources that ExcludedVideoSource names.
void MarkIgnoredSources();

// Reads a moniker's friendly name, cleaned. False when it can't be read.
bool ReadFriendlyName(IMoniker* moniker, std::wstring& name, const wchar_t* nullBagMessage, HRESULT* failure);
