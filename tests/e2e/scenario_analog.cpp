// The two USB grabbers' analog standard, found at start-up by trial: the
// signal's standard is what the recording is made in and what its report
// says. The trial counts the frames VMR7 drew; this platform's VMR7 can't
// count, so these scenarios put the stand-in renderer under VMR7's class id
// for their run.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "tools/vmr7standin/registration.h"

using namespace e2e;

namespace {

constexpr wchar_t kPalFound[] = L"Auto Detect: device \"USB 2820 Device\" format changed from NTSC to PAL\r\n";

// The grabber plugged in with its signal, how often a line stands after
// start-up, and the recording's standard, rate and height.
struct GrabberCase {
    const char* name;
    const wchar_t* device;
    const wchar_t* profile;
    const wchar_t* signal;
    const wchar_t* line;
    int count;
    const char* standard;
    const char* rate;
    int height;
};

class Analog : public testing::TestWithParam<GrabberCase> {};

TEST_P(Analog, StandardFoundAtStartUp)
{
    const GrabberCase& test = GetParam();
    vmr7standin::StandInRegistration standIn;
    ASSERT_TRUE(standIn.Installed());
    ProgramRun run;
    ASSERT_TRUE(run.devices.Add(test.device, test.profile, test.signal));
    ASSERT_TRUE(run.Start());
    EXPECT_EQ(run.Count(test.line), test.count) << Narrow(test.line) << " in " << Narrow(run.program->Messages());
    ExpectRecordedAt(*run.program, 720, test.height, test.rate, test.standard, false);
}

INSTANTIATE_TEST_SUITE_P(Grabbers, Analog,
                         testing::Values(GrabberCase{"PalSignalIsFoundAndRecordedAsPal", L"USB 2820 Device", L"usb2820",
                                                     L"pal", kPalFound, 1, "PAL", "25", 576},
                                         GrabberCase{"NtscSignalStaysNtscWithoutALine", L"USB 2861 Device", L"usb2861",
                                                     L"ntsc", L"Auto Detect", 0, "NTSC", "30", 480}),
                         [](const testing::TestParamInfo<GrabberCase>& info) { return std::string(info.param.name); });

}  // namespace
