// The video engine in the test process: a VideoPlayer with a hidden
// clipping window, against synthetic devices registered in the prefix.
#pragma once

#include "device/graph_helpers.h"
#include "video/video_player.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace enginetest {

class EngineTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Enumerates and validates the devices now registered.
    void ScanDevices();
    // The device of that name in the engine's list, or null.
    VideoSourceInfo* Source(const std::wstring& name);
    // Everything reported since the last call, in order, as one text.
    std::wstring TakeMessages();
    // "filter.pin -> filter.pin" for every connection of the graph, sorted.
    std::vector<std::string> Connections();

    devicetest::SyntheticDevices devices;
    std::unique_ptr<VideoPlayer> player;
    HWND clippingWindow = nullptr;
};

}  // namespace enginetest
