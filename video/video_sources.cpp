#include "video/video_sources.h"

#include <cwchar>

std::vector<VideoSourceInfo*> videoSources;
uint32_t currentSourceIndex = kNoSource;

VideoSourceInfo* CurrentSource()
{
    if (currentSourceIndex >= videoSources.size())
        return nullptr;
    return videoSources[currentSourceIndex];
}

bool CurrentSourceRecording()
{
    VideoSourceInfo* source = CurrentSource();
    return source && (source->isManualRecording || source->isEventRecording);
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

VideoSubtype CurrentSubtype()
{
    const VideoFormat* format = CurrentVideoFormat();
    return format ? static_cast<VideoSubtype>(format->subtype) : SubtypeNoFormat;
}

void CurrentSubtypeName(wchar_t* text)
{
    text[0] = 0;
    if (const VideoFormat* format = CurrentVideoFormat())
        wcscpy(text, SubtypeName(format->subtype));
}

const wchar_t* SubtypeName(int32_t subtype)
{
    switch (subtype) {
    case SubtypeMJPG: return L"MJPG";
    case SubtypeYUY2: return L"YUY2";
    case SubtypeRGB24: return L"RGB24";
    case SubtypeUYVY: return L"UYVY";
    case SubtypeARGB32: return L"ARGB32";
    default: return L" ";
    }
}

VideoSubtype SubtypeFromName(const wchar_t* name)
{
    static const VideoSubtype order[] = {SubtypeMJPG, SubtypeYUY2, SubtypeRGB24, SubtypeUYVY, SubtypeARGB32};
    for (VideoSubtype subtype : order)
        if (wcscmp(name, SubtypeName(subtype)) == 0)
            return subtype;
    return SubtypeOther;
}
