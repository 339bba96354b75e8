#include "filters/mavu_video_transform_filter.h"

#include "base/report.h"
#include "filters/dark_pixels.h"
#include "filters/pixel_loops.h"
#include "filters/video_filter_steps.h"

#include <uuids.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

const CLSID CLSID_MavuVideoTransformFilter = {
    0x1915e5c7, 0x02aa, 0x315f, {0x79, 0x0f, 0x66, 0xc9, 0x4c, 0x85, 0xba, 0xf2}};

std::atomic<uint32_t> frameIntegrationCounter{0};
std::atomic<int32_t> darkAnalysisRequested{0};
std::atomic<uint32_t> darkValueY{0}, darkValueB{0}, darkValueG{0}, darkValueR{0};

MavuVideoTransformFilter::MavuVideoTransformFilter()
    : CTransformFilter(L"Mavu Video Transform", nullptr, CLSID_MavuVideoTransformFilter)
{
}

MavuVideoTransformFilter::~MavuVideoTransformFilter() = default;

HRESULT MavuVideoTransformFilter::CheckInputType(const CMediaType* in)
{
    if (in->majortype != MEDIATYPE_Video || in->formattype != FORMAT_VideoInfo)
        return VFW_E_TYPE_NOT_ACCEPTED;
    // A type without its picture description is malformed.
    if (!in->pbFormat || in->cbFormat < sizeof(VIDEOINFOHEADER))
        return VFW_E_TYPE_NOT_ACCEPTED;
    if (in->subtype == MEDIASUBTYPE_YUY2 || in->subtype == MEDIASUBTYPE_RGB24 || in->subtype == MEDIASUBTYPE_ARGB32)
        return S_OK;
    return VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT MavuVideoTransformFilter::CheckTransform(const CMediaType*, const CMediaType*)
{
    return S_OK;
}

HRESULT MavuVideoTransformFilter::GetMediaType(int position, CMediaType* type)
{
    return InputConnectionType(this, position, type);
}

HRESULT MavuVideoTransformFilter::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    AM_MEDIA_TYPE type = {};
    HRESULT hr = OutputPin()->ConnectionMediaType(&type);
    if (FAILED(hr))
        return hr;
    long size = 0;
    if (type.pbFormat && type.cbFormat >= sizeof(VIDEOINFOHEADER)) {
        const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
        size = FrameRowStride(info->bmiHeader.biBitCount, info->bmiHeader.biWidth) * std::abs(info->bmiHeader.biHeight);
    }
    FreeMediaType(type);
    return RequestFrameBuffer(allocator, properties, size);
}

void MavuVideoTransformFilter::ConfigureTransformFilter(uint32_t accumulatorBytes,
                                                        const TransformToolSettings& settings)
{
    saturationValue = -1;
    integrationFrames = 1;
    showDarkPixelHistogram = false;
    if (settings.frameIntegrationOn) {
        integrationFrames = settings.frameIntegrationCount;
        accumulator.assign(static_cast<size_t>(accumulatorBytes) + 32, 0);
        return;
    }
    if (settings.pixelSaturationOn)
        saturationValue = settings.pixelSaturationValue;
}

void MavuVideoTransformFilter::FreeAccumulator()
{
    std::vector<uint8_t>().swap(accumulator);
}

HRESULT MavuVideoTransformFilter::SetMediaInfo()
{
    CMediaType type;
    HRESULT hr = GetMediaType(0, &type);
    if (FAILED(hr))
        return hr;
    subtype = type.subtype;
    if (type.pbFormat && type.cbFormat >= sizeof(VIDEOINFOHEADER)) {
        const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
        frameWidth = info->bmiHeader.biWidth;
        frameHeight = info->bmiHeader.biHeight;
        rowStride = FrameRowStride(info->bmiHeader.biBitCount, frameWidth);
        if (subtype == MEDIASUBTYPE_YUY2) {
            topDown = true;
            frameHeight = std::abs(frameHeight);
        } else if (frameHeight < 0) {
            topDown = true;
            frameHeight = -frameHeight;
        } else {
            topDown = false;
        }
    }
    return hr;
}

