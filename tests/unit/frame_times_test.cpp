// The frame-time record: the clock pair chosen, the UTC of stream time zero and of each frame, and the rows.
#include "video/frame_times.h"

#include <gtest/gtest.h>

#include "base/ticks.h"

namespace {

uint64_t Utc(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second, WORD millisecond)
{
    SYSTEMTIME time{year, month, 0, day, hour, minute, second, millisecond};
    return SystemTimeToTicks(time);
}

}  // namespace

TEST(FrameTimes, UtcTextAcrossLeapDaysMidnightAndTheYearsEnd)
{
    struct Row {
        uint64_t utc;
        const char* text;
    } rows[] = {
        {Utc(2024, 2, 29, 23, 59, 59, 999), "2024-02-29T23:59:59.999Z"},
        // A millisecond later it is the first of March in a leap year...
        {Utc(2024, 2, 29, 23, 59, 59, 999) + kTicksPerMillisecond, "2024-03-01T00:00:00.000Z"},
        // ...and in a year without a 29th of February, the day after the 28th.
        {Utc(2026, 2, 28, 23, 59, 59, 999) + kTicksPerMillisecond, "2026-03-01T00:00:00.000Z"},
        {Utc(2026, 12, 31, 23, 59, 59, 999) + kTicksPerMillisecond, "2027-01-01T00:00:00.000Z"},
        {Utc(2100, 2, 28, 12, 0, 0, 0) + kTicksPerDay, "2100-03-01T12:00:00.000Z"},
        // Below a millisecond is cut, not rounded up.
        {Utc(2026, 11, 26, 1, 2, 3, 456) + 9999, "2026-11-26T01:02:03.456Z"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(UtcText(row.utc), row.text);
}

TEST(FrameTimes, TheReadingWithTheClosestReferenceTimesIsKept)
{
    std::vector<ClockReading> readings = {
        {1000, 5000000, 1900},  // 900 apart
        {2000, 6000000, 2100},  // 100 apart: the best
        {3000, 7000000, 3100},  // as close, but later
        {4000, 8000000, 3990},  // went backwards: unusable
        {5000, 0, 5001},  // no UTC: unusable
    };
    bool found = false;
    ClockPair pair = ClosestClockPair(readings, &found);
    ASSERT_TRUE(found);
    EXPECT_EQ(pair.reference, 2050);
    EXPECT_EQ(pair.utc, 6000000u);
    EXPECT_EQ(pair.spread, 100);

    ClosestClockPair({{10, 20, 5}}, &found);
    EXPECT_FALSE(found);
    ClosestClockPair({}, &found);
    EXPECT_FALSE(found);
}

TEST(FrameTimes, StreamZeroAndFrameUtcFollowTheClockPair)
{
    uint64_t noon = Utc(2026, 11, 26, 12, 0, 0, 0);
    // UTC noon was read at reference time 50 s; the graph started at 50.5 s.
    ClockPair pair{500000000, noon, 20};
    uint64_t zero = StreamZeroUtc(pair, 505000000);
    EXPECT_EQ(UtcText(zero), "2026-11-26T12:00:00.500Z");
    // A graph started before the reading.
    EXPECT_EQ(UtcText(StreamZeroUtc(pair, 480000000)), "2026-11-26T11:59:58.000Z");
    // Frame 25 of a 25 fps stream is one second after stream time zero; a
    // sample stamped before it (preroll) lies before.
    EXPECT_EQ(UtcText(FrameUtc(zero, 10000000)), "2026-11-26T12:00:01.500Z");
    EXPECT_EQ(UtcText(FrameUtc(zero, -400000)), "2026-11-26T12:00:00.460Z");
}

TEST(FrameTimes, RowsAndHeading)
{
    uint64_t utc = Utc(2026, 11, 26, 1, 2, 3, 40);
    struct Row {
        long frame;
        int64_t streamTime;
        long dropped;
        const char* text;
    } rows[] = {
        {0, 0, 0, "0,2026-11-26T01:02:03.040Z,0.000,0\r\n"},
        {7, 333667, 3, "7,2026-11-26T01:02:03.040Z,33.366,3\r\n"},
        {2, -400000, 0, "2,2026-11-26T01:02:03.040Z,-40.000,0\r\n"},
        // Ten hours in.
        {900000, 360000000000ll, 0, "900000,2026-11-26T01:02:03.040Z,36000000.000,0\r\n"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(FrameTimeRow(row.frame, utc, row.streamTime, row.dropped), row.text);

    FrameTimeHeader header;
    header.program = "MAVU Video Capture 1.0";
    header.device = L"Caméra";
    header.format = L"YUY2 640x480";
    header.framesPerSecond = 25;
    header.streamZeroUtc = utc;
    header.clockSpread = 1234;
    header.clockReadings = 8;
    std::string heading = FrameTimeHeading(header);
    EXPECT_NE(heading.find("# device: Cam\xc3\xa9ra\r\n"), std::string::npos) << heading;
    EXPECT_NE(heading.find("# time base: computer clock, UTC\r\n"), std::string::npos);
    EXPECT_NE(heading.find("# stream time zero: 2026-11-26T01:02:03.040Z (the graph's reference clock read against "
                           "the computer's UTC clock 8 times; the closest reading was 0.123 ms apart)\r\n"),
              std::string::npos)
        << heading;
    EXPECT_NE(heading.find("# computer clock minus GPS time: not measured\r\n"), std::string::npos);
    EXPECT_EQ(heading.substr(heading.size() - 36), "frame,utc,stream_ms,dropped_before\r\n");
    header.gpsOffsetKnown = true;
    header.gpsOffsetSeconds = -3.04;
    EXPECT_NE(FrameTimeHeading(header).find("# computer clock minus GPS time: -3.04 s\r\n"), std::string::npos);
}

TEST(FrameTimes, TheRecordIsNamedAfterItsRecording)
{
    EXPECT_EQ(FrameTimeRecordPath(L"C:\\v\\Star_11_26_2026_01_02_03.avi"), L"C:\\v\\Star_11_26_2026_01_02_03.frames.csv");
    EXPECT_EQ(FrameTimeRecordPath(L"C:\\v\\Star_11_26_2026_01_02_03_1.AVI"),
              L"C:\\v\\Star_11_26_2026_01_02_03_1.frames.csv");
    EXPECT_EQ(FrameTimeRecordPath(L"C:\\v\\noextension"), L"C:\\v\\noextension.frames.csv");
}
