#include "video/video_format.h"

#include <cwchar>

#include <uuids.h>

uint32_t FrameRateFromAvgTimePerFrame(int64_t avgTimePerFrame)
{
    // The 64-bit value is narrowed the way a print with "%lld" and a scan
    // with "%u" would narrow it: to its low 32 bits.
    uint32_t narrowed = static_cast<uint32_t>(static_cast<uint64_t>(avgTimePerFrame));
    if (narrowed == 0)
        return 0;
    uint32_t rate = 10000000u / narrowed;
    if (static_cast<int64_t>(10000000 % avgTimePerFrame) > avgTimePerFrame / 2)
        rate += 1;
    return rate;
}

void ParseVideoFormat(VideoFormat& format, AM_MEDIA_TYPE* mediaType)
{
    format.mediaType = mediaType;
    format.videoFormatName[0] = 0;
    format.width = 0;
    format.height = 0;
    if (!mediaType->pbFormat || mediaType->cbFormat < sizeof(VIDEOINFOHEADER)) {
        format.frameRate = 0;
        format.subtype = SubtypeNoFormat;
        return;
    }
    const auto* header = reinterpret_cast<const VIDEOINFOHEADER*>(mediaType->pbFormat);
    format.width = header->bmiHeader.biWidth;
    format.height = header->bmiHeader.biHeight;
    swprintf(format.videoFormatName, kVideoFormatNameCapacity, L"%dx%d", static_cast<int>(format.width),
             static_cast<int>(format.height));
    format.frameRate = FrameRateFromAvgTimePerFrame(header->AvgTimePerFrame);

    const GUID& subtype = mediaType->subtype;
    if (subtype == MEDIASUBTYPE_MJPG)
        format.subtype = SubtypeMJPG;
    else if (subtype == MEDIASUBTYPE_YUY2)
        format.subtype = SubtypeYUY2;
    else if (subtype == MEDIASUBTYPE_RGB24)
        format.subtype = SubtypeRGB24;
    else if (subtype == MEDIASUBTYPE_UYVY)
        format.subtype = SubtypeUYVY;
    else if (subtype == MEDIASUBTYPE_ARGB32)
        format.subtype = SubtypeARGB32;
    else
        format.subtype = SubtypeOther;
}

bool IsUsableCaptureSubtype(const GUID& subtype)
{
    return subtype == MEDIASUBTYPE_MJPG || subtype == MEDIASUBTYPE_RGB24 || subtype == MEDIASUBTYPE_YUY2;
}

bool IsUsableVideoFormat(const VideoFormat& format)
{
    return format.frameRate != 0 && format.width >= 640 && format.height >= 480;
}

void GroupFormatsByRate(VideoSourceInfo& source, const std::vector<VideoFormat*>& formats)
{
    for (VideoFormat* format : formats) {
        VideoFormatsByFrameRate* group = nullptr;
        for (VideoFormatsByFrameRate* existing : source.frameRates) {
            if (existing->frameRate == format->frameRate) {
                group = existing;
                break;
            }
        }
        if (!group) {
            group = new VideoFormatsByFrameRate{};
            group->enabled = 1;
            group->frameRate = format->frameRate;
            swprintf(group->frameRateText, kFrameRateTextCapacity, L"%u", format->frameRate);
            group->currentFormatIndex = 0;
            source.frameRates.push_back(group);
        }
        group->formats.push_back(format);
    }
}

void DestroyVideoSource(VideoSourceInfo* source)
{
    if (!source)
        return;
    for (VideoFormatsByFrameRate* group : source->frameRates) {
        for (VideoFormat* format : group->formats) {
            DeleteMediaType(format->mediaType);
            delete format;
        }
        delete group;
    }
    if (source->baseFilter)
        source->baseFilter->Release();
    delete source;
}
