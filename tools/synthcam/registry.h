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
};

// Registers an in-process COM class served by the DLL at that path, and
// takes it away again.
HRESULT RegisterInprocClass(REFCLSID clsid, const wchar_t* title, const std::wstring& dllPath);
void UnregisterInprocClass(REFCLSID clsid);
// Registers the camera's class with the DLL at that path (done by AddDevice
// too).
HRESULT RegisterCameraClass(const std::wstring& dllPath);
// A file in the running program's folder.
std::wstring FileBesideProgram(const wchar_t* fileName);
// The camera's DLL beside the running program.
std::wstring DllBesideProgram();
// Adds a device; signal is "pal" or "ntsc" (only grabbers look at it).
HRESULT AddDevice(const std::wstring& name, const std::wstring& profile, const std::wstring& signal,
                  const std::wstring& dllPath);
// Removes the first device of that name; S_FALSE when none has it.
HRESULT RemoveDevice(const std::wstring& name);
void RemoveAllDevices();
std::vector<DeviceEntry> ListDevices();

}  // namespace synthcam
