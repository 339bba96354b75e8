// The two USB grabbers' analog standard, found at start-up by trial: the
// signal's standard is what the recording is made in and what its report
// says. The trial counts the frames VMR7 drew; this platform's VMR7 can't
// count, so these scenarios put the stand-in renderer under VMR7's class id
// for their run.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "tools/vmr7standin/registration.h"

#include <utility>
#include <vector>

using namespace e2e;

namespace {

constexpr wchar_t kPalFound[] = L"Auto Detect: device \"USB 2820 Device\" format changed from NTSC to PAL\r\n";

struct Grabber {
    const wchar_t* name;
    const wchar_t* profile;
    const wchar_t* signal;
    long frameLimit;
};

// The grabbers plugged in, how often each line stands after start-up, and
// the recording's standard, rate and height (none when `standard` is null).
struct GrabberCase {
    const char* name;
    std::vector<Grabber> grabbers;
    std::vector<std::pair<const wchar_t*, int>> lines;
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
    for (const Grabber& grabber : test.grabbers)
        ASSERT_TRUE(run.devices.Add(grabber.name, grabber.profile, grabber.signal, {.frameLimit = grabber.frameLimit}));
    ASSERT_TRUE(run.Start());
    for (const auto& [line, count] : test.lines)
        EXPECT_EQ(run.Count(line), count) << Narrow(line) << " in " << Narrow(run.program->Messages());
    if (test.standard)
        ExpectRecordedAt(*run.program, 720, test.height, test.rate, test.standard, false);
}

INSTANTIATE_TEST_SUITE_P(
    Grabbers, Analog,
    testing::Values(
        GrabberCase{"PalSignalIsFoundAndRecordedAsPal",
                    {{L"USB 2820 Device", L"usb2820", L"pal", 0}},
                    {{kPalFound, 1}},
                    "PAL",
                    "25",
                    576},
        GrabberCase{"NtscSignalStaysNtscWithoutALine",
                    {{L"USB 2861 Device", L"usb2861", L"ntsc", 0}},
                    {{L"Auto Detect", 0}},
                    "NTSC",
                    "30",
                    480},
        GrabberCase{"SixFramesDrawnCountAsPalAndFiveAsNtsc",
                    {{L"USB 2820 Device", L"usb2820", L"pal", 6}, {L"USB 2861 Device", L"usb2861", L"pal", 5}},
                    {{kPalFound, 1}, {L"Auto Detect", 1}},
                    nullptr,
                    nullptr,
                    0},
        GrabberCase{"WithoutPalFormatsSaysSoAndStaysNtsc",
                    {{L"USB 2820 Device", L"grabber480", L"pal", 0}},
                    {{L"WARNING: PAL analog formats cannot be found during call to TestAnalogDeviceFormat\r\n", 1},
                     {L"Auto Detect", 0}},
                    "NTSC",
                    "30",
                    480}),
    [](const testing::TestParamInfo<GrabberCase>& info) { return std::string(info.param.name); });

}  // namespace
