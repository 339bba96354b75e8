#include "device/graph_helpers.h"

#include "tools/synthcam/registry.h"

#include <windows.h>

namespace devicetest {

std::vector<std::wstring> DeviceNames()
{
    std::vector<std::wstring> names;
    ComPtr<ICreateDevEnum> devices;
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())))
        return names;
    ComPtr<IEnumMoniker> monikers;
    if (devices->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.Put(), 0) != S_OK)
        return names;
    ComPtr<IMoniker> moniker;
    while (monikers->Next(1, moniker.Put(), nullptr) == S_OK) {
        ComPtr<IPropertyBag> bag;
        if (FAILED(moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag, bag.PutVoid())))
            continue;
        VARIANT name;
        VariantInit(&name);
        if (SUCCEEDED(bag->Read(L"FriendlyName", &name, nullptr)) && name.vt == VT_BSTR)
            names.push_back(name.bstrVal);
        VariantClear(&name);
    }
    return names;
}

ComPtr<IBaseFilter> BindDevice(const std::wstring& wanted)
{
    ComPtr<ICreateDevEnum> devices;
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())))
        return {};
    ComPtr<IEnumMoniker> monikers;
    if (devices->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.Put(), 0) != S_OK)
        return {};
    ComPtr<IMoniker> moniker;
    while (monikers->Next(1, moniker.Put(), nullptr) == S_OK) {
        ComPtr<IPropertyBag> bag;
        if (FAILED(moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag, bag.PutVoid())))
            continue;
        VARIANT name;
        VariantInit(&name);
        bool match = SUCCEEDED(bag->Read(L"FriendlyName", &name, nullptr)) && name.vt == VT_BSTR &&
                     wanted == name.bstrVal;
        VariantClear(&name);
        if (!match)
            continue;
        ComPtr<IBaseFilter> filter;
        moniker->BindToObject(nullptr, nullptr, IID_IBaseFilter, filter.PutVoid());
        return filter;
    }
    return {};
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

ComPtr<IBaseFilter> CreateFilter(REFCLSID clsid)
{
    ComPtr<IBaseFilter> filter;
    CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter, filter.PutVoid());
    return filter;
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

bool SyntheticDevices::Remove(const std::wstring& name)
{
    return synthcam::RemoveDevice(name) == S_OK;
}

bool SyntheticDevices::Pull(const std::wstring& name)
{
    return synthcam::PullDevice(name) == S_OK;
}

bool RendererConnectsTo(REFCLSID rendererClass, const std::wstring& deviceName)
{
    ComPtr<IGraphBuilder> graph;
    ComPtr<ICaptureGraphBuilder2> builder;
    if (FAILED(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                graph.PutVoid())) ||
        FAILED(CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER, IID_ICaptureGraphBuilder2,
                                builder.PutVoid())))
        return false;
    builder->SetFiltergraph(graph.Get());
    ComPtr<IBaseFilter> device = BindDevice(deviceName);
    ComPtr<IBaseFilter> renderer = CreateFilter(rendererClass);
    if (!device || !renderer || FAILED(graph->AddFilter(device.Get(), L"Device")) ||
        FAILED(graph->AddFilter(renderer.Get(), L"Renderer")))
        return false;
    bool connected = SUCCEEDED(
        builder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video, device.Get(), nullptr, renderer.Get()));
    graph->RemoveFilter(renderer.Get());
    graph->RemoveFilter(device.Get());
    return connected;
}

}  // namespace devicetest
