// standins: registers the test stand-ins in the prefix, or takes them away.
//
//   standins add color|codec
//   standins remove color|codec
#include "tools/standins/registration.h"

#include <objbase.h>

#include <cstdio>
#include <string>

int wmain(int argc, wchar_t** argv)
{
    if (argc != 3) {
        std::fwprintf(stderr, L"usage: standins add|remove color|codec\n");
        return 2;
    }
    std::wstring command = argv[1], which = argv[2];
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    int result = 0;
    if (command == L"add" && which == L"color") {
        result = FAILED(standins::RegisterColorControl(standins::StandInsDll())) ? 1 : 0;
    } else if (command == L"add" && which == L"codec") {
        result = FAILED(standins::RegisterTestCompressor(standins::StandInsDll())) ? 1 : 0;
    } else if (command == L"remove" && which == L"color") {
        standins::UnregisterColorControl();
    } else if (command == L"remove" && which == L"codec") {
        standins::UnregisterTestCompressor();
    } else {
        std::fwprintf(stderr, L"usage: standins add|remove color|codec\n");
        result = 2;
    }
    CoUninitialize();
    return result;
}
