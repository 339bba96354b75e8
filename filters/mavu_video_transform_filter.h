// The preview's frame tool: marks saturated pixels, or adds frames into one
// after subtracting the dark level. It stands only in the preview branch;
// what is recorded never passes through it.
#pragma once

#include "filters/transform_filter.h"

#include <atomic>
#include <cstdint>
#include <vector>

// {1915E5C7-02AA-315F-790F-66C94C85BAF2}
extern const CLSID CLSID_MavuVideoTransformFilter;

// Shared with the camera start and the dark analysis.
extern std::atomic<uint32_t> frameIntegrationCounter;
extern std::atomic<int32_t> darkAnalysisRequested;
extern std::atomic<uint32_t> darkValueY, darkValueB, darkValueG, darkValueR;

// What a camera start asks of the filter for its run.
struct TransformToolSettings {
    bool frameIntegrationOn = false;
    uint32_t frameIntegrationCount = 1;
    bool pixelSaturationOn = false;
    int32_t pixelSaturationValue = -1;
};

class MavuVideoTransformFilter : public CTransformFilter {
public:
    MavuVideoTransformFilter();
    ~MavuVideoTransformFilter() override;

    HRESULT Transform(IMediaSample* in, IMediaSample* out) override;
    HRESULT CheckInputType(const CMediaType* in) override;
    HRESULT CheckTransform(const CMediaType* in, const CMediaType* out) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;

    void ConfigureTransformFilter(uint32_t accumulatorBytes, const TransformToolSettings& settings);
    // Takes the frame layout from the connected input.
    HRESULT SetMediaInfo();
    bool HasAccumulator() const { return !accumulator.empty(); }
    void FreeAccumulator();
    // Measures the dark levels of one input frame of `frameBytes` bytes in
    // the connection's layout, for the frames integration adds after it.
    void AnalyzeDarkPixels(const uint8_t* frameData, size_t frameBytes);

    // Written by the saturation dialog while the stream runs.
    std::atomic<int32_t> saturationValue{-1};
    uint32_t integrationFrames = 1;
    // Lists the histograms of each analysis; nothing in the program sets it.
    bool showDarkPixelHistogram = false;

    int32_t rowStride = 0;
    GUID subtype = GUID_NULL;
    int32_t frameWidth = 0;
    int32_t frameHeight = 0;
    bool topDown = false;

private:
    void AccumulateInto(uint8_t* destination, uint8_t* source, long byteCount, bool add);

    std::vector<uint8_t> accumulator;
};
