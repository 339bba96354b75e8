#include "video/frame_time_record.h"

#include <vector>

#include "base/report.h"
#include "base/ticks.h"

namespace {

constexpr size_t kWriteBytes = 64 * 1024;
constexpr ULONGLONG kWriteIntervalMs = 1000;

}  // namespace

FrameTimeRecord::FrameTimeRecord(const std::wstring& aviPath, const FrameTimeHeader& header)
    : path_(FrameTimeRecordPath(aviPath)), header_(header)
{
    file_ = CreateFileW(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file_ == INVALID_HANDLE_VALUE)
        Fail();
}

FrameTimeRecord::~FrameTimeRecord()
{
    Close();
}

void FrameTimeRecord::StreamRuns(IReferenceClock* clock, REFERENCE_TIME start)
{
    std::vector<ClockReading> readings;
    if (clock) {
        for (int i = 0; i < kClockReadings; ++i) {
            ClockReading reading;
            if (FAILED(clock->GetTime(&reading.referenceBefore)))
                break;
            reading.utc = PreciseUtcNowTicks();
            if (FAILED(clock->GetTime(&reading.referenceAfter)))
                break;
            readings.push_back(reading);
        }
    }
    bool found = false;
    ClockPair pair = ClosestClockPair(readings, &found);
    if (found) {
        header_.streamZeroUtc = StreamZeroUtc(pair, start);
        header_.clockSpread = pair.spread;
        header_.clockReadings = static_cast<int>(readings.size());
    } else {
        // Without a clock the samples carry no times either: the rows
        // then say the frame's number and its losses only.
        header_.streamZeroUtc = PreciseUtcNowTicks();
        header_.clockSpread = 0;
        header_.clockReadings = 0;
    }
    rows_ = 0;
    if (failed_ || closed_)
        return;
    pending_ = FrameTimeHeading(header_);
    pending_.reserve(kWriteBytes + 256);
    Write(true);
}

void FrameTimeRecord::FrameDelivered(IMediaSample* sample, long lostBefore)
{
    long frame = rows_++;
    if (failed_ || closed_)
        return;
    REFERENCE_TIME start = 0, stop = 0;
    HRESULT timed = sample->GetTime(&start, &stop);
    if (timed == S_OK || timed == VFW_S_NO_STOP_TIME)
        AppendFrameTimeRow(pending_, frame, FrameUtc(header_.streamZeroUtc, start), start, lostBefore);
    else
        pending_ += std::to_string(frame) + ",,," + std::to_string(lostBefore) + "\r\n";
    Write(false);
}

void FrameTimeRecord::StreamStops()
{
    Close();
}

void FrameTimeRecord::Write(bool now)
{
    if (failed_ || closed_ || pending_.empty())
        return;
    ULONGLONG tick = GetTickCount64();
    if (!now && pending_.size() < kWriteBytes && tick - lastWrite_ < kWriteIntervalMs)
        return;
    lastWrite_ = tick;
    DWORD written = 0;
    if (file_ == INVALID_HANDLE_VALUE ||
        !WriteFile(file_, pending_.data(), static_cast<DWORD>(pending_.size()), &written, nullptr) ||
        written != pending_.size()) {
        Fail();
        return;
    }
    pending_.clear();
}

void FrameTimeRecord::Fail()
{
    if (failed_)
        return;
    failed_ = true;
    pending_.clear();
    ReportUserMessage((L"WARNING: cannot write the frame-time record \"" + path_ +
                       L"\"; the recording goes on without it\r\n")
                          .c_str(),
                      true);
}

void FrameTimeRecord::Close()
{
    Write(true);
    closed_ = true;
    if (file_ != INVALID_HANDLE_VALUE) {
        CloseHandle(file_);
        file_ = INVALID_HANDLE_VALUE;
    }
}
