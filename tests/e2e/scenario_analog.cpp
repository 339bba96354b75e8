// The two USB grabbers' analog standard, found at start-up by trial: the
// signal's standard is what the recording is made in and what its report
// says. The trial counts the frames VMR7 drew; this platform's VMR7 can't
// count, so these scenarios put the stand-in renderer under VMR7's class id
// for their run.
#include <gtest/gtest.h>

#include "device/graph_helpers.h"
#include "e2e/harness.h"
#include "support/ffprobe.h"
#include "tools/vmr7standin/registration.h"

#include <memory>

using namespace e2e;

namespace {

constexpr wchar_t kPalFound[] = L"Auto Detect: device \"USB 2820 Device\" format changed from NTSC to PAL\r\n";

struct GrabberRun {
    vmr7standin::StandInRegistration standIn;
    devicetest::SyntheticDevices devices;
    std::wstring folder = MakeWorkFolderForCurrentTest();
    std::unique_ptr<Program> program;

    bool Start()
    {
        WriteOptions(folder, Option("DefaultRenderer", "VMR9"));
        program = std::make_unique<Program>(folder);
        return standIn.Installed() && program->Start() && program->WaitReady();
    }
    // A short manual recording; its report, and its file's path in `avi`.
    std::string Record(std::wstring& avi)
    {
        ManualRecording recording = RecordByHand(*program);
        avi = recording.avi;
        return recording.report;
    }
};

void ExpectRecordedAs(GrabberRun& run, const char* standard, const char* rate, int width, int height)
{
    std::wstring avi;
    std::string report = run.Record(avi);
    ASSERT_FALSE(report.empty());
    EXPECT_NE(report.find(std::string("Source device format: ") + standard + "\r\r\n"), std::string::npos) << report;
    EXPECT_NE(report.find(std::string("Frame rate: ") + rate + "\r\r\n"), std::string::npos) << report;
    std::string size = std::to_string(width) + "x" + std::to_string(height);
    EXPECT_NE(report.find("Frame size: " + size + "\r\r\n"), std::string::npos) << report;
    testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(avi));
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.width, width);
    EXPECT_EQ(video.height, height);
}

}  // namespace

TEST(Analog, APalSignalAtStartUpIsFoundAndRecordedAsPal)
{
    GrabberRun run;
    ASSERT_TRUE(run.devices.Add(L"USB 2820 Device", L"usb2820", L"pal"));
    ASSERT_TRUE(run.Start());
    EXPECT_EQ(run.program->CountMessages(kPalFound), 1) << Narrow(run.program->Messages());
    ExpectRecordedAs(run, "PAL", "25", 720, 576);
    run.program->Kill();
}

TEST(Analog, AnNtscSignalStaysNtscWithoutALine)
{
    GrabberRun run;
    ASSERT_TRUE(run.devices.Add(L"USB 2861 Device", L"usb2861", L"ntsc"));
    ASSERT_TRUE(run.Start());
    EXPECT_EQ(run.program->CountMessages(L"Auto Detect"), 0) << Narrow(run.program->Messages());
    ExpectRecordedAs(run, "NTSC", "30", 720, 480);
    run.program->Kill();
}

TEST(Analog, SixFramesDrawnCountAsPalAndFiveAsNtsc)
{
    GrabberRun run;
    ASSERT_TRUE(run.devices.Add(L"USB 2820 Device", L"usb2820", L"pal", {.frameLimit = 6}));
    ASSERT_TRUE(run.devices.Add(L"USB 2861 Device", L"usb2861", L"pal", {.frameLimit = 5}));
    ASSERT_TRUE(run.Start());
    std::wstring text = run.program->Messages();
    EXPECT_EQ(run.program->CountMessages(kPalFound), 1) << Narrow(text);
    EXPECT_EQ(run.program->CountMessages(L"Auto Detect"), 1) << Narrow(text);
    run.program->Kill();
}

TEST(Analog, AGrabberWithoutPalFormatsSaysSoAndStaysNtsc)
{
    GrabberRun run;
    ASSERT_TRUE(run.devices.Add(L"USB 2820 Device", L"grabber480", L"pal"));
    ASSERT_TRUE(run.Start());
    EXPECT_EQ(run.program->CountMessages(
                  L"WARNING: PAL analog formats cannot be found during call to TestAnalogDeviceFormat\r\n"),
              1)
        << Narrow(run.program->Messages());
    EXPECT_EQ(run.program->CountMessages(L"Auto Detect"), 0);
    ExpectRecordedAs(run, "NTSC", "30", 720, 480);
    run.program->Kill();
}
