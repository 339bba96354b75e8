#include "video/device_list.h"

#include <cwchar>

#include "persistence/options.h"
#include "video/video_sources.h"

HRESULT GetAttachedVideoDeviceList()
{
    // Enumeration and validation of capture devices come with the capture
    // engine; until then no device is known.
    return S_OK;
}

void MarkIgnoredSources()
{
    for (VideoSourceInfo* source : videoSources)
        for (const std::wstring& excluded : options.ExcludedVideoSource)
            if (excluded == source->name)
                source->isIgnored = 1;
}

void ApplySavedConfigurations()
{
}
