// A night of events in one run of the program: twenty recordings in a row,
// each complete, and the process no bigger after the last than after the
// first.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "support/handle_count.h"
#include "support/recorded_frames.h"

#include <cstdio>

using namespace e2e;

namespace {

struct ProcessFigures {
    long handles = -1;
    long threads = -1;
    double privateMb = -1;
};

// The anonymous memory the host gives the program's process (RssAnon), in
// MB, found by the folder it runs from; -1 when it can't be read.
double HostPrivateMb(const std::wstring& folder)
{
    std::string name = Narrow(folder.substr(folder.find_last_of(L'\\') + 1));
    // The first letter in brackets keeps the pattern from finding the shell
    // that runs it.
    std::string pattern = "[" + name.substr(0, 1) + "]" + name.substr(1) + ".MAVU_VideoCapture";
    std::string text = testsupport::UnixCommandOutput("for p in $(pgrep -f '" + pattern +
                                                          "'); do grep RssAnon /proc/$p/status; done > \"$OUT\"",
                                                      Narrow(folder + L"\\rss.txt"), 5000);
    unsigned long kb = 0;
    return std::sscanf(text.c_str(), "RssAnon: %lu", &kb) == 1 ? static_cast<double>(kb) / 1024 : -1;
}

// What the process holds, read from outside it. Its private memory is the
// host's count: the platform's PrivateUsage reads 0 here.
ProcessFigures Measure(DWORD processId, const std::wstring& folder)
{
    ProcessFigures figures;
    figures.handles = testsupport::ProcessHandleCount(processId);
    figures.threads = testsupport::ProcessThreadCount(processId);
    figures.privateMb = HostPrivateMb(folder);
    return figures;
}

}  // namespace

TEST(Night, TwentyEventsInARowAreRecordedAndLeaveNothingBehind)
{
    constexpr int kEvents = 20;
    // Events closer than 30 s after the end of the one before are refused.
    constexpr int kApartSeconds = 36;
    ProgramRun run;
    for (int i = 0; i < kEvents; ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "N%02d", i);
        WriteEvent(run.folder, std::wstring(L"night_") + std::to_wstring(100 + i), UtcInSeconds(25 + kApartSeconds * i),
                   5, name);
    }
    ASSERT_TRUE(run.StartWithSkyCam());

    std::vector<ProcessFigures> after;
    for (int i = 0; i < kEvents; ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(run.WaitTitle(kRecordingTitle, (kApartSeconds + 15) * 1000)) << Narrow(run.program->Messages());
        ASSERT_TRUE(WaitUntil([&] { return WindowText(run.Main()) != kRecordingTitle; }, 20000));
        ASSERT_EQ(run.Recordings(i + 1).size(), static_cast<size_t>(i + 1));
        Sleep(2000);
        after.push_back(Measure(run.program->ProcessId(), run.folder));
        std::printf("after event %2d: %ld handles, %ld threads, %.1f MB private\n", i + 1, after.back().handles,
                    after.back().threads, after.back().privateMb);
        std::fflush(stdout);
    }
    run.program->Kill();

    const ProcessFigures& first = after.front();
    const ProcessFigures& last = after.back();
    ASSERT_GT(first.handles, 0);
    ASSERT_GT(first.threads, 0);
    EXPECT_LE(last.handles, first.handles + 5);
    EXPECT_LE(last.threads, first.threads + 2);
    // Memory grows over the first events as the platform's graphs, heaps
    // and renderer warm up, then stays level: a leak shows as growth after
    // that, 10 MB over fifteen events at most.
    const ProcessFigures& warm = after[4];
    if (warm.privateMb > 0) {
        EXPECT_LE(last.privateMb, warm.privateMb + 10);
    }

    std::vector<std::wstring> videos = run.Recordings(kEvents);
    ASSERT_EQ(videos.size(), static_cast<size_t>(kEvents));
    for (const std::wstring& video : videos) {
        SCOPED_TRACE(Narrow(video));
        std::vector<synthcam::FrameStamp> stamps =
            testsupport::ReadRecordedStamps(Narrow(run.Videos() + L"\\" + video), 640);
        EXPECT_GE(stamps.size(), 130u);
        std::string report = run.ReportOf(video);
        long missing = testsupport::MissingStampedFrames(stamps);
        EXPECT_GE(missing, 0);
        EXPECT_LE(missing, testsupport::ReportedDroppedFrames(report)) << report;
    }
}
