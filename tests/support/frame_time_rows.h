// A frame-time record read back, and set against the stamps a synthetic
// camera burned into the frames of the same recording.
#pragma once

#include "tools/synthcam/sky.h"

#include <cstdint>
#include <string>
#include <vector>

namespace testsupport {

struct FrameTimeRow {
    long frame = -1;
    uint64_t utcMs = 0;  // milliseconds since 2020-01-01 UTC, as the stamps count
    double streamMs = 0;
    long droppedBefore = -1;
};

struct FrameTimeFile {
    bool ok = false;  // the file was read and every row parsed
    std::vector<std::string> comments;  // the "# " lines, without the mark
    std::string header;
    std::vector<FrameTimeRow> rows;
};

FrameTimeFile ReadFrameTimeFile(const std::string& path);

// The record beside a recording (a Windows path of its AVI) against the
// recording's own stamps: one row per frame, numbered from 0, each UTC
// within 5 ms at the median and never more than a frame period off, and
// each dropped_before the gap in the stamps before it. Prints the figures.
void ExpectRecordMatchesTheStamps(const std::string& aviPath, const std::vector<synthcam::FrameStamp>& stamps,
                                  double framePeriodMs);

}  // namespace testsupport
