// A plain copying transform kept with the video player. The Magnify tool
// works through the renderer's destination rectangle; no graph holds this.
#pragma once

#include "filters/transform_filter.h"

#include <cstdint>

// {1915E5C7-02AA-315F-710F-65C34C85BCF2}
extern const CLSID CLSID_MavuVideoMagnifyFilter;

class MavuVideoMagnifyFilter : public CTransformFilter {
public:
    MavuVideoMagnifyFilter();

    HRESULT Transform(IMediaSample* in, IMediaSample* out) override;
    HRESULT CheckInputType(const CMediaType* in) override;
    HRESULT CheckTransform(const CMediaType* in, const CMediaType* out) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;

    bool copyWhole = true;
    int32_t frameWidth = 0;
    int32_t frameHeight = 0;
    int32_t rowStride = 0;
    GUID subtype = GUID_NULL;
};
