#include "filters/mavu_video_magnify_filter.h"

#include <uuids.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

const CLSID CLSID_MavuVideoMagnifyFilter = {0x1915e5c7, 0x02aa, 0x315f, {0x71, 0x0f, 0x65, 0xc3, 0x4c, 0x85, 0xbc, 0xf2}};

int32_t FrameRowStride(int32_t bitCount, int32_t width)
{
    return ((bitCount * width + 31) >> 3) & ~3;
}

HRESULT InputConnectionType(CTransformFilter* filter, int position, CMediaType* type)
{
    if (position < 0)
        return E_INVALIDARG;
    if (position > 0)
        return VFW_S_NO_MORE_ITEMS;
    AM_MEDIA_TYPE input = {};
    HRESULT hr = filter->InputPin()->ConnectionMediaType(&input);
    if (FAILED(hr))
        return hr;
    *type = input;
    FreeMediaType(input);
    return S_OK;
}

void CopySampleProperties(IMediaSample* in, IMediaSample* out, bool setTypeWhenNone)
{
    REFERENCE_TIME start = 0, stop = 0;
    if (in->GetTime(&start, &stop) == S_OK)
        out->SetTime(&start, &stop);
    LONGLONG mediaStart = 0, mediaStop = 0;
    if (in->GetMediaTime(&mediaStart, &mediaStop) == S_OK)
        out->SetMediaTime(&mediaStart, &mediaStop);
    out->SetSyncPoint(in->IsSyncPoint() == S_OK);
    AM_MEDIA_TYPE* type = nullptr;
    in->GetMediaType(&type);
    if (type) {
        out->SetMediaType(type);
        DeleteMediaType(type);
    } else if (setTypeWhenNone) {
        out->SetMediaType(nullptr);
    }
    out->SetPreroll(in->IsPreroll() == S_OK);
    out->SetDiscontinuity(in->IsDiscontinuity() == S_OK);
    out->SetActualDataLength(in->GetActualDataLength());
}

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
    properties->cBuffers = 1;
    properties->cbAlign = 1;
    properties->cbBuffer = rowStride * frameHeight;
    ALLOCATOR_PROPERTIES actual = {};
    hr = allocator->SetProperties(properties, &actual);
    if (FAILED(hr))
        return hr;
    return actual.cbBuffer < properties->cbBuffer ? E_FAIL : S_OK;
}

HRESULT MavuVideoMagnifyFilter::Transform(IMediaSample* in, IMediaSample* out)
{
    if (!in || !out)
        return E_POINTER;
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    in->GetPointer(&source);
    out->GetPointer(&target);
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
