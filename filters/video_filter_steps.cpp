#include "filters/video_filter_steps.h"

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

HRESULT RequestFrameBuffer(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties, long frameBytes)
{
    properties->cBuffers = 1;
    properties->cbAlign = 1;
    properties->cbBuffer = frameBytes;
    ALLOCATOR_PROPERTIES actual = {};
    HRESULT hr = allocator->SetProperties(properties, &actual);
    if (FAILED(hr))
        return hr;
    return actual.cbBuffer < frameBytes ? E_FAIL : S_OK;
}

HRESULT SampleBuffers(IMediaSample* in, IMediaSample* out, BYTE** source, BYTE** target)
{
    if (!in || !out)
        return E_POINTER;
    in->GetPointer(source);
    out->GetPointer(target);
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
