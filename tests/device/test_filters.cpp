#include "device/test_filters.h"

#include <uuids.h>

#include <cstring>

namespace devicetest {
namespace {

// {8A1B7C3E-2F4D-4E6A-9B1C-5D7E3F2A1B90}
const CLSID CLSID_TestTransform = {0x8a1b7c3e, 0x2f4d, 0x4e6a, {0x9b, 0x1c, 0x5d, 0x7e, 0x3f, 0x2a, 0x1b, 0x90}};
// {8A1B7C3E-2F4D-4E6A-9B1C-5D7E3F2A1B91}
const CLSID CLSID_TestSink = {0x8a1b7c3e, 0x2f4d, 0x4e6a, {0x9b, 0x1c, 0x5d, 0x7e, 0x3f, 0x2a, 0x1b, 0x91}};

// A band clear of the stars (which stand between a fifth and three
// quarters of the height) and of the stamp, whichever way up the picture
// arrives: the transform turns bottom-up frames over.
double BackgroundLevel(const BYTE* data, synthcam::Subtype subtype, int width, int height)
{
    int rows = std::abs(height);
    int first = rows * 5 / 6, last = rows - synthcam::kStampRows - 2;
    double sum = 0;
    for (int y = first; y < last; ++y)
        for (int x = 0; x < width; ++x)
            sum += synthcam::LumaAt(data, subtype, width, height, x, y);
    return last > first && width > 0 ? sum / (static_cast<double>(last - first) * width) : 0;
}

// The stamp-carrying picture of a YUY2 or RGB24 media type.
bool PictureOf(const AM_MEDIA_TYPE& type, synthcam::Subtype* subtype, int* width, int* height)
{
    if (type.formattype != FORMAT_VideoInfo || !type.pbFormat || type.cbFormat < sizeof(VIDEOINFOHEADER))
        return false;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
    if (type.subtype == MEDIASUBTYPE_YUY2)
        *subtype = synthcam::Subtype::YUY2;
    else if (type.subtype == MEDIASUBTYPE_RGB24)
        *subtype = synthcam::Subtype::RGB24;
    else
        return false;
    *width = info->bmiHeader.biWidth;
    *height = info->bmiHeader.biHeight;
    return true;
}

}  // namespace

TestTransform::TestTransform() : CTransformFilter(L"Test transform", nullptr, CLSID_TestTransform) {}

HRESULT TestTransform::CheckInputType(const CMediaType* in)
{
    if (in->majortype != MEDIATYPE_Video || in->subtype != MEDIASUBTYPE_YUY2 || in->formattype != FORMAT_VideoInfo)
        return VFW_E_TYPE_NOT_ACCEPTED;
    return S_OK;
}

HRESULT TestTransform::CheckTransform(const CMediaType*, const CMediaType*)
{
    return S_OK;
}

HRESULT TestTransform::GetMediaType(int position, CMediaType* type)
{
    if (position < 0)
        return E_INVALIDARG;
    if (position > 0)
        return VFW_S_NO_MORE_ITEMS;
    AM_MEDIA_TYPE input = {};
    HRESULT hr = InputPin()->ConnectionMediaType(&input);
    if (FAILED(hr))
        return hr;
    *type = input;
    FreeMediaType(input);
    return S_OK;
}

HRESULT TestTransform::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(OutputPin()->MediaType().pbFormat);
    long stride = ((info->bmiHeader.biBitCount * info->bmiHeader.biWidth + 31) / 8) & ~3;
    properties->cBuffers = 1;
    properties->cbAlign = 1;
    properties->cbBuffer = stride * std::abs(info->bmiHeader.biHeight);
    ALLOCATOR_PROPERTIES actual = {};
    HRESULT hr = allocator->SetProperties(properties, &actual);
    if (FAILED(hr))
        return hr;
    return actual.cbBuffer < properties->cbBuffer ? E_FAIL : S_OK;
}

HRESULT TestTransform::Transform(IMediaSample* in, IMediaSample* out)
{
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    in->GetPointer(&source);
    out->GetPointer(&target);
    long length = in->GetActualDataLength();
    if (length > out->GetSize())
        return E_FAIL;
    const CMediaType& type = InputPin()->MediaType();
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
    int width = info->bmiHeader.biWidth, height = std::abs(info->bmiHeader.biHeight);
    synthcam::FrameStamp stamp;
    synthcam::ReadFrameStamp(source, synthcam::Subtype::YUY2, width, height, &stamp);
    if (dropOdd && (stamp.counter % 2) == 1)
        return S_FALSE;
    std::memcpy(target, source, static_cast<size_t>(length));
    if (lift) {
        size_t stampBytes = static_cast<size_t>(synthcam::kStampRows) * width * 2;
        for (size_t i = stampBytes; i < static_cast<size_t>(length); i += 2)
            target[i] = static_cast<BYTE>(std::min(255, target[i] + lift));
    }
    REFERENCE_TIME start, stop;
    if (in->GetTime(&start, &stop) == S_OK)
        out->SetTime(&start, &stop);
    out->SetSyncPoint(in->IsSyncPoint() == S_OK);
    out->SetDiscontinuity(in->IsDiscontinuity() == S_OK);
    out->SetActualDataLength(length);
    return S_OK;
}

TestSinkPin::TestSinkPin(TestSink* sink, CCritSec* lock)
    : CBaseInputPin(L"Test sink pin", sink, lock, nullptr, L"In"), sink_(sink)
{
}

HRESULT TestSinkPin::CheckMediaType(const CMediaType* type)
{
    synthcam::Subtype subtype;
    int width, height;
    return type->majortype == MEDIATYPE_Video && PictureOf(*type, &subtype, &width, &height)
               ? S_OK
               : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT STDMETHODCALLTYPE TestSinkPin::Receive(IMediaSample* sample)
{
    HRESULT hr = CBaseInputPin::Receive(sample);
    if (hr != S_OK)
        return hr;
    if (sink_->receiveDelayMs > 0)
        Sleep(static_cast<DWORD>(sink_->receiveDelayMs));
    synthcam::Subtype subtype;
    int width, height;
    if (!PictureOf(mediaType_, &subtype, &width, &height))
        return E_UNEXPECTED;
    BYTE* data = nullptr;
    sample->GetPointer(&data);
    ReceivedFrame frame;
    synthcam::ReadFrameStamp(data, subtype, width, height, &frame.stamp);
    frame.probe = synthcam::LumaAt(data, subtype, width, height, 1, std::abs(height) - 2);
    frame.background = BackgroundLevel(data, subtype, width, height);
    if (subtype == synthcam::Subtype::YUY2) {
        static const BYTE kWarning[4] = {0x6A, 0xCA, 0x6A, 0xDE};
        for (long i = 0; i + 4 <= sample->GetActualDataLength(); i += 4)
            frame.warningPairs += std::memcmp(data + i, kWarning, 4) == 0;
    }
    frame.discontinuity = sample->IsDiscontinuity() == S_OK;
    CAutoLock lock(&sink_->framesLock_);
    sink_->frames_.push_back(frame);
    return S_OK;
}

TestSink::TestSink() : CBaseFilter(L"Test sink", nullptr, &filterLock_, CLSID_TestSink), pin_(this, &filterLock_) {}

std::vector<ReceivedFrame> TestSink::Frames()
{
    CAutoLock lock(&framesLock_);
    return frames_;
}

void TestSink::Clear()
{
    CAutoLock lock(&framesLock_);
    frames_.clear();
}

}  // namespace devicetest
