#include "engine/engine_fixture.h"

#include "base/com_ptr.h"
#include "persistence/options.h"
#include "support/report_lines.h"
#include "video/capture_settings.h"
#include "video/device_list.h"
#include "video/video_format.h"

#include <algorithm>

namespace enginetest {
namespace {

std::string Utf8(const std::wstring& text)
{
    int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<size_t>(size > 0 ? size - 1 : 0), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, result.data(), size, nullptr, nullptr);
    return result;
}

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
    rendererChoice = 1;  // VMR9: this platform's EVR takes no YUY2
    testsupport::TakeReportedLines();
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"EngineTestClipping";
    RegisterClassW(&windowClass);
    clippingWindow = CreateWindowW(L"EngineTestClipping", L"", WS_OVERLAPPEDWINDOW, 0, 0, 640, 480, nullptr, nullptr,
                                   windowClass.hInstance, nullptr);
    player = std::make_unique<VideoPlayer>();
    player->clippingWindow = clippingWindow;
}

void EngineTest::TearDown()
{
    if (player && player->mediaControl)
        player->mediaControl->Stop();
    player.reset();
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
            if (direction == PINDIR_OUTPUT && pin->ConnectedTo(peer.Put()) == S_OK)
                connections.push_back(Utf8(PinLabel(pin.Get()) + L" -> " + PinLabel(peer.Get())));
        }
    }
    std::sort(connections.begin(), connections.end());
    return connections;
}

}  // namespace enginetest
