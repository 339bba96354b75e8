// synthcam: adds, removes and lists synthetic capture devices.
//
//   synthcam add NAME PROFILE [pal|ntsc] [frames=N] [start-delay=MS] [drop-every=N]
//   synthcam remove NAME
//   synthcam pull NAME
//   synthcam remove-all
//   synthcam list
//   synthcam profiles
#include "tools/synthcam/profiles.h"
#include "tools/synthcam/registry.h"

#include <objbase.h>

#include <cstdio>
#include <string>

namespace {

int Usage()
{
    std::fwprintf(stderr,
                  L"usage: synthcam add NAME PROFILE [pal|ntsc] [frames=N] [start-delay=MS] [drop-every=N] | remove NAME | "
                  L"pull NAME | remove-all | list | profiles\n");
    return 2;
}

// "frames=N", "start-delay=MS" and "drop-every=N" after the signal; false for anything else.
bool ReadPacing(const std::wstring& argument, synthcam::DevicePacing& pacing)
{
    auto value = [&](const wchar_t* key, long& into) {
        std::wstring prefix = key;
        if (argument.rfind(prefix, 0) != 0)
            return false;
        into = wcstol(argument.c_str() + prefix.size(), nullptr, 10);
        return into > 0;
    };
    return value(L"frames=", pacing.frameLimit) || value(L"start-delay=", pacing.startDelayMs) ||
           value(L"drop-every=", pacing.dropEvery);
}

void PrintUtf8(const std::wstring& text)
{
    char buffer[1024];
    int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, buffer, sizeof(buffer), nullptr, nullptr);
    if (length > 0)
        std::fputs(buffer, stdout);
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc < 2)
        return Usage();
    std::wstring command = argv[1];
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    int result = 0;
    if (command == L"add" && argc >= 4 && argc <= 7) {
        synthcam::DevicePacing pacing;
        bool understood = true;
        for (int i = 5; i < argc; ++i)
            understood = understood && ReadPacing(argv[i], pacing);
        if (!understood) {
            CoUninitialize();
            return Usage();
        }
        HRESULT hr =
            synthcam::AddDevice(argv[2], argv[3], argc >= 5 ? argv[4] : L"ntsc", synthcam::DllBesideProgram(), pacing);
        if (FAILED(hr)) {
            std::fprintf(stderr, "synthcam: cannot add the device (0x%08lX)\n", static_cast<unsigned long>(hr));
            result = 1;
        }
    } else if (command == L"remove" && argc == 3) {
        HRESULT hr = synthcam::RemoveDevice(argv[2]);
        if (hr != S_OK) {
            std::fprintf(stderr, "synthcam: no such device\n");
            result = 1;
        }
    } else if (command == L"pull" && argc == 3) {
        HRESULT hr = synthcam::PullDevice(argv[2]);
        if (hr != S_OK) {
            std::fprintf(stderr, "synthcam: no such device\n");
            result = 1;
        }
    } else if (command == L"remove-all" && argc == 2) {
        synthcam::RemoveAllDevices();
    } else if (command == L"list" && argc == 2) {
        for (const auto& device : synthcam::ListDevices()) {
            PrintUtf8(device.name + L"\t" + device.profile + L"\t" + device.signal + L"\n");
        }
    } else if (command == L"profiles" && argc == 2) {
        for (const auto& profile : synthcam::AllProfiles())
            PrintUtf8(std::wstring(profile.name) + L"\n");
    } else {
        result = Usage();
    }
    CoUninitialize();
    return result;
}
