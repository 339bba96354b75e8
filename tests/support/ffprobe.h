// What an independent reader (ffprobe, run on the Unix side) finds in a
// video file.
#pragma once

#include "tools/synthcam/sky.h"

#include <string>
#include <vector>

namespace testsupport {

struct ProbedVideo {
    bool ok = false;
    int width = 0;
    int height = 0;
    std::string codecTag;  // "YUY2", "UYVY", or "[0][0][0][0]" for raw RGB
    std::string pixelFormat;
    int frames = -1;  // frames counted by decoding the whole stream
    std::string raw;  // what ffprobe printed
};

// The stamps burned into every frame of a synthetic camera's recording,
// in file order, read through ffmpeg's decoder.
std::vector<synthcam::FrameStamp> ReadRecordedStamps(const std::string& windowsPath, int frameWidth);

// The mean brightness of the bottom eighth of each frame of a YUY2
// recording, where the synthetic sky has no star: its background level, in
// file order.
std::vector<double> ReadRecordedBackgrounds(const std::string& windowsPath, int frameWidth, int frameHeight);

// path: a Windows path of a file in the Unix file system (Z:...).
ProbedVideo ProbeVideo(const std::string& windowsPath);
// A Windows path "Z:/..." as the Unix path it names.
std::string UnixPath(const std::string& windowsPath);
// Runs a Unix command that writes the file "$OUT" and gives the bytes it
// wrote, once they stand at that Windows path; none when they don't in time.
std::string UnixCommandOutput(const std::string& command, const std::string& windowsPath, unsigned long timeoutMs);

}  // namespace testsupport
