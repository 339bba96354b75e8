// The graph a camera start builds, for each mode the program can be in,
// checked by walking the graph's filters and pins.
#include "engine/engine_fixture.h"

#include "persistence/options.h"
#include "video/capture_settings.h"

using namespace enginetest;

namespace {

struct Mode {
    const char* name;
    bool record;
    bool saturation;
    bool integration;
    bool removeFilters;
    bool displayOff;
    std::vector<std::string> connections;
};

const std::vector<std::string> kPreview = {
    "Cam.Capture -> Smart Tee.Input",
    "Smart Tee.Preview -> VMR9.VMR Input0",
};
const std::vector<std::string> kPreviewTransform = {
    "Cam.Capture -> Smart Tee.Input",
    "MAVU Transform Filter Preview.XForm Out -> VMR9.VMR Input0",
    "Smart Tee.Preview -> MAVU Transform Filter Preview.XForm In",
};

std::vector<std::string> Merge(std::vector<std::string> a, const std::vector<std::string>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    std::sort(a.begin(), a.end());
    return a;
}

// A recording's file branch takes the camera's frames through its queue,
// and its preview takes them through one of its own.
const std::vector<std::string> kFileBranch = {
    "AVI Mux.AVI Out -> File Writer.in",
    "Capture Queue.Out -> AVI Mux.Input 01",
    "Smart Tee.Capture -> Capture Queue.In",
};
const std::vector<std::string> kRecordingPreview = {
    "Cam.Capture -> Smart Tee.Input",
    "Preview Queue.Out -> VMR9.VMR Input0",
    "Smart Tee.Preview -> Preview Queue.In",
};
const std::vector<std::string> kRecordingPreviewTransform = {
    "Cam.Capture -> Smart Tee.Input",
    "MAVU Transform Filter Preview.XForm Out -> Preview Queue.In",
    "Preview Queue.Out -> VMR9.VMR Input0",
    "Smart Tee.Preview -> MAVU Transform Filter Preview.XForm In",
};

}  // namespace

TEST_F(EngineTest, EachModeBuildsTheChainOfItsRow)
{
    ASSERT_TRUE(UseOneCamera());
    std::string folder = devicetest::WorkFolder("graph-modes");
    std::wstring file(folder.begin(), folder.end());
    file += L"/mode.avi";

    std::vector<Mode> modes = {
        {"preview", false, false, false, false, false, kPreview},
        {"preview with saturation", false, true, false, false, false, kPreviewTransform},
        {"preview with integration", false, false, true, false, false, kPreviewTransform},
        {"record", true, false, false, false, false, Merge(kRecordingPreview, kFileBranch)},
        {"record with saturation", true, true, false, false, false, Merge(kRecordingPreviewTransform, kFileBranch)},
        {"record, display filters removed", true, true, false, true, false, Merge(kRecordingPreview, kFileBranch)},
        {"record, display off", true, false, false, false, true,
         Merge({"Cam.Capture -> Smart Tee.Input", "Preview Queue.Out -> Null Renderer.In",
                "Smart Tee.Preview -> Preview Queue.In"},
               kFileBranch)},
    };
    for (const Mode& mode : modes) {
        SCOPED_TRACE(mode.name);
        pixelSaturationOn = mode.saturation;
        frameIntegrationOn = mode.integration;
        frameIntegrationCount = mode.integration ? 3 : 1;
        removeFiltersWhileRecording = mode.removeFilters;
        displayOffWhileRecording = mode.displayOff;
        ASSERT_EQ(player->StartCamera(false, mode.record ? file.c_str() : L""), S_OK)
            << testing::PrintToString(TakeMessages());
        EXPECT_EQ(Connections(), mode.connections);
        EXPECT_EQ(player->graphState, GraphRunning);
        Sleep(300);
        EXPECT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);
        EXPECT_EQ(player->graphState, GraphBuilt);
    }
}

TEST_F(EngineTest, ASourceWithItsOwnPreviewPinGetsNoSmartTee)
{
    ASSERT_TRUE(UseOneCamera(L"preview", {}, L"Two Pins"));
    pixelSaturationOn = 1;
    ASSERT_EQ(player->StartCamera(false, L""), S_OK) << testing::PrintToString(TakeMessages());
    EXPECT_EQ(Connections(), (std::vector<std::string>{
                                 "MAVU Transform Filter Preview.XForm Out -> VMR9.VMR Input0",
                                 "Two Pins.Preview -> MAVU Transform Filter Preview.XForm In",
                             }));
    EXPECT_EQ(player->StopCamera(false, L"", RecordingNotes{}), S_OK);
}
