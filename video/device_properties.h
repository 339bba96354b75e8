// A device's picture properties (brightness, contrast, hue, saturation,
// sharpness, gain), set in the camera or grabber itself through
// IAMVideoProcAmp, always in manual mode.
#pragma once

#include <windows.h>

#include <cstdint>

#include "video/video_sources.h"

// The property numbers in the order of the records: Brightness, Contrast,
// Hue, Saturation, Sharpness, Gain.
constexpr int kDevicePropertyCount = 6;
constexpr long kDevicePropertyNumbers[kDevicePropertyCount] = {VideoProcAmp_Brightness, VideoProcAmp_Contrast,
                                                               VideoProcAmp_Hue,        VideoProcAmp_Saturation,
                                                               VideoProcAmp_Sharpness,  VideoProcAmp_Gain};

// The record of a property number (0, 1, 2, 3, 4, 9), or null.
DeviceProperty* PropertyRecord(VideoSourceInfo& source, long propertyNumber);

// For the current device.
HRESULT SetPropertyValue(long propertyNumber, long value);
HRESULT SetPropertyToDefault(long propertyNumber);

// Every property of the current device back to its default, in the order
// of their numbers, stopping at the first that fails (with its line). A
// failure, silently, when no device is current.
HRESULT SetPropertiesToDefaults();

// Writes every available stored value into the device.
HRESULT ApplyDeviceProperties(uint32_t sourceIndex);
