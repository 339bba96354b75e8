// The video engine in the test process: a VideoPlayer with a hidden
// clipping window, against synthetic devices registered in the prefix.
#pragma once

#include "device/graph_helpers.h"
#include "device/test_filters.h"
#include "video/video_player.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace enginetest {

class EngineTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // A player made now lists the codecs registered now.
    void RemakePlayer();
    // Enumerates and validates the devices now registered.
    void ScanDevices();
    // Adds the one synthetic device (the webcam "Cam" unless told), scans,
    // and makes it the device in use; null unless it is the only device found.
    VideoSourceInfo* UseOneCamera(const wchar_t* profile = L"webcam", const synthcam::DevicePacing& pacing = {},
                                  const wchar_t* name = L"Cam");
    // The device of that name in the engine's list, or null.
    VideoSourceInfo* Source(const std::wstring& name);
    // Everything reported since the last call, in order, as one text.
    std::wstring TakeMessages();
    // "filter.pin -> filter.pin" for every connection of the graph, sorted.
    std::vector<std::string> Connections();
    // Selects the first format of the device with that subtype and size;
    // false when it has none.
    bool SelectFormat(VideoSourceInfo* source, VideoSubtype subtype, int width, int height);
    // Records for that long into the file as a manual recording, stops,
    // empties the graph so that the file is let go, and gives the run
    // report's text with "\n" line ends. What the start reported goes to
    // `startMessages` when asked for.
    // `whileRecording` runs once the recording has started.
    std::string RecordFor(const std::wstring& path, DWORD ms, std::wstring* startMessages = nullptr,
                          const std::function<void()>& whileRecording = nullptr);
    // Stops the running graph, puts the sink where the renderer was (fed by
    // what fed the renderer) and runs the graph again: the sink gets the
    // frames the preview branch would have shown.
    void PreviewInto(devicetest::TestSink* sink);

    devicetest::SyntheticDevices devices;
    std::unique_ptr<VideoPlayer> player;
    HWND clippingWindow = nullptr;
};

}  // namespace enginetest
