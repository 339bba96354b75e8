#include "video/avi_header.h"

#include "video/avi_bytes.h"

#include <aviriff.h>

#include <algorithm>
#include <cstring>
#include <numeric>

namespace {

// The chunk payloads as the platform's headers declare them (less their
// fourcc and size).
constexpr uint32_t kMainHeaderSize = 56;
constexpr uint32_t kStreamHeaderSize = 56;
static_assert(sizeof(AVIMAINHEADER) == 8 + kMainHeaderSize, "avih payload");
static_assert(sizeof(AVISTREAMHEADER) == 8 + kStreamHeaderSize, "strh payload");
static_assert(sizeof(BITMAPINFOHEADER) == 40, "bitmap header");

constexpr int64_t kUnitsPerSecond = 10000000;

int32_t BitmapField(const std::vector<uint8_t>& format, size_t at)
{
    return format.size() >= at + 4 ? static_cast<int32_t>(ReadLe32(format.data() + at)) : 0;
}

uint32_t Magnitude(int32_t value)
{
    return value < 0 ? 0u - static_cast<uint32_t>(value) : static_cast<uint32_t>(value);
}

}  // namespace

AviVideoStream AviVideoStreamOf(const std::vector<uint8_t>& format, int64_t avgTimePerFrame100ns)
{
    AviVideoStream stream;
    stream.format = format;
    uint32_t compression = static_cast<uint32_t>(BitmapField(format, 16));
    stream.handler = compression < 0x100 ? Fourcc("DIB ") : compression;

    if (avgTimePerFrame100ns <= 0) {
        stream.rate = 30;
        stream.scale = 1;
        stream.microSecondsPerFrame = 1000000 / 30;
        return stream;
    }
    int64_t frameTime = std::min<int64_t>(avgTimePerFrame100ns, UINT32_MAX);
    int64_t divisor = std::gcd(frameTime, kUnitsPerSecond);
    stream.rate = static_cast<uint32_t>(kUnitsPerSecond / divisor);
    stream.scale = static_cast<uint32_t>(frameTime / divisor);
    stream.microSecondsPerFrame = static_cast<uint32_t>(frameTime / 10);
    return stream;
}

std::vector<uint8_t> BuildAviHeader(const AviVideoStream& stream, const AviHeaderCounts& counts)
{
    const uint32_t formatSize = static_cast<uint32_t>(stream.format.size());
    const uint32_t strlSize = 4 + 8 + kStreamHeaderSize + 8 + static_cast<uint32_t>(RiffPadded(formatSize));
    const uint32_t hdrlSize = 4 + 8 + kMainHeaderSize + 8 + strlSize;
    const uint32_t width = Magnitude(BitmapField(stream.format, 4));
    const uint32_t height = Magnitude(BitmapField(stream.format, 8));

    std::vector<uint8_t> out;
    out.reserve(12 + 8 + hdrlSize);
    PutLe32(out, Fourcc("RIFF"));
    PutLe32(out, counts.riffSize);
    PutLe32(out, Fourcc("AVI "));

    PutLe32(out, Fourcc("LIST"));
    PutLe32(out, hdrlSize);
    PutLe32(out, Fourcc("hdrl"));

    PutLe32(out, Fourcc("avih"));
    PutLe32(out, kMainHeaderSize);
    PutLe32(out, stream.microSecondsPerFrame);
    PutLe32(out, counts.maxBytesPerSec);
    PutLe32(out, 0);  // padding granularity
    PutLe32(out, counts.flags);
    PutLe32(out, counts.frames);
    PutLe32(out, 0);  // initial frames
    PutLe32(out, 1);  // streams
    PutLe32(out, counts.suggestedBufferSize);
    PutLe32(out, width);
    PutLe32(out, height);
    for (int i = 0; i < 4; ++i)
        PutLe32(out, 0);

    PutLe32(out, Fourcc("LIST"));
    PutLe32(out, strlSize);
    PutLe32(out, Fourcc("strl"));

    PutLe32(out, Fourcc("strh"));
    PutLe32(out, kStreamHeaderSize);
    PutLe32(out, Fourcc("vids"));
    PutLe32(out, stream.handler);
    PutLe32(out, 0);  // flags
    PutLe16(out, 0);  // priority
    PutLe16(out, 0);  // language
    PutLe32(out, 0);  // initial frames
    PutLe32(out, stream.scale);
    PutLe32(out, stream.rate);
    PutLe32(out, 0);  // start
    PutLe32(out, counts.frames);
    PutLe32(out, counts.suggestedBufferSize);
    PutLe32(out, UINT32_MAX);  // quality: the default
    PutLe32(out, 0);  // sample size: frames vary
    PutLe16(out, 0);
    PutLe16(out, 0);
    PutLe16(out, static_cast<uint16_t>(width));
    PutLe16(out, static_cast<uint16_t>(height));

    PutLe32(out, Fourcc("strf"));
    PutLe32(out, formatSize);
    out.insert(out.end(), stream.format.begin(), stream.format.end());
    if (formatSize & 1)
        out.push_back(0);
    return out;
}

std::vector<uint8_t> BuildProvisionalAviHeader(const std::vector<uint8_t>& format, int64_t avgTimePerFrame100ns)
{
    return BuildAviHeader(AviVideoStreamOf(format, avgTimePerFrame100ns), AviHeaderCounts{});
}

std::vector<uint8_t> BuildProvisionalAviHeader(const BITMAPINFOHEADER& format, int64_t avgTimePerFrame100ns)
{
    std::vector<uint8_t> bytes(sizeof(format));
    std::memcpy(bytes.data(), &format, sizeof(format));
    return BuildProvisionalAviHeader(bytes, avgTimePerFrame100ns);
}
