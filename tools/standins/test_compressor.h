// A stand-in video compressor, for tests only: it takes YUY2 and nothing
// else, and gives the picture's brightness alone, one byte a pixel, as
// "Y800", which players and ffmpeg read as grey video. Its pins have names
// of their own, unlike the platform's compressors ("Input", "Output").
#pragma once

#include "filters/transform_filter.h"

namespace standins {

// {3C7D1E52-8A4B-4F69-B2D3-1E5F7A9C0B42}
extern const CLSID CLSID_TestCompressor;
// The name it is registered under, twice.
extern const wchar_t kTestCompressorName[];
extern const wchar_t kTestCompressorInputPin[];
extern const wchar_t kTestCompressorOutputPin[];

class TestCompressor : public CTransformFilter {
public:
    explicit TestCompressor(IUnknown* owner);

    CBasePin* GetPin(int n) override;
    HRESULT Transform(IMediaSample* in, IMediaSample* out) override;
    HRESULT CheckInputType(const CMediaType* in) override;
    HRESULT CheckTransform(const CMediaType* in, const CMediaType* out) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
};

}  // namespace standins
