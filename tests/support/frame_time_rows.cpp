#include "support/frame_time_rows.h"

#include "support/times.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace testsupport {

namespace {

bool ParseUtc(const std::string& text, uint64_t* ms)
{
    unsigned year, month, day, hour, minute, second, milli;
    char zone = 0;
    if (std::sscanf(text.c_str(), "%4u-%2u-%2uT%2u:%2u:%2u.%3u%c", &year, &month, &day, &hour, &minute, &second,
                    &milli, &zone) != 8 ||
        zone != 'Z' || text.size() != 24)
        return false;
    SYSTEMTIME time = Time(year, month, day, hour, minute, second, milli);
    FILETIME file{};
    if (!SystemTimeToFileTime(&time, &file))
        return false;
    *ms = synthcam::UtcMsSince2020(file);
    return true;
}

}  // namespace

FrameTimeFile ReadFrameTimeFile(const std::string& path)
{
    FrameTimeFile result;
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return result;
    std::string line;
    bool ok = true;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        else
            ok = false;  // every line ends in CR LF
        if (line.rfind("# ", 0) == 0) {
            result.comments.push_back(line.substr(2));
            continue;
        }
        if (result.header.empty()) {
            result.header = line;
            continue;
        }
        std::stringstream cells(line);
        std::string frame, utc, stream, dropped;
        FrameTimeRow row;
        if (!std::getline(cells, frame, ',') || !std::getline(cells, utc, ',') || !std::getline(cells, stream, ',') ||
            !std::getline(cells, dropped) || !ParseUtc(utc, &row.utcMs)) {
            ok = false;
            continue;
        }
        row.frame = std::stol(frame);
        row.streamMs = std::stod(stream);
        row.droppedBefore = std::stol(dropped);
        result.rows.push_back(row);
    }
    result.ok = ok && !result.header.empty();
    return result;
}

void ExpectRecordMatchesTheStamps(const std::string& aviPath, const std::vector<synthcam::FrameStamp>& stamps,
                                  double framePeriodMs)
{
    std::string path = aviPath.substr(0, aviPath.size() - 4) + ".frames.csv";
    FrameTimeFile record = ReadFrameTimeFile(path);
    ASSERT_TRUE(record.ok) << path;
    EXPECT_EQ(record.header, "frame,utc,stream_ms,dropped_before");
    ASSERT_EQ(record.rows.size(), stamps.size()) << record.rows.size() << " rows, " << stamps.size() << " frames";
    ASSERT_FALSE(stamps.empty());
    // Frame by frame in file order: the row's UTC against the stamp's, and
    // its dropped_before against the gap before the stamp (the first row's
    // from the counter's start at 0 when the camera runs).
    std::vector<double> offsets;
    long droppedMismatches = 0, droppedTotal = 0;
    for (size_t i = 0; i < stamps.size(); ++i) {
        const FrameTimeRow& row = record.rows[i];
        ASSERT_EQ(row.frame, static_cast<long>(i));
        offsets.push_back(std::fabs(static_cast<double>(row.utcMs) - static_cast<double>(stamps[i].utcMs)));
        long gap = i == 0 ? static_cast<long>(stamps[0].counter)
                          : static_cast<long>(stamps[i].counter) - static_cast<long>(stamps[i - 1].counter) - 1;
        droppedMismatches += row.droppedBefore != gap ? 1 : 0;
        droppedTotal += row.droppedBefore;
    }
    double worstMs = *std::max_element(offsets.begin(), offsets.end());
    std::nth_element(offsets.begin(), offsets.begin() + static_cast<long>(offsets.size() / 2), offsets.end());
    double medianMs = offsets[offsets.size() / 2];
    std::printf("%s: %zu rows; UTC off by %.1f ms at the median, %.1f ms at worst; %ld dropped\n", path.c_str(),
                record.rows.size(), medianMs, worstMs, droppedTotal);
    EXPECT_LE(medianMs, 5.0);
    EXPECT_LE(worstMs, framePeriodMs);
    EXPECT_EQ(droppedMismatches, 0);
}

}  // namespace testsupport
