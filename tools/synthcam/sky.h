// The synthetic night sky a test camera shows: a dark noisy background, a
// handful of stars of known brightness (the brightest saturated) that drift
// slowly, one star that dims for a few seconds each UTC minute, and a
// stamp in the top rows that carries the frame's number and its UTC time,
// so that a recording can be checked for its start moment and for gaps.
#pragma once

#include "tools/synthcam/profiles.h"

#include <cstdint>
#include <vector>

namespace synthcam {

constexpr int kBackgroundLevel = 32;
constexpr int kStampRows = 8;
constexpr int kStampCells = 64;
constexpr uint8_t kStampWhite = 235;
constexpr uint8_t kStampBlack = 16;
// The dimming star is faint from this second of each UTC minute, for
// kDimSeconds seconds.
constexpr int kDimSecond = 20;
constexpr int kDimSeconds = 4;

struct FrameStamp {
    uint32_t counter = 0;  // 24 bits: the frame's number since the run began
    uint64_t utcMs = 0;    // 40 bits: milliseconds since 2020-01-01 00:00 UTC
};

// Milliseconds since 2020-01-01 00:00 UTC of a FILETIME.
uint64_t UtcMsSince2020(const FILETIME& time);
uint64_t UtcMsSince2020Now();

// Picture properties as they act on the brightness of a grey picture.
struct PictureAdjust {
    double offset = 0;  // added to the level
    double gain = 1;    // multiplies the level above black (16)
};

class SkyPainter {
public:
    void Configure(Subtype subtype, int width, int height);
    // Paints a whole frame into a buffer of ImageSize bytes.
    void Paint(uint8_t* frame, const FrameStamp& stamp, const PictureAdjust& adjust);

private:
    Subtype subtype_ = Subtype::YUY2;
    int width_ = 0;
    int height_ = 0;
    std::vector<uint8_t> noise_;  // a background twice the frame, read at a moving offset
    std::vector<uint8_t> luma_;
    uint8_t lut_[256] = {};
    PictureAdjust lutFor_{-1e9, 0};
};

// The cell width of the stamp on a frame of that width.
int StampCellWidth(int width);
// Writes the stamp into a packed frame.
void WriteFrameStamp(uint8_t* frame, Subtype subtype, int width, int height, const FrameStamp& stamp);
// Reads it back; false where the frame is too small to carry one.
bool ReadFrameStamp(const uint8_t* frame, Subtype subtype, int width, int height, FrameStamp* stamp);
// Reads a stamp from a plane of brightness values holding at least the
// stamp's rows, as cut from a frame frameWidth pixels wide.
bool ReadStampFromLuma(const uint8_t* plane, int planeStride, int frameWidth, FrameStamp* stamp);
// The brightness of a picture point, whatever the packing (green for RGB).
uint8_t LumaAt(const uint8_t* frame, Subtype subtype, int width, int height, int x, int y);

}  // namespace synthcam
