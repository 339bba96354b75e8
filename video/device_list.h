// The list of attached capture devices.
#pragma once

#include <windows.h>

// Finds the attached capture devices and adds the usable ones to
// videoSources.
HRESULT GetAttachedVideoDeviceList();

// Sets isIgnored on the sources that ExcludedVideoSource names.
void MarkIgnoredSources();

// Applies each device's saved configuration from the options file.
void ApplySavedConfigurations();
