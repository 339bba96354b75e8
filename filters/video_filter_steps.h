// The steps that both of the program's video transforms take alike: the
// frame layout, the output type and buffer, and the hand-over of a sample's
// data and properties.
#pragma once

#include "filters/transform_filter.h"

#include <cstdint>

// Row stride of a picture: ((bits * width + 31) >> 3) with the low two bits
// cleared.
int32_t FrameRowStride(int32_t bitCount, int32_t width);
// The input pin's connection type, as both filters offer it on their output.
HRESULT InputConnectionType(CTransformFilter* filter, int position, CMediaType* type);
// Asks the allocator for one buffer of `frameBytes`, aligned to 1; E_FAIL
// where it grants less.
HRESULT RequestFrameBuffer(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties, long frameBytes);
// The data of both samples of a Transform; E_POINTER where a sample is
// missing.
HRESULT SampleBuffers(IMediaSample* in, IMediaSample* out, BYTE** source, BYTE** target);
// Takes sample times, flags, type and length from input to output. With
// setTypeWhenNone the output's type is set, to none, also where the input
// carries none.
void CopySampleProperties(IMediaSample* in, IMediaSample* out, bool setTypeWhenNone);
