// The UTC of each recorded frame, from the sample's stream time and the UTC
// of stream time zero, and the text of the frame-time record beside a
// recording.
//
// Stream time zero is the graph's start time on its reference clock. Its UTC
// is found by reading the reference clock and the system's UTC clock back to
// back (reference, UTC, reference) several times: the reading whose two
// reference times lie closest together pins the two clocks to each other
// best, and its UTC stands for the middle of those two.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One back-to-back reading: the reference clock before and after the UTC
// clock. Reference times are in 100 ns; UTC in 100 ns since 1601.
struct ClockReading {
    int64_t referenceBefore = 0;
    uint64_t utc = 0;
    int64_t referenceAfter = 0;
};

// A reference time and the UTC read with it, and how far apart the reading's
// two reference times were (its uncertainty), in 100 ns.
struct ClockPair {
    int64_t reference = 0;
    uint64_t utc = 0;
    int64_t spread = 0;
};

// The reading whose reference times lie closest together (the first of
// equals); a reading that went backwards counts as unusable. `found` is
// false when none is usable.
ClockPair ClosestClockPair(const std::vector<ClockReading>& readings, bool* found);

// The UTC of stream time zero, for a graph started at `streamStart` on the
// reference clock.
uint64_t StreamZeroUtc(const ClockPair& pair, int64_t streamStart);

// The UTC of a frame whose sample starts at `streamTime`.
uint64_t FrameUtc(uint64_t streamZeroUtc, int64_t streamTime);

// "YYYY-MM-DDThh:mm:ss.fffZ", the milliseconds cut, not rounded.
std::string UtcText(uint64_t utc);

// One row: "frame,utc,stream_ms,dropped_before" and the line end; appended
// to `out`, or as a text of its own.
void AppendFrameTimeRow(std::string& out, long frame, uint64_t utc, int64_t streamTime, long droppedBefore);
std::string FrameTimeRow(long frame, uint64_t utc, int64_t streamTime, long droppedBefore);

// What the record's comment lines say.
struct FrameTimeHeader {
    std::string program;  // name and version
    std::wstring device;
    std::wstring format;  // e.g. "YUY2 640x480"
    double framesPerSecond = 0;
    uint64_t streamZeroUtc = 0;
    int64_t clockSpread = 0;  // of the pair that gave stream time zero, in 100 ns
    int clockReadings = 0;
    bool gpsOffsetKnown = false;
    double gpsOffsetSeconds = 0;  // computer minus GPS
};

// The comment lines, each "# ...", and the column header after them.
std::string FrameTimeHeading(const FrameTimeHeader& header);

// The record's name for a recording: ".avi" becomes ".frames.csv".
std::wstring FrameTimeRecordPath(const std::wstring& aviPath);