void MavuVideoTransformFilter::AnalyzeDarkPixels(const uint8_t* frameData, size_t frameBytes)
{
    PixelLayout layout = PixelLayoutOf(subtype);
    if (layout == PixelLayout::Other) {
        ReportUserMessage(L"Frame integration not supported for this device format\r\n", true);
        return;
    }
    CountDarkPixels(frameData, frameBytes, layout, rowStride, frameHeight, darkHistograms);
    // The levels of the other kind stay from an earlier start.
    DarkLevels levels =
        ChooseDarkLevels(darkHistograms, layout, DarkLevels{darkValueY, darkValueB, darkValueG, darkValueR});
    if (layout == PixelLayout::YUY2) {
        darkValueY = levels.y;
    } else {
        darkValueB = levels.b;
        darkValueG = levels.g;
        darkValueR = levels.r;
    }
    // The text stays in its buffer: the measurement is shown only through
    // the diagnostic listing.
    lstrcpynW(darkReportText, DarkReportText(layout, levels).c_str(), kDarkReportTextCapacity);
    if (!showDarkPixelHistogram)
        return;
    for (const std::wstring& line : DarkHistogramLines(layout, darkHistograms))
        ReportUserMessage(line.c_str(), false);
}

void MavuVideoTransformFilter::AccumulateInto(uint8_t* destination, uint8_t* source, long byteCount, bool add)
{
    FrameGeometry geometry{rowStride, frameHeight, topDown};
    // The accumulator is sized for the frame; the samples may be larger.
    if (add)
        AddFrame(destination, source, geometry, PixelLayoutOf(subtype),
                 DarkLevels{darkValueY, darkValueB, darkValueG, darkValueR});
    else
        CopyFrame(destination, source, static_cast<size_t>(byteCount), geometry);
}

HRESULT MavuVideoTransformFilter::Transform(IMediaSample* in, IMediaSample* out)
{
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    HRESULT hr = SampleBuffers(in, out, &source, &target);
    if (FAILED(hr))
        return hr;
    // The loops walk whole frames of the connection's geometry: a sample
    // that can't hold one, or an output or accumulator that can't, is
    // passed over rather than read or written past its end.
    size_t frameBytes = static_cast<size_t>(rowStride) * static_cast<size_t>(frameHeight);
    long inputLength = in->GetActualDataLength();
    size_t copyLength = inputLength > 0 ? static_cast<size_t>(inputLength) : 0;
    if (!source || !target || frameBytes == 0 || copyLength < frameBytes ||
        static_cast<size_t>(out->GetSize()) < frameBytes)
        return S_FALSE;
    copyLength = std::min(copyLength, static_cast<size_t>(out->GetSize()));
    if (integrationFrames > 1) {
        if (accumulator.size() < frameBytes)
            return S_FALSE;
        if (darkAnalysisRequested) {
            // The frame that is measured isn't shown, nor counted in the
            // first group.
            AnalyzeDarkPixels(source, static_cast<size_t>(inputLength));
            darkAnalysisRequested = 0;
            return S_FALSE;
        }
        copyLength = std::min(copyLength, accumulator.size());
        uint32_t counter = ++frameIntegrationCounter;
        if (counter >= integrationFrames) {
            std::memcpy(target, accumulator.data(), copyLength);
            frameIntegrationCounter = 0;
            return S_OK;
        }
        if (counter == 1) {
            CopySampleProperties(in, out, true);
            AccumulateInto(accumulator.data(), source, static_cast<long>(copyLength), false);
        } else {
            AccumulateInto(accumulator.data(), source, static_cast<long>(copyLength), true);
        }
        return S_FALSE;
    }
    CopySampleProperties(in, out, true);
    AccumulateInto(target, source, static_cast<long>(copyLength), false);
    int32_t threshold = saturationValue;
    if (threshold >= 0)
        MarkSaturatedPixels(target, FrameGeometry{rowStride, frameHeight, topDown}, PixelLayoutOf(subtype),
                            static_cast<uint8_t>(threshold & 0xFF));
    return S_OK;
}
