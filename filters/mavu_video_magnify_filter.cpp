#include "filters/mavu_video_magnify_filter.h"

#include "filters/video_filter_steps.h"

#include <uuids.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

const CLSID CLSID_MavuVideoMagnifyFilter = {0x1915e5c7, 0x02aa, 0x315f, {0x71, 0x0f, 0x65, 0xc3, 0x4c, 0x85, 0xbc, 0xf2}};

MavuVideoMagnifyFilter::MavuVideoMagnifyFilter()
    : CTransformFilter(L"MAVU Playback Filter", nullptr, CLSID_MavuVideoMagnifyFilter)
{
}

HRESULT MavuVideoMagnifyFilter::CheckInputType(const CMediaType* in)
{
    if (in->majortype != MEDIATYPE_Video || in->formattype != FORMAT_VideoInfo)
        return VFW_E_TYPE_NOT_ACCEPTED;
    if (in->subtype == MEDIASUBTYPE_YUY2 || in->subtype == MEDIASUBTYPE_RGB24 || in->subtype == MEDIASUBTYPE_RGB32 ||
        in->subtype == MEDIASUBTYPE_ARGB32)
        return S_OK;
    return VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT MavuVideoMagnifyFilter::CheckTransform(const CMediaType*, const CMediaType*)
{
    return S_OK;
}

HRESULT MavuVideoMagnifyFilter::GetMediaType(int position, CMediaType* type)
{
    HRESULT hr = InputConnectionType(this, position, type);
    return position == 0 && FAILED(hr) ? VFW_S_NO_MORE_ITEMS : hr;
}

HRESULT MavuVideoMagnifyFilter::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    AM_MEDIA_TYPE type = {};
    HRESULT hr = OutputPin()->ConnectionMediaType(&type);
    if (FAILED(hr))
        return hr;
    if (type.formattype != FORMAT_VideoInfo) {
        FreeMediaType(type);
        return E_NOTIMPL;
    }
    subtype = type.subtype;
    if (subtype == GUID_NULL) {
        FreeMediaType(type);
        return S_OK;
    }
    if (!type.pbFormat || type.cbFormat < sizeof(VIDEOINFOHEADER)) {
        FreeMediaType(type);
        return E_FAIL;
    }
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
    frameWidth = info->bmiHeader.biWidth;
    frameHeight = std::abs(info->bmiHeader.biHeight);
    rowStride = FrameRowStride(info->bmiHeader.biBitCount, frameWidth);
    FreeMediaType(type);
    return RequestFrameBuffer(allocator, properties, rowStride * frameHeight);
}

HRESULT MavuVideoMagnifyFilter::Transform(IMediaSample* in, IMediaSample* out)
{
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    HRESULT hr = SampleBuffers(in, out, &source, &target);
    if (FAILED(hr))
        return hr;
    CopySampleProperties(in, out, false);
    long length = in->GetActualDataLength();
    size_t room = static_cast<size_t>(out->GetSize());
    size_t frameBytes = static_cast<size_t>(rowStride) * static_cast<size_t>(frameHeight);
    if (!source || !target || length < 0)
        return S_FALSE;
    if (copyWhole) {
        std::memcpy(target, source, std::min(static_cast<size_t>(length), room));
    } else {
        // Row by row needs a whole frame on both sides.
        if (static_cast<size_t>(length) < frameBytes || room < frameBytes)
            return S_FALSE;
        for (int32_t row = 0; row < frameHeight; ++row)
            std::memcpy(target + static_cast<size_t>(frameHeight - 1 - row) * rowStride,
                        source + static_cast<size_t>(row) * rowStride, static_cast<size_t>(rowStride));
    }
    return S_OK;
}
