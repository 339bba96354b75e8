#include "support/ffprobe.h"

#include "e2e/harness.h"

#include <windows.h>

#include <sstream>

namespace testsupport {

std::string UnixPath(const std::string& windowsPath)
{
    std::string path = windowsPath;
    if (path.size() >= 2 && (path[0] == 'Z' || path[0] == 'z') && path[1] == ':')
        path = path.substr(2);
    for (char& c : path)
        if (c == '\\')
            c = '/';
    return path;
}

std::string UnixCommandOutput(const std::string& command, const std::string& windowsPath, unsigned long timeoutMs)
{
    DeleteFileA(windowsPath.c_str());
    const std::string out = UnixPath(windowsPath);
    e2e::RunUnix("OUT='" + out + ".part'; " + command + "; mv \"$OUT\" '" + out + "'");
    // Wine doesn't wait for a Unix child: wait for its output instead.
    if (!e2e::WaitUntil([&] { return GetFileAttributesA(windowsPath.c_str()) != INVALID_FILE_ATTRIBUTES; }, timeoutMs,
                        100))
        return {};
    return ReadFileBytes(std::wstring(windowsPath.begin(), windowsPath.end()));
}

ProbedVideo ProbeVideo(const std::string& windowsPath)
{
    ProbedVideo video;
    video.raw = UnixCommandOutput("ffprobe -v error -select_streams v:0 -count_frames -show_entries "
                                  "stream=width,height,codec_tag_string,pix_fmt,nb_read_frames -of default=nw=1 '" +
                                      UnixPath(windowsPath) + "' > \"$OUT\" 2>&1",
                                  windowsPath + ".probe.txt", 60000);
    std::istringstream lines(video.raw);
    std::string line;
    while (std::getline(lines, line)) {
        size_t equals = line.find('=');
        if (equals == std::string::npos)
            continue;
        std::string key = line.substr(0, equals), value = line.substr(equals + 1);
        if (key == "width")
            video.width = std::atoi(value.c_str());
        else if (key == "height")
            video.height = std::atoi(value.c_str());
        else if (key == "codec_tag_string")
            video.codecTag = value;
        else if (key == "pix_fmt")
            video.pixelFormat = value;
        else if (key == "nb_read_frames")
            video.frames = std::atoi(value.c_str());
    }
    video.ok = video.width > 0 && video.frames >= 0;
    return video;
}

namespace {

// Every frame of the video cut to a region (an ffmpeg crop "w:h:x:y") as
// raw bytes of a pixel format, frame after frame.
std::string DecodeFrames(const std::string& windowsPath, const std::string& crop, const char* pixelFormat,
                         const char* suffix)
{
    return UnixCommandOutput("ffmpeg -v error -y -i '" + UnixPath(windowsPath) + "' -vf crop=" + crop +
                                 " -fps_mode passthrough -f rawvideo -pix_fmt " + pixelFormat + " \"$OUT\"",
                             windowsPath + suffix, 120000);
}

}  // namespace

std::vector<synthcam::FrameStamp> ReadRecordedStamps(const std::string& windowsPath, int frameWidth)
{
    std::vector<synthcam::FrameStamp> stamps;
    int cell = synthcam::StampCellWidth(frameWidth);
    if (cell < 1)
        return stamps;
    int width = cell * synthcam::kStampCells;
    std::string bytes =
        DecodeFrames(windowsPath, std::to_string(width) + ":" + std::to_string(synthcam::kStampRows) + ":0:0", "gray",
                     ".stamps.gray");
    size_t frameBytes = static_cast<size_t>(width) * synthcam::kStampRows;
    for (size_t offset = 0; offset + frameBytes <= bytes.size(); offset += frameBytes) {
        synthcam::FrameStamp stamp;
        synthcam::ReadStampFromLuma(reinterpret_cast<const uint8_t*>(bytes.data() + offset), width, frameWidth, &stamp);
        stamps.push_back(stamp);
    }
    return stamps;
}

std::vector<double> ReadRecordedBackgrounds(const std::string& windowsPath, int frameWidth, int frameHeight)
{
    std::vector<double> levels;
    int rows = frameHeight / 8;
    if (frameWidth <= 0 || rows <= 0)
        return levels;
    // Planar and still in video levels (16 to 235), the brightness plane
    // first: a conversion to grey would stretch the levels to the full range.
    std::string bytes = DecodeFrames(windowsPath,
                                     std::to_string(frameWidth) + ":" + std::to_string(rows) +
                                         ":0:" + std::to_string(frameHeight - rows),
                                     "yuv422p", ".background.yuv");
    size_t plane = static_cast<size_t>(frameWidth) * rows;
    for (size_t offset = 0; offset + 2 * plane <= bytes.size(); offset += 2 * plane) {
        double sum = 0;
        for (size_t i = 0; i < plane; ++i)
            sum += static_cast<uint8_t>(bytes[offset + i]);
        levels.push_back(sum / static_cast<double>(plane));
    }
    return levels;
}

}  // namespace testsupport
