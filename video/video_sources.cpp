#include "video/video_sources.h"

std::vector<VideoSourceInfo*> videoSources;
uint32_t currentSourceIndex = kNoSource;

VideoSourceInfo* CurrentSource()
{
    if (currentSourceIndex >= videoSources.size())
        return nullptr;
    return videoSources[currentSourceIndex];
}

const VideoFormat* SelectedFormatOf(const VideoSourceInfo* source)
{
    if (!source || source->currentFrameRateIndex >= source->frameRates.size())
        return nullptr;
    const VideoFormatsByFrameRate* group = source->frameRates[source->currentFrameRateIndex];
    if (group->currentFormatIndex >= group->formats.size())
        return nullptr;
    return group->formats[group->currentFormatIndex];
}

const VideoFormat* CurrentVideoFormat()
{
    return SelectedFormatOf(CurrentSource());
}
