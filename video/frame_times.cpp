#include "video/frame_times.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

#include "base/ticks.h"

namespace {

std::string Utf8(const std::wstring& text)
{
    if (text.empty())
        return {};
    int length = static_cast<int>(text.size());
    int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
    if (bytes <= 0)
        return {};
    std::string narrow(static_cast<size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, narrow.data(), bytes, nullptr, nullptr);
    return narrow;
}

}  // namespace

ClockPair ClosestClockPair(const std::vector<ClockReading>& readings, bool* found)
{
    ClockPair best;
    bool any = false;
    for (const ClockReading& reading : readings) {
        int64_t spread = reading.referenceAfter - reading.referenceBefore;
        if (spread < 0 || reading.utc == 0)
            continue;
        if (!any || spread < best.spread) {
            best.reference = reading.referenceBefore + spread / 2;
            best.utc = reading.utc;
            best.spread = spread;
            any = true;
        }
    }
    if (found)
        *found = any;
    return best;
}

uint64_t StreamZeroUtc(const ClockPair& pair, int64_t streamStart)
{
    // Unsigned wrap-around adds a negative difference correctly.
    return pair.utc + static_cast<uint64_t>(streamStart - pair.reference);
}

uint64_t FrameUtc(uint64_t streamZeroUtc, int64_t streamTime)
{
    return streamZeroUtc + static_cast<uint64_t>(streamTime);
}

namespace {

char* PutDigits(char* out, uint64_t value, int width)
{
    for (int i = width - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return out + width;
}

char* PutUnsigned(char* out, uint64_t value)
{
    char digits[24];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value);
    while (count)
        *out++ = digits[--count];
    return out;
}

char* PutSigned(char* out, int64_t value)
{
    if (value < 0) {
        *out++ = '-';
        return PutUnsigned(out, static_cast<uint64_t>(-(value + 1)) + 1);
    }
    return PutUnsigned(out, static_cast<uint64_t>(value));
}

// "YYYY-MM-DDThh:mm:ss.fffZ" into `out` (24 characters). The date and time
// of a whole second are worked out once for every row of that second.
char* PutUtc(char* out, uint64_t utc)
{
    thread_local uint64_t cachedSecond = ~0ull;
    thread_local char cachedText[20];
    uint64_t second = utc / kTicksPerSecond;
    if (second != cachedSecond) {
        SYSTEMTIME time = TicksToSystemTime(second * kTicksPerSecond);
        char* at = cachedText;
        at = PutDigits(at, time.wYear, 4);
        *at++ = '-';
        at = PutDigits(at, time.wMonth, 2);
        *at++ = '-';
        at = PutDigits(at, time.wDay, 2);
        *at++ = 'T';
        at = PutDigits(at, time.wHour, 2);
        *at++ = ':';
        at = PutDigits(at, time.wMinute, 2);
        *at++ = ':';
        at = PutDigits(at, time.wSecond, 2);
        *at = '.';
        cachedSecond = second;
    }
    std::memcpy(out, cachedText, 20);
    out = PutDigits(out + 20, (utc % kTicksPerSecond) / kTicksPerMillisecond, 3);
    *out++ = 'Z';
    return out;
}

}  // namespace

std::string UtcText(uint64_t utc)
{
    char text[24];
    PutUtc(text, utc);
    return std::string(text, sizeof text);
}

void AppendFrameTimeRow(std::string& out, long frame, uint64_t utc, int64_t streamTime, long droppedBefore)
{
    char text[96];
    char* at = PutSigned(text, frame);
    *at++ = ',';
    at = PutUtc(at, utc);
    *at++ = ',';
    // The stream time in whole microseconds first, so that the three
    // decimals are exact and a negative time keeps its sign.
    int64_t micro = streamTime / 10;
    if (micro < 0) {
        *at++ = '-';
        micro = -micro;
    }
    at = PutUnsigned(at, static_cast<uint64_t>(micro) / 1000);
    *at++ = '.';
    at = PutDigits(at, static_cast<uint64_t>(micro) % 1000, 3);
    *at++ = ',';
    at = PutSigned(at, droppedBefore);
    *at++ = '\r';
    *at++ = '\n';
    out.append(text, static_cast<size_t>(at - text));
}

std::string FrameTimeRow(long frame, uint64_t utc, int64_t streamTime, long droppedBefore)
{
    std::string row;
    AppendFrameTimeRow(row, frame, utc, streamTime, droppedBefore);
    return row;
}

std::string FrameTimeHeading(const FrameTimeHeader& header)
{
    std::string text;
    char line[200];
    text += "# " + header.program + "\r\n";
    text += "# device: " + Utf8(header.device) + "\r\n";
    text += "# format: " + Utf8(header.format) + "\r\n";
    std::snprintf(line, sizeof line, "# frame rate: %.3f frames per second\r\n", header.framesPerSecond);
    text += line;
    text += "# time base: computer clock, UTC\r\n";
    std::snprintf(line, sizeof line,
                  "# stream time zero: %s (the graph's reference clock read against the computer's UTC clock "
                  "%d times; the closest reading was %.3f ms apart)\r\n",
                  UtcText(header.streamZeroUtc).c_str(), header.clockReadings,
                  static_cast<double>(header.clockSpread) / 10000.0);
    text += line;
    if (header.gpsOffsetKnown) {
        std::snprintf(line, sizeof line, "# computer clock minus GPS time: %+.2f s\r\n", header.gpsOffsetSeconds);
        text += line;
    } else {
        text += "# computer clock minus GPS time: not measured\r\n";
    }
    text += "frame,utc,stream_ms,dropped_before\r\n";
    return text;
}

std::wstring FrameTimeRecordPath(const std::wstring& aviPath)
{
    std::wstring path = aviPath;
    if (path.size() >= 4 && _wcsicmp(path.c_str() + path.size() - 4, L".avi") == 0)
        path.resize(path.size() - 4);
    return path + L".frames.csv";
}
