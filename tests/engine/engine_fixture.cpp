#include "engine/engine_fixture.h"

#include "base/com_ptr.h"
#include "persistence/options.h"
#include "support/report_lines.h"
#include "tools/standins/registration.h"
#include "video/capture_settings.h"
#include "video/codecs.h"
#include "video/device_list.h"
#include "video/graph_pins.h"
#include "video/video_format.h"

#include "e2e/harness.h"

#include <algorithm>
#include <regex>

namespace enginetest {
namespace {

std::wstring FilterName(IBaseFilter* filter)
{
    // The platform's capture graph builder numbers the Smart Tee it adds.
    CLSID clsid = GUID_NULL;
    if (SUCCEEDED(filter->GetClassID(&clsid)) && clsid == CLSID_SmartTee)
        return L"Smart Tee";
    FILTER_INFO info{};
    if (FAILED(filter->QueryFilterInfo(&info)))
        return L"?";
    if (info.pGraph)
        info.pGraph->Release();
    return info.achName;
}

std::wstring PinLabel(IPin* pin)
{
    PIN_INFO info{};
    if (FAILED(pin->QueryPinInfo(&info)))
        return L"?";
    std::wstring label = (info.pFilter ? FilterName(info.pFilter) : L"?") + L"." + info.achName;
    if (info.pFilter)
        info.pFilter->Release();
    return label;
}

}  // namespace

void EngineTest::SetUp()
{
    SetOptionDefaults(options, RECT{0, 0, 1920, 1080});
    ClearRuntimeSwitches();
    colorInCaptureFile = 0;
    displayOffWhileRecording = 0;
    removeFiltersWhileRecording = 0;
    rendererChoice = 1;  // VMR9: this platform's EVR takes no YUY2
    // The platform as it is: a stand-in left behind by an earlier run that
    // ended early is taken away.
    standins::UnregisterColorControl();
    standins::UnregisterTestCompressor();
    clippingWindow = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 640, 480, nullptr, nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
    RemakePlayer();
    // Each test starts from what it reports itself.
    testsupport::TakeReportedLines();
}

void EngineTest::RemakePlayer()
{
    player.reset();
    // Each player's construction lists the codecs anew.
    FreeCodecLists();
    player = std::make_unique<VideoPlayer>();
    player->clippingWindow = clippingWindow;
}

void EngineTest::TearDown()
{
    if (player && player->mediaControl)
        player->mediaControl->Stop();
    player.reset();
    // Each player's construction lists the codecs anew.
    FreeCodecLists();
    for (VideoSourceInfo* source : videoSources)
        DestroyVideoSource(source);
    videoSources.clear();
    unusableDeviceNames.clear();
    currentSourceIndex = kNoSource;
    DestroyWindow(clippingWindow);
    testsupport::TakeReportedLines();
}

void EngineTest::ScanDevices()
{
    ASSERT_TRUE(SUCCEEDED(GetAttachedVideoDeviceList()));
}

VideoSourceInfo* EngineTest::UseOneCamera(const wchar_t* profile, const synthcam::DevicePacing& pacing,
                                          const wchar_t* name)
{
    if (!devices.Add(name, profile, L"ntsc", pacing))
        return nullptr;
    ScanDevices();
    if (videoSources.size() != 1)
        return nullptr;
    currentSourceIndex = 0;
    return videoSources[0];
}

VideoSourceInfo* EngineTest::Source(const std::wstring& name)
{
    for (VideoSourceInfo* source : videoSources)
        if (name == source->name)
            return source;
    return nullptr;
}

std::wstring EngineTest::TakeMessages()
{
    std::wstring all;
    for (const testsupport::ReportedLine& line : testsupport::TakeReportedLines())
        all += line.text;
    return all;
}

std::vector<std::string> EngineTest::Connections()
{
    std::vector<std::string> connections;
    ComPtr<IEnumFilters> filters;
    if (!player->graph || FAILED(player->graph->EnumFilters(filters.Put())))
        return connections;
    ComPtr<IBaseFilter> filter;
    while (filters->Next(1, filter.Put(), nullptr) == S_OK) {
        ComPtr<IEnumPins> pins;
        filter->EnumPins(pins.Put());
        ComPtr<IPin> pin;
        while (pins->Next(1, pin.Put(), nullptr) == S_OK) {
            PIN_DIRECTION direction;
            pin->QueryDirection(&direction);
            ComPtr<IPin> peer;
            if (direction == PINDIR_OUTPUT && pin->ConnectedTo(peer.Put()) == S_OK) {
                // The filters' and pins' names in these graphs are ASCII.
                std::wstring connection = PinLabel(pin.Get()) + L" -> " + PinLabel(peer.Get());
                connections.emplace_back(connection.begin(), connection.end());
            }
        }
    }
    std::sort(connections.begin(), connections.end());
    return connections;
}

bool EngineTest::SelectFormat(VideoSourceInfo* source, VideoSubtype subtype, int width, int height)
{
    for (uint32_t group = 0; group < source->frameRates.size(); ++group) {
        const std::vector<VideoFormat*>& formats = source->frameRates[group]->formats;
        for (uint32_t index = 0; index < formats.size(); ++index) {
            const VideoFormat* format = formats[index];
            if (format->subtype == subtype && format->width == width && std::abs(format->height) == height) {
                source->currentFrameRateIndex = group;
                source->frameRates[group]->currentFormatIndex = index;
                return true;
            }
        }
    }
    return false;
}

std::string EngineTest::RecordFor(const std::wstring& path, DWORD ms, std::wstring* startMessages,
                                  const std::function<void()>& whileRecording)
{
    std::string narrowPath(path.begin(), path.end());
    std::string report = narrowPath.substr(0, narrowPath.rfind('.')) + ".txt";
    DeleteFileA(narrowPath.c_str());
    DeleteFileA(report.c_str());
    TakeMessages();
    HRESULT started = player->StartCamera(false, path.c_str());
    std::wstring messages = TakeMessages();
    if (startMessages)
        *startMessages = messages;
    EXPECT_EQ(started, S_OK) << testing::PrintToString(messages);
    if (FAILED(started))
        return {};
    if (whileRecording)
        whileRecording();
    Sleep(ms);
    CurrentSource()->isManualRecording = 1;
    EXPECT_EQ(player->StopCamera(true, path.c_str(), RecordingNotes{}), S_OK);
    CurrentSource()->isManualRecording = 0;
    EXPECT_NE(TakeMessages().find(L"Video file:  " + path + L"\r\n"), std::wstring::npos);
    // Emptying the graph lets the file go.
    player->RemoveGraphFilters();
    // CR LF lines through a text-mode stream come out as CR CR LF.
    std::string text = ReadFileBytes(std::wstring(report.begin(), report.end()));
    return std::regex_replace(text, std::regex("\r\r\n"), "\n");
}

void EngineTest::PreviewInto(devicetest::TestSink* sink)
{
    player->mediaControl->Stop();
    ComPtr<IPin> rendererInput(GetFilterPin(player->currentRenderer, PINDIR_INPUT, nullptr));
    ComPtr<IPin> feeding;
    ASSERT_TRUE(rendererInput);
    ASSERT_EQ(rendererInput->ConnectedTo(feeding.Put()), S_OK);
    player->graph->Disconnect(feeding.Get());
    player->graph->Disconnect(rendererInput.Get());
    ASSERT_EQ(player->graph->AddFilter(sink, L"Test sink"), S_OK);
    ASSERT_EQ(player->graph->ConnectDirect(feeding.Get(), devicetest::FindPin(sink, L"In").Get(), nullptr), S_OK);
    // The sink goes with the graph's filters at the next start.
    ASSERT_EQ(player->mediaControl->Run(), S_OK);
}

}  // namespace enginetest
