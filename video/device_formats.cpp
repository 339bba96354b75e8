#include "video/device_formats.h"

#include <vector>

#include "base/com_ptr.h"
#include "base/report.h"
#include "video/video_format.h"
#include "video/video_player.h"

HRESULT FindSourceInterface(const GUID* category, IBaseFilter* filter, REFIID interfaceId, void** found)
{
    *found = nullptr;
    VideoPlayer* player = CurrentVideoPlayer();
    ComPtr<ICaptureGraphBuilder2> ownBuilder;
    ICaptureGraphBuilder2* builder = player ? player->captureBuilder.Get() : nullptr;
    if (!builder) {
        HRESULT made = CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_ICaptureGraphBuilder2, ownBuilder.PutVoid());
        if (FAILED(made))
            return made;
        builder = ownBuilder.Get();
    }
    return builder->FindInterface(category, &MEDIATYPE_Video, filter, interfaceId, found);
}

HRESULT GetVideoDeviceFormats(VideoSourceInfo* source)
{
    if (!source) {
        ReportUserMessage(L"Logic error: attempt to get video device formats using a NULL pointer to "
                          L"VideoSourceInfo\r\n",
                          true);
        return E_FAIL;
    }
    ComPtr<IEnumPins> pins;
    HRESULT result = source->baseFilter->EnumPins(pins.Put());
    if (FAILED(result))
        return result;
    if (!pins) {
        ReportUserMessage(L"WARNING: pin enumerator is NULL in GetVideoDeviceFormats\r\n", true);
        return E_FAIL;
    }

    std::vector<VideoFormat*> kept;
    auto dropKept = [&kept] {
        for (VideoFormat* format : kept) {
            DeleteMediaType(format->mediaType);
            delete format;
        }
        kept.clear();
    };

    for (;;) {
        ComPtr<IPin> pin;
        if (pins->Next(1, pin.Put(), nullptr) != S_OK)
            break;
        if (!pin) {
            ReportUserMessage(L"WARNING: pin interface pointer is NULL in GetVideoDeviceFormats\r\n", true);
            dropKept();
            return E_FAIL;
        }
        PIN_DIRECTION direction;
        if (FAILED(pin->QueryDirection(&direction)) || direction != PINDIR_OUTPUT)
            continue;
        ComPtr<IEnumMediaTypes> types;
        if (FAILED(pin->EnumMediaTypes(types.Put())) || !types)
            continue;
        for (;;) {
            AM_MEDIA_TYPE* type = nullptr;
            if (types->Next(1, &type, nullptr) != S_OK)
                break;
            if (!type)
                continue;
            if (type->majortype != MEDIATYPE_Video || !IsUsableCaptureSubtype(type->subtype)) {
                DeleteMediaType(type);
                continue;
            }
            auto* format = new VideoFormat{};
            ParseVideoFormat(*format, type);
            if (IsUsableVideoFormat(*format)) {
                kept.push_back(format);
            } else {
                DeleteMediaType(type);
                delete format;
            }
        }
        // The first output pin with a usable format is the capture pin; later
        // pins aren't read.
        if (!kept.empty())
            break;
    }
    GroupFormatsByRate(*source, kept);
    return S_OK;
}
