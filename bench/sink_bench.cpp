// The file branch of a recording at full HD while the disk is busy: how
// long the camera's thread spends handing a frame to the program's own
// file branch (its queue's Receive), compared with one memcpy of the frame,
// and how many frames reached the file. A synthetic camera records 1920x1080
// YUY2 at 30 frames a second through the queue, the platform's AVI Mux and
// the program's file sink, while another thread writes and flushes large
// blocks to the same disk.
#include "bench/bench_support.h"
#include "device/graph_helpers.h"
#include "video/file_branch.h"
#include "video/graph_frame_queue.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>

// The engine reports through the program's channel; here it prints.
void ReportUserMessage(const wchar_t* text, bool)
{
    std::fwprintf(stderr, L"%ls", text);
}

namespace {

constexpr int kWidth = 1920, kHeight = 1080;
constexpr size_t kFrameBytes = size_t{kWidth} * kHeight * 2;
constexpr DWORD kRecordMs = 10000;

double MemcpyMs()
{
    std::vector<uint8_t> from(kFrameBytes), to(kFrameBytes);
    bench::FillSky(from, 7);
    std::vector<double> times;
    for (int i = 0; i < 15; ++i) {
        double begun = bench::Now();
        std::memcpy(to.data(), from.data(), kFrameBytes);
        times.push_back((bench::Now() - begun) * 1000);
    }
    return bench::Median(times);
}

// Writes and flushes 32 MB blocks to a file in the folder until told to stop.
void KeepDiskBusy(const std::wstring& folder, std::atomic<bool>& stop, std::atomic<long>& blocks)
{
    std::vector<uint8_t> block(32u << 20, 0x5a);
    std::wstring path = folder + L"\\busy.bin";
    while (!stop) {
        HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE)
            return;
        for (int i = 0; i < 8 && !stop; ++i) {
            DWORD written = 0;
            WriteFile(file, block.data(), static_cast<DWORD>(block.size()), &written, nullptr);
            FlushFileBuffers(file);
            ++blocks;
        }
        CloseHandle(file);
    }
    DeleteFileW(path.c_str());
}

struct RunFigures {
    bool ok = false;
    FrameQueueCounts queue;
    long cameraDelivered = -1, cameraDropped = -1;
    long diskBlocks = 0;
};

// One recording of kRecordMs through the file branch, with or without the
// disk kept busy beside it.
RunFigures Record(bool busyDisk)
{
    RunFigures figures;
    devicetest::SyntheticDevices devices;
    if (!devices.Add(L"Bench Cam", L"hd"))
        return figures;
    ComPtr<IBaseFilter> camera = devicetest::BindDevice(L"Bench Cam");
    ComPtr<IGraphBuilder> graph;
    CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder, graph.PutVoid());
    std::string folder = devicetest::WorkFolder("sink-bench");
    std::wstring wideFolder(folder.begin(), folder.end());
    std::wstring file = wideFolder + L"\\bench.avi";

    GraphFrameQueue queue;
    ComPtr<IBaseFilter> mux;
    ComPtr<IFileSinkFilter> sink;
    ComPtr<IMediaControl> control;
    bool built = camera && graph && SUCCEEDED(graph->AddFilter(camera.Get(), L"Bench Cam")) &&
        SUCCEEDED(devicetest::SelectFormat(camera.Get(), MEDIASUBTYPE_YUY2, kWidth, kHeight)) &&
        SUCCEEDED(queue.Add(graph.Get(), L"Capture Queue", 150, 256ull << 20)) &&
        SUCCEEDED(AssembleFileBranch(graph.Get(), file.c_str(), mux.Put(), sink.Put()));
    ComPtr<IPin> capture;
    if (built) {
        capture = devicetest::FindPin(camera.Get(), L"Capture");
        ComPtr<IPin> queueIn = devicetest::FindPin(queue.Get(), L"In");
        ComPtr<IPin> queueOut = devicetest::FindPin(queue.Get(), L"Out");
        ComPtr<IPin> muxIn = devicetest::FindPin(mux.Get(), L"Input 01");
        built = capture && queueIn && queueOut && muxIn &&
            SUCCEEDED(graph->ConnectDirect(capture.Get(), queueIn.Get(), nullptr)) &&
            SUCCEEDED(graph->ConnectDirect(queueOut.Get(), muxIn.Get(), nullptr)) &&
            SUCCEEDED(graph->QueryInterface(IID_IMediaControl, control.PutVoid()));
    }
    if (built) {
        std::atomic<bool> stopDisk{false};
        std::atomic<long> blocks{0};
        std::thread disk;
        if (busyDisk) {
            disk = std::thread(KeepDiskBusy, wideFolder, std::ref(stopDisk), std::ref(blocks));
            Sleep(500);
        }
        control->Run();
        Sleep(kRecordMs);
        ComPtr<IAMDroppedFrames> frames;
        if (SUCCEEDED(capture->QueryInterface(IID_IAMDroppedFrames, frames.PutVoid()))) {
            frames->GetNumNotDropped(&figures.cameraDelivered);
            frames->GetNumDropped(&figures.cameraDropped);
        }
        queue->Seal(20000);
        control->Stop();
        stopDisk = true;
        if (disk.joinable())
            disk.join();
        figures.queue = queue->Counts();
        figures.diskBlocks = blocks;
        figures.ok = true;
    }
    if (control)
        control->Stop();
    capture.Reset();
    graph.Reset();
    DeleteFileW(file.c_str());
    return figures;
}

}  // namespace

int wmain()
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    double copy = MemcpyMs();
    int status = 0;
    std::printf("file branch at %dx%d YUY2, 30 fps, %lu s each; a frame lasts 33.3 ms, a memcpy of it %.2f ms\n",
                kWidth, kHeight, kRecordMs / 1000, copy);
    for (bool busy : {false, true}) {
        RunFigures run = Record(busy);
        if (!run.ok) {
            std::printf("cannot build the recording graph\n");
            status = 1;
            continue;
        }
        std::printf("  %s: longest Receive on the camera's thread %.2f ms = %.0f x the memcpy; camera delivered "
                    "%ld, dropped %ld; to the file %ld, dropped by the queue %ld",
                    busy ? "disk busy" : "disk quiet", run.queue.longestReceiveMs, run.queue.longestReceiveMs / copy,
                    run.cameraDelivered, run.cameraDropped, run.queue.delivered, run.queue.dropped);
        if (busy)
            std::printf(" (%ld blocks of 32 MB written and flushed beside it)", run.diskBlocks);
        std::printf("\n");
    }
    CoUninitialize();
    return status;
}
