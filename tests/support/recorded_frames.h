// How the frames of a synthetic camera's recording compare with what the
// camera delivered. The camera numbers every frame slot; a slot it missed
// (it ran a whole frame late on a busy machine, or downstream held every
// buffer) it counts as dropped, and the next frame carries the next number.
// So a recording that lost nothing has no gap that the dropped count
// doesn't explain.
#pragma once

#include "tools/synthcam/sky.h"

#include <string>
#include <vector>

namespace testsupport {

// The frame numbers missing between consecutive stamps, summed; -1 when a
// stamp doesn't come after the one before it (a frame repeated or out of
// order).
long MissingStampedFrames(const std::vector<synthcam::FrameStamp>& stamps);

// The number after "Number of dropped frames:" in a run report's text, -1
// when the report has no such line.
long ReportedDroppedFrames(const std::string& report);

}  // namespace testsupport
