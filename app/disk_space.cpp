#include "app/disk_space.h"

#include <atomic>

#include "base/report.h"
#include "base/timer_queue_timer.h"
#include "filters/file_sink_filter.h"
#include "persistence/options.h"
#include "ui/window_set.h"
#include "video/recording_estimate.h"
#include "video/video_sources.h"

namespace {

constexpr uint64_t kSpareBytes = 8ull << 20;
// The index takes 16 bytes a frame in idx1 and 8 in the mux's own index;
// frames come at no more than 60 a second.
constexpr uint64_t kIndexBytesPerSecond = 60 * 24;

TimerQueueTimer diskWatch;
std::atomic<uint64_t> watchedBytesPerSecond{0};
std::atomic<uint64_t> watchStartTick{0};
std::atomic<bool> diskFullPosted{false};

// Bytes free to this user on the volume of the folder, or of the current
// directory while the folder doesn't exist yet.
bool FreeBytes(const std::wstring& folder, uint64_t* freeBytes)
{
    ULARGE_INTEGER available{};
    if (GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr) ||
        GetDiskFreeSpaceExW(L".", &available, nullptr, nullptr)) {
        *freeBytes = available.QuadPart;
        return true;
    }
    return false;
}

// The bytes a recording of that long takes in the current format,
// uncompressed; 0 without a format.
uint64_t CurrentFormatBytes(uint64_t durationMs)
{
    const VideoFormat* format = CurrentVideoFormat();
    if (!format)
        return 0;
    int64_t frameTime = 0;
    const AM_MEDIA_TYPE* type = format->mediaType;
    if (type && type->formattype == FORMAT_VideoInfo && type->pbFormat && type->cbFormat >= sizeof(VIDEOINFOHEADER))
        frameTime = reinterpret_cast<const VIDEOINFOHEADER*>(type->pbFormat)->AvgTimePerFrame;
    return EstimatedRecordingBytes(durationMs, frameTime,
                                   UncompressedFrameBytes(format->width, format->height, format->subtype));
}

void PostDiskFull()
{
    if (!diskFullPosted.exchange(true))
        PostMessageW(mainWindow, kDiskFullMessage, 0, 0);
}

void CALLBACK WatchDisk(void*, BOOLEAN)
{
    uint64_t freeBytes = 0;
    if (!FreeBytes(VideoFolder(), &freeBytes))
        return;
    uint64_t seconds = (GetTickCount64() - watchStartTick) / 1000;
    if (freeBytes < RecordingReserveBytes(watchedBytesPerSecond, seconds))
        PostDiskFull();
}

// A write to the file that failed: the disk may have filled between two
// looks of the watch.
void OnWriteFailure(HRESULT)
{
    PostDiskFull();
}

std::wstring Megabytes(uint64_t bytes)
{
    return std::to_wstring(WholeMegabytes(bytes)) + L" MB";
}

}  // namespace

std::wstring VideoFolder()
{
    return options.VideoDirectory[0] ? options.VideoDirectory : L"VideoFiles\\";
}

std::wstring RecordingSpaceWarning(uint64_t neededBytes, uint64_t freeBytes, const std::wstring& folder)
{
    if (neededBytes <= freeBytes)
        return {};
    return L"WARNING: the recording needs about " + Megabytes(neededBytes) + L", but only " +
        std::to_wstring(freeBytes >> 20) + L" MB are free for the video folder \"" + folder + L"\"\r\n";
}

uint64_t RecordingReserveBytes(uint64_t bytesPerSecond, uint64_t secondsRecorded)
{
    return kSpareBytes + 2 * bytesPerSecond + (secondsRecorded + 2) * kIndexBytesPerSecond;
}

void WarnIfRecordingWontFit(uint64_t durationMs)
{
    const VideoFormat* format = CurrentVideoFormat();
    uint64_t freeBytes = 0;
    std::wstring folder = VideoFolder();
    if (!format || !FreeBytes(folder, &freeBytes))
        return;
    std::wstring line = RecordingSpaceWarning(CurrentFormatBytes(durationMs), freeBytes, folder);
    if (!line.empty())
        ReportUserMessage(line.c_str(), true);
}

void StartDiskWatch()
{
    StopDiskWatch();
    watchedBytesPerSecond = CurrentFormatBytes(1000);
    watchStartTick = GetTickCount64();
    diskFullPosted = false;
    FileSinkFilter::SetWriteFailureHook(OnWriteFailure);
    diskWatch.Start(WatchDisk, 1000, 1000);
}

void StopDiskWatch()
{
    diskWatch.Delete();
}
