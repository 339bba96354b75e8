// The frame-time record of one recording: a text file beside the AVI,
// named like it with ".frames.csv" for ".avi", with one row per frame the
// file branch's queue handed to the mux, in file order. The rows are kept
// in memory and written about once a second, and the rest when the stream
// stops, so the record is complete when the AVI is.
//
// A record that can't be written says so once in User Messages; the
// recording goes on without it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "filters/frame_queue_filter.h"
#include "video/frame_times.h"

class FrameTimeRecord : public FrameQueueObserver {
public:
    // Makes the file at once. `header` gives everything but stream time zero.
    FrameTimeRecord(const std::wstring& aviPath, const FrameTimeHeader& header);
    ~FrameTimeRecord() override;
    FrameTimeRecord(const FrameTimeRecord&) = delete;
    FrameTimeRecord& operator=(const FrameTimeRecord&) = delete;

    void StreamRuns(IReferenceClock* clock, REFERENCE_TIME start) override;
    void FrameDelivered(IMediaSample* sample, long lostBefore) override;
    void StreamStops() override;

    const std::wstring& Path() const { return path_; }
    long Rows() const { return rows_; }

    // How many back-to-back readings of the two clocks stream time zero is
    // taken from.
    static constexpr int kClockReadings = 8;

private:
    // Writes the rows kept so far when a second has passed since the last
    // write or they have grown large, or `now`.
    void Write(bool now);
    void Fail();
    void Close();

    std::wstring path_;
    FrameTimeHeader header_;
    HANDLE file_ = INVALID_HANDLE_VALUE;
    bool failed_ = false;
    bool closed_ = false;  // the stream stopped: the record is complete
    std::string pending_;
    ULONGLONG lastWrite_ = 0;
    long rows_ = 0;
};
