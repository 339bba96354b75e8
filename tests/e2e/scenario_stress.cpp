// The camera started and stopped many times over, counting the stops that
// don't come back: the platform's Direct3D has been seen to hang in a graph's
// teardown. A preview cycle is a start of the program (the camera starts in
// preview) and its Exit (the camera stops, the process ends); a recording
// cycle is a press of Start and of Stop, each a stop of one graph and the
// build of the next. The counts come from MAVU_STRESS_PREVIEW_CYCLES and
// MAVU_STRESS_RECORDING_CYCLES (10 and 5 when unset).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "e2e/program_run.h"

using namespace e2e;

namespace {

constexpr unsigned kExitCommand = 33099;
constexpr DWORD kHangMs = 20000;

int Cycles(const char* variable, int fallback)
{
    const char* text = std::getenv(variable);
    int value = text ? std::atoi(text) : 0;
    return value > 0 ? value : fallback;
}

}  // namespace

TEST(Stress, PreviewAndRecordingCyclesAllComeBack)
{
    devicetest::SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Sky Cam", L"webcam"));
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteOptions(folder, Option("DefaultRenderer", "VMR9"));

    int previewCycles = Cycles("MAVU_STRESS_PREVIEW_CYCLES", 10);
    int previewHangs = 0, previewFailures = 0;
    for (int cycle = 0; cycle < previewCycles; ++cycle) {
        Program program(folder);
        if (!program.Start() || !program.WaitReady()) {
            ++previewFailures;
            program.Kill();
            continue;
        }
        Sleep(1000);
        PostCommand(program.MainWindow(), kExitCommand);
        if (!program.WaitExit(kHangMs)) {
            ++previewHangs;
            std::fprintf(stderr, "preview cycle %d: no exit within %lu ms\n", cycle + 1, kHangMs);
        }
        program.Kill();
    }

    int recordingCycles = Cycles("MAVU_STRESS_RECORDING_CYCLES", 5);
    int recordingHangs = 0;
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    HWND main = program.MainWindow();
    HWND start = FindChild(program.RecordControlsWindow(), L"Button", nullptr);
    ASSERT_NE(start, nullptr);
    HWND stop = GetWindow(start, GW_HWNDNEXT);
    int done = 0;
    for (; done < recordingCycles; ++done) {
        Click(start);
        if (!WaitUntil([&] { return WindowText(main) == kRecordingTitle; }, kHangMs)) {
            ++recordingHangs;
            std::fprintf(stderr, "recording cycle %d: no recording within %lu ms\n", done + 1, kHangMs);
            break;
        }
        Sleep(1000);
        Click(stop);
        if (!WaitUntil([&] { return WindowText(main) == kMainTitle && IsEnabled(start); }, kHangMs)) {
            ++recordingHangs;
            std::fprintf(stderr, "recording cycle %d: no preview within %lu ms\n", done + 1, kHangMs);
            break;
        }
    }
    size_t reports = ListFiles(folder + L"\\VideoFiles", L"*.txt").size();
    PostCommand(main, kExitCommand);
    bool exited = program.WaitExit(kHangMs);
    program.Kill();

    std::printf("preview cycles %d: %d hung, %d failed to start; recording cycles %d of %d done: %d hung; "
                "reports %zu; last exit %s\n",
                previewCycles, previewHangs, previewFailures, done, recordingCycles, recordingHangs, reports,
                exited ? "clean" : "hung");
    EXPECT_EQ(previewHangs, 0);
    EXPECT_EQ(previewFailures, 0);
    EXPECT_EQ(recordingHangs, 0);
    EXPECT_EQ(done, recordingCycles);
    EXPECT_TRUE(exited);
}
