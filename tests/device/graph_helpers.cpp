#include "device/graph_helpers.h"

#include <gtest/gtest.h>

namespace devicetest {

namespace {

// Walks the filters of a category with their friendly names until `visit`
// says it has found its one.
template <typename Visit>
void WalkCategory(REFCLSID category, Visit visit)
{
    ComPtr<ICreateDevEnum> devices;
    ComPtr<IEnumMoniker> monikers;
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())) ||
        devices->CreateClassEnumerator(category, monikers.Put(), 0) != S_OK)
        return;
    ComPtr<IMoniker> moniker;
    while (monikers->Next(1, moniker.Put(), nullptr) == S_OK) {
        ComPtr<IPropertyBag> bag;
        VARIANT name;
        VariantInit(&name);
        bool found = SUCCEEDED(moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag, bag.PutVoid())) &&
                     SUCCEEDED(bag->Read(L"FriendlyName", &name, nullptr)) && name.vt == VT_BSTR &&
                     visit(std::wstring(name.bstrVal), moniker.Get());
        VariantClear(&name);
        if (found)
            return;
    }
}

ComPtr<IPin> FirstPin(IBaseFilter* filter, PIN_DIRECTION wanted)
{
    ComPtr<IEnumPins> pins;
    ComPtr<IPin> pin;
    PIN_DIRECTION direction;
    if (SUCCEEDED(filter->EnumPins(pins.Put())))
        while (pins->Next(1, pin.Put(), nullptr) == S_OK)
            if (SUCCEEDED(pin->QueryDirection(&direction)) && direction == wanted)
                return pin;
    return {};
}

}  // namespace

std::vector<std::wstring> DeviceNames(REFCLSID category)
{
    std::vector<std::wstring> names;
    WalkCategory(category, [&](const std::wstring& name, IMoniker*) {
        names.push_back(name);
        return false;
    });
    return names;
}

ComPtr<IBaseFilter> BindDevice(const std::wstring& wanted)
{
    ComPtr<IBaseFilter> filter;
    WalkCategory(CLSID_VideoInputDeviceCategory, [&](const std::wstring& name, IMoniker* moniker) {
        if (name != wanted)
            return false;
        moniker->BindToObject(nullptr, nullptr, IID_IBaseFilter, filter.PutVoid());
        return true;
    });
    return filter;
}

ComPtr<IPin> FindPin(IBaseFilter* filter, const wchar_t* name)
{
    ComPtr<IEnumPins> pins;
    if (FAILED(filter->EnumPins(pins.Put())))
        return {};
    ComPtr<IPin> pin;
    while (pins->Next(1, pin.Put(), nullptr) == S_OK) {
        PIN_INFO info;
        if (SUCCEEDED(pin->QueryPinInfo(&info))) {
            if (info.pFilter)
                info.pFilter->Release();
            if (wcscmp(info.achName, name) == 0)
                return pin;
        }
    }
    return {};
}

std::string WorkFolder(const std::string& name)
{
    std::string folder = std::string("Z:") + MAVU_BINARY_DIR_UNIX + "/device-work";
    CreateDirectoryA(folder.c_str(), nullptr);
    folder += "/" + name;
    CreateDirectoryA(folder.c_str(), nullptr);
    return folder;
}

HRESULT SelectFormat(IBaseFilter* device, REFGUID subtype, int width, int height)
{
    ComPtr<IAMStreamConfig> config;
    HRESULT hr = device->QueryInterface(IID_IAMStreamConfig, config.PutVoid());
    if (FAILED(hr))
        return hr;
    int count = 0, size = 0;
    config->GetNumberOfCapabilities(&count, &size);
    for (int i = 0; i < count; ++i) {
        AM_MEDIA_TYPE* type = nullptr;
        VIDEO_STREAM_CONFIG_CAPS caps;
        if (config->GetStreamCaps(i, &type, reinterpret_cast<BYTE*>(&caps)) != S_OK)
            continue;
        const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type->pbFormat);
        bool match = type->subtype == subtype && info->bmiHeader.biWidth == width &&
                     std::abs(info->bmiHeader.biHeight) == height;
        if (match)
            hr = config->SetFormat(type);
        CoTaskMemFree(type->pbFormat);
        CoTaskMemFree(type);
        if (match)
            return hr;
    }
    return E_INVALIDARG;
}

ULONG ReferenceCount(IUnknown* object)
{
    object->AddRef();
    return object->Release();
}

HRESULT DeviceChain::Build(const std::wstring& deviceName, const std::vector<IBaseFilter*>& filters, REFGUID subtype,
                           int width, int height)
{
    HRESULT hr = CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder, graph.PutVoid());
    if (FAILED(hr))
        return hr;
    graph->QueryInterface(IID_IMediaControl, control.PutVoid());
    device = BindDevice(deviceName);
    if (!device)
        return E_FAIL;
    if (subtype != GUID_NULL && FAILED(hr = SelectFormat(device.Get(), subtype, width, height)))
        return hr;
    filters_ = filters;
    filters_.insert(filters_.begin(), device.Get());
    for (size_t i = 0; i < filters_.size(); ++i)
        if (FAILED(hr = graph->AddFilter(filters_[i], (L"Filter " + std::to_wstring(i)).c_str())))
            return hr;
    ComPtr<IPin> output = FindPin(device.Get(), L"Capture");
    for (IBaseFilter* filter : filters) {
        if (FAILED(hr = graph->ConnectDirect(output.Get(), FirstPin(filter, PINDIR_INPUT).Get(), nullptr)))
            return hr;
        output = FirstPin(filter, PINDIR_OUTPUT);
    }
    return S_OK;
}

void DeviceChain::RunFor(DWORD ms)
{
    ASSERT_TRUE(control && SUCCEEDED(control->Run()));
    Sleep(ms);
    EXPECT_TRUE(SUCCEEDED(control->Stop()));
}

void DeviceChain::TearDown()
{
    if (control)
        control->Stop();
    if (graph)
        for (IBaseFilter* filter : filters_)
            graph->RemoveFilter(filter);
    filters_.clear();
    control.Reset();
    graph.Reset();
}

SyntheticDevices::SyntheticDevices()
{
    synthcam::RemoveAllDevices();
}

SyntheticDevices::~SyntheticDevices()
{
    synthcam::RemoveAllDevices();
}

bool SyntheticDevices::Add(const std::wstring& name, const std::wstring& profile, const std::wstring& signal,
                           const synthcam::DevicePacing& pacing)
{
    return SUCCEEDED(synthcam::AddDevice(name, profile, signal, synthcam::DllBesideProgram(), pacing));
}

bool SyntheticDevices::Pull(const std::wstring& name)
{
    return synthcam::PullDevice(name) == S_OK;
}

bool RendererConnectsTo(REFCLSID rendererClass, const std::wstring& deviceName)
{
    DeviceChain chain;
    ComPtr<ICaptureGraphBuilder2> builder;
    ComPtr<IBaseFilter> renderer;
    if (FAILED(CoCreateInstance(rendererClass, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter, renderer.PutVoid())) ||
        chain.Build(deviceName, {}) != S_OK ||
        FAILED(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER, IID_ICaptureGraphBuilder2,
                                builder.PutVoid())) ||
        FAILED(chain.graph->AddFilter(renderer.Get(), L"Renderer")))
        return false;
    builder->SetFiltergraph(chain.graph.Get());
    bool connected = SUCCEEDED(
        builder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video, chain.device.Get(), nullptr, renderer.Get()));
    chain.graph->RemoveFilter(renderer.Get());
    return connected;
}

}  // namespace devicetest
