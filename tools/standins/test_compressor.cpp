#include "tools/standins/test_compressor.h"

#include "filters/video_filter_steps.h"

#include <uuids.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace standins {

const CLSID CLSID_TestCompressor = {0x3c7d1e52, 0x8a4b, 0x4f69, {0xb2, 0xd3, 0x1e, 0x5f, 0x7a, 0x9c, 0x0b, 0x42}};
const wchar_t kTestCompressorName[] = L"MAVU Test Compressor";
const wchar_t kTestCompressorInputPin[] = L"Frames to squeeze";
const wchar_t kTestCompressorOutputPin[] = L"Squeezed";

namespace {

constexpr DWORD kY800 = MAKEFOURCC('Y', '8', '0', '0');
// The subtype of a four-character code: the code in the first field of the
// base GUID {XXXXXXXX-0000-0010-8000-00AA00389B71}.
constexpr GUID kSubtypeY800 = {kY800, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71}};

}  // namespace

TestCompressor::TestCompressor(IUnknown* owner) : CTransformFilter(kTestCompressorName, owner, CLSID_TestCompressor)
{
}

CBasePin* TestCompressor::GetPin(int n)
{
    if (!input_) {
        HRESULT hr = S_OK;
        input_ = new (std::nothrow) CTransformInputPin(L"Compressor input", this, &hr, kTestCompressorInputPin);
        output_ = new (std::nothrow) CTransformOutputPin(L"Compressor output", this, &hr, kTestCompressorOutputPin);
        if (!input_ || !output_) {
            delete input_;
            delete output_;
            input_ = nullptr;
            output_ = nullptr;
            return nullptr;
        }
    }
    return n == 0 ? static_cast<CBasePin*>(input_) : n == 1 ? static_cast<CBasePin*>(output_) : nullptr;
}

HRESULT TestCompressor::CheckInputType(const CMediaType* in)
{
    if (in->majortype != MEDIATYPE_Video || in->subtype != MEDIASUBTYPE_YUY2 || in->formattype != FORMAT_VideoInfo ||
        !in->pbFormat || in->cbFormat < sizeof(VIDEOINFOHEADER))
        return VFW_E_TYPE_NOT_ACCEPTED;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(in->pbFormat);
    return info->bmiHeader.biWidth > 0 && info->bmiHeader.biHeight != 0 ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT TestCompressor::CheckTransform(const CMediaType* in, const CMediaType* out)
{
    return out->subtype == kSubtypeY800 ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT TestCompressor::GetMediaType(int position, CMediaType* type)
{
    if (position < 0)
        return E_INVALIDARG;
    if (position > 0)
        return VFW_S_NO_MORE_ITEMS;
    const CMediaType& input = InputPin()->MediaType();
    const auto* in = reinterpret_cast<const VIDEOINFOHEADER*>(input.pbFormat);
    LONG width = in->bmiHeader.biWidth;
    LONG height = std::abs(in->bmiHeader.biHeight);
    type->InitMediaType();
    type->SetType(&MEDIATYPE_Video);
    type->SetSubtype(&kSubtypeY800);
    type->SetFormatType(&FORMAT_VideoInfo);
    type->SetSampleSize(static_cast<ULONG>(width * height));
    type->SetTemporalCompression(FALSE);
    auto* out = reinterpret_cast<VIDEOINFOHEADER*>(type->AllocFormatBuffer(sizeof(VIDEOINFOHEADER)));
    if (!out)
        return E_OUTOFMEMORY;
    out->AvgTimePerFrame = in->AvgTimePerFrame;
    out->bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    out->bmiHeader.biWidth = width;
    // Rows top first, as the grey code is read.
    out->bmiHeader.biHeight = height;
    out->bmiHeader.biPlanes = 1;
    out->bmiHeader.biBitCount = 8;
    out->bmiHeader.biCompression = kY800;
    out->bmiHeader.biSizeImage = static_cast<DWORD>(width * height);
    return S_OK;
}

HRESULT TestCompressor::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    // The mux copies what it is given: one buffer of a grey frame is enough.
    const auto* out = reinterpret_cast<const VIDEOINFOHEADER*>(OutputPin()->MediaType().pbFormat);
    return RequestFrameBuffer(allocator, properties, static_cast<long>(out->bmiHeader.biSizeImage));
}

HRESULT TestCompressor::Transform(IMediaSample* in, IMediaSample* out)
{
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    if (FAILED(in->GetPointer(&source)) || FAILED(out->GetPointer(&target)))
        return E_POINTER;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(InputPin()->MediaType().pbFormat);
    long width = info->bmiHeader.biWidth;
    long height = std::abs(info->bmiHeader.biHeight);
    long stride = ((16 * width + 31) >> 3) & ~3;
    if (in->GetActualDataLength() < stride * height || out->GetSize() < width * height)
        return S_FALSE;
    for (long row = 0; row < height; ++row) {
        const BYTE* from = source + row * stride;
        BYTE* to = target + row * width;
        for (long x = 0; x < width; ++x)
            to[x] = from[2 * x];
    }
    out->SetActualDataLength(width * height);
    // Every frame stands alone.
    out->SetSyncPoint(TRUE);
    return S_OK;
}

}  // namespace standins
