// What the frame-time record costs a frame on its way to the file: the
// record's FrameDelivered (the sample's times read, a row formatted, the
// rows written about once a second) against one memcpy of a frame that
// isn't in the caches, for the frame sizes the program records. The record
// copies nothing of the frame; the target is at most 1% of the copy.
#include "bench/bench_support.h"
#include "video/frame_time_record.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

// The engine reports through the program's channel; here it prints.
void ReportUserMessage(const wchar_t* text, bool)
{
    std::fwprintf(stderr, L"%ls", text);
}

namespace {

struct Size {
    const char* name;
    int width, height, bytesPerPixel;
};

// A memcpy of one frame, as a frame comes from the camera: not from the
// processor's caches. The frames copied lie in a ring larger than any cache,
// and the median of the copies is taken.
double MemcpyUs(size_t bytes)
{
    const size_t frames = std::max<size_t>(4, (size_t{96} << 20) / bytes);
    std::vector<uint8_t> ring(frames * bytes), to(bytes);
    bench::FillSky(ring, 7);
    std::vector<double> times;
    for (size_t i = 0; i < frames * 3; ++i) {
        const uint8_t* from = ring.data() + (i % frames) * bytes;
        double begun = bench::Now();
        std::memcpy(to.data(), from, bytes);
        times.push_back((bench::Now() - begun) * 1e6);
    }
    return bench::Median(times);
}

// Microseconds a row, over a ten-minute recording's worth of frames at 30
// frames a second, with the platform's own sample.
double RecordUs(IMediaSample* sample)
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    std::wstring avi = std::wstring(folder) + L"frame_time_bench.avi";
    FrameTimeHeader header;
    header.program = "bench";
    header.device = L"bench";
    header.format = L"bench";
    header.framesPerSecond = 30;
    std::vector<double> times;
    for (int round = 0; round < 5; ++round) {
        FrameTimeRecord record(avi, header);
        record.StreamRuns(nullptr, 0);
        constexpr int kFrames = 18000;
        double begun = bench::Now();
        for (int frame = 0; frame < kFrames; ++frame) {
            REFERENCE_TIME start = frame * 333333ll, stop = start + 333333;
            sample->SetTime(&start, &stop);
            record.FrameDelivered(sample, frame % 97 == 0 ? 1 : 0);
        }
        record.StreamStops();
        times.push_back((bench::Now() - begun) * 1e6 / kFrames);
    }
    DeleteFileW(FrameTimeRecordPath(avi).c_str());
    return bench::Median(times);
}

}  // namespace

int main()
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    IMemAllocator* allocator = nullptr;
    if (FAILED(CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                                reinterpret_cast<void**>(&allocator)))) {
        std::printf("no memory allocator\n");
        return 1;
    }
    ALLOCATOR_PROPERTIES wanted{1, 64, 1, 0}, actual{};
    IMediaSample* sample = nullptr;
    if (FAILED(allocator->SetProperties(&wanted, &actual)) || FAILED(allocator->Commit()) ||
        FAILED(allocator->GetBuffer(&sample, nullptr, nullptr, 0))) {
        std::printf("no sample\n");
        return 1;
    }
    double recordUs = RecordUs(sample);
    sample->Release();
    allocator->Decommit();
    allocator->Release();

    const Size sizes[] = {
        {"640x480 YUY2", 640, 480, 2},
        {"720x576 YUY2", 720, 576, 2},
        {"1280x720 YUY2", 1280, 720, 2},
        {"1920x1080 YUY2", 1920, 1080, 2},
    };
    std::printf("frame-time record: %.3f us a frame\n", recordUs);
    int status = 0;
    for (const Size& size : sizes) {
        double copyUs = MemcpyUs(static_cast<size_t>(size.width) * size.height * size.bytesPerPixel);
        double ratio = recordUs / copyUs;
        std::printf("%-16s memcpy %8.1f us   record/memcpy %.4f (%.2f%%)%s\n", size.name, copyUs, ratio, ratio * 100,
                    ratio <= 0.01 ? "" : "   OVER 1%");
        if (ratio > 0.01)
            status = 1;
    }
    CoUninitialize();
    return status;
}
