#include "video/frame_times.h"

#include <windows.h>

#include <cinttypes>
#include <cstdio>

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

std::string UtcText(uint64_t utc)
{
    SYSTEMTIME time = TicksToSystemTime(utc);
    char text[40];
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    return text;
}

std::string FrameTimeRow(long frame, uint64_t utc, int64_t streamTime, long droppedBefore)
{
    // The stream time in whole microseconds first, so that the three
    // decimals are exact and a negative time keeps its sign.
    int64_t micro = streamTime / 10;
    const char* sign = micro < 0 ? "-" : "";
    uint64_t magnitude = static_cast<uint64_t>(micro < 0 ? -micro : micro);
    char text[120];
    std::snprintf(text, sizeof text, "%ld,%s,%s%" PRIu64 ".%03u,%ld\r\n", frame, UtcText(utc).c_str(), sign,
                  magnitude / 1000, static_cast<unsigned>(magnitude % 1000), droppedBefore);
    return text;
}

std::string FrameTimeHeading(const FrameTimeHeader& header)
{
    std::string text;
    char line[200];
    text += "# " + header.program + "\r\n";
    text += "# device: " + Utf8(header.device) + "\r\n";
    text += "# format: " + header.format + "\r\n";
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
