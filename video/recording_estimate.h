// How many bytes a recording will take on disk, worked out before it
// starts, so that a night's events can be warned of a disk that can't hold
// them.
#pragma once

#include <cstdint>

#include "video/video_sources.h"

// One uncompressed frame of the subtype: rows of the width at 16 bits a
// pixel for YUY2 and UYVY, 24 for RGB24 and 32 for ARGB32, each row padded
// to four bytes, times the height (either sign). A compressed subtype
// (MJPG) counts as its decoded YUY2 frame.
uint64_t UncompressedFrameBytes(int32_t width, int32_t height, VideoSubtype subtype);

// Duration times frame rate times frame size: the frames of `durationMs` at
// one frame each `frameTime100ns` (a whole frame for a part; 30 a second
// when the format has no frame time), each of `frameBytes`. Saturates
// rather than overflows.
uint64_t EstimatedRecordingBytes(uint64_t durationMs, int64_t frameTime100ns, uint64_t frameBytes);

// Bytes as whole megabytes (2^20), rounded up.
uint64_t WholeMegabytes(uint64_t bytes);
