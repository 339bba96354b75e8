// Graph-building conveniences for the device tests: synthetic devices by
// name, pins by name, and a folder for recorded files that Unix tools can
// read.
#pragma once

#include "base/com_ptr.h"
#include "base/platform_guids.h"
#include "tools/synthcam/registry.h"

#include <dshow.h>

#include <string>
#include <vector>

namespace devicetest {

// Friendly names of the filters of a category (the video input devices
// unless told), as the system device enumerator lists them.
std::vector<std::wstring> DeviceNames(REFCLSID category = CLSID_VideoInputDeviceCategory);
// The capture filter of the first device of that name.
ComPtr<IBaseFilter> BindDevice(const std::wstring& name);
ComPtr<IPin> FindPin(IBaseFilter* filter, const wchar_t* name);
// A fresh folder in the build tree for one test's files, as "Z:/..." path.
std::string WorkFolder(const std::string& name);
// Sets the capture pin's format to the device's listed format of that
// subtype and size.
HRESULT SelectFormat(IBaseFilter* device, REFGUID subtype, int width, int height);
// Asks the platform whether that renderer takes the device's preview in its
// present format: a capture graph renders the stream into it, or can't.
bool RendererConnectsTo(REFCLSID renderer, const std::wstring& deviceName);
// The reference count an object has, read by adding one and dropping it.
ULONG ReferenceCount(IUnknown* object);

// A device's capture pin joined straight through a row of filters, each
// one's first output into the next one's first input. The filters stay the
// caller's; they leave the graph at TearDown or with the chain.
class DeviceChain {
public:
    ~DeviceChain() { TearDown(); }
    // Adds the device and every filter, gives the device the format of that
    // subtype and size unless the subtype is GUID_NULL, and joins them in
    // order; the first failure's result.
    HRESULT Build(const std::wstring& deviceName, const std::vector<IBaseFilter*>& filters, REFGUID subtype = GUID_NULL,
                  int width = 640, int height = 480);
    // Runs the graph for that long and stops it.
    void RunFor(DWORD ms);
    // Stops the graph, takes every filter out and lets the graph go.
    void TearDown();

    ComPtr<IGraphBuilder> graph;
    ComPtr<IMediaControl> control;
    ComPtr<IBaseFilter> device;

private:
    std::vector<IBaseFilter*> filters_;
};

// Adds synthetic devices for a test and removes every one of them after.
class SyntheticDevices {
public:
    SyntheticDevices();
    ~SyntheticDevices();
    bool Add(const std::wstring& name, const std::wstring& profile, const std::wstring& signal = L"ntsc",
             const synthcam::DevicePacing& pacing = {});
    // As a cable pulled: the device's filters stop and it leaves the list.
    // Add it again to plug it back.
    bool Pull(const std::wstring& name);
};

}  // namespace devicetest
