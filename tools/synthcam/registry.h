// Adding and removing synthetic devices: each is an instance of the
// synthetic camera class in the video input device category, known by its
// friendly name and carrying its profile (and a grabber's signal standard)
// in its property bag.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace synthcam {

struct DeviceEntry {
    std::wstring name;
    std::wstring profile;
    std::wstring signal;
    std::wstring instanceKey;
    // Unique to one plugging in: the filters made from it hear of its pull
    // by this token.
    std::wstring plug;
};

// How a device streams, beyond its profile: a run that delivers only so
// many frames (a count a test can rely on), a start that takes its time
// as some USB cameras' do, and frames the camera itself loses now and then.
struct DevicePacing {
    long frameLimit = 0;  // frames each run delivers; 0 for no limit
    long startDelayMs = 0;  // added to the start of each run
    long dropEvery = 0;  // every Nth frame slot is dropped and counted; 0 for none
};

// Registers an in-process COM class served by the DLL at that path, and
// takes it away again.
HRESULT RegisterInprocClass(REFCLSID clsid, const wchar_t* title, const std::wstring& dllPath);
void UnregisterInprocClass(REFCLSID clsid);
// Registers the camera's class with the DLL at that path (done by AddDevice
// too).
HRESULT RegisterCameraClass(const std::wstring& dllPath);
// The camera's DLL beside the running program.
std::wstring DllBesideProgram();
// Adds a device; signal is "pal" or "ntsc" (only grabbers look at it).
HRESULT AddDevice(const std::wstring& name, const std::wstring& profile, const std::wstring& signal,
                  const std::wstring& dllPath, const DevicePacing& pacing = {});
// Removes the first device of that name from the list; S_FALSE when none
// has it. A filter made from it goes on streaming.
HRESULT RemoveDevice(const std::wstring& name);
// Pulls the first device of that name as a cable would: every filter made
// from it, in any process, stops delivering and tells its graph that the
// device is lost, and the device leaves the list. Adding it again is
// plugging it back. S_FALSE when no device has the name.
HRESULT PullDevice(const std::wstring& name);
// The name of the event that tells the filters of one plugging in that the
// device was pulled.
std::wstring PulledEventName(const std::wstring& plug);
void RemoveAllDevices();
std::vector<DeviceEntry> ListDevices();

// A device's picture property values as its filter last had them, for
// tests in another process: the filter made from a plugging in writes each
// value there when it is loaded and whenever it is set. A new filter of the
// same plugging in starts again from the profile's defaults, as a camera
// opened anew does.
void PublishPropertyValue(const std::wstring& plug, long property, long value);
// The value of the first device of that name; false when none is written.
bool PublishedPropertyValue(const std::wstring& name, long property, long* value);

}  // namespace synthcam
