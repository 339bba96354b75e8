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
    ProgramRun run;
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam"));
    WriteOptions(run.folder, Option("DefaultRenderer", "VMR9"));

    int previewCycles = Cycles("MAVU_STRESS_PREVIEW_CYCLES", 10);
    int previewHangs = 0, previewFailures = 0;
    for (int cycle = 0; cycle < previewCycles; ++cycle) {
        if (!run.Run()) {
            ++previewFailures;
            continue;
        }
        Sleep(1000);
        if (!run.program->Exit(kHangMs)) {
            ++previewHangs;
            std::fprintf(stderr, "preview cycle %d: no exit within %lu ms\n", cycle + 1, kHangMs);
        }
    }

    int recordingCycles = Cycles("MAVU_STRESS_RECORDING_CYCLES", 5);
    int recordingHangs = 0;
    ASSERT_TRUE(run.Run());
    HWND start = run.program->StartButton();
    HWND stop = run.program->StopButton();
    ASSERT_NE(stop, nullptr);
    int done = 0;
    for (; done < recordingCycles; ++done) {
        Click(start);
        if (!run.WaitTitle(kRecordingTitle, kHangMs)) {
            ++recordingHangs;
            std::fprintf(stderr, "recording cycle %d: no recording within %lu ms\n", done + 1, kHangMs);
            break;
        }
        Sleep(1000);
        Click(stop);
        if (!WaitUntil([&] { return WindowText(run.Main()) == kMainTitle && IsEnabled(start); }, kHangMs)) {
            ++recordingHangs;
            std::fprintf(stderr, "recording cycle %d: no preview within %lu ms\n", done + 1, kHangMs);
            break;
        }
    }
    size_t reports = ListFiles(run.Videos(), L"*.txt").size();
    bool exited = run.program->Exit(kHangMs);

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
