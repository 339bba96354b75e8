// Registering the test stand-ins in a test prefix, and taking them away:
// the "Color Control" effect in the DMO video effect category, and the test
// compressor twice, under one name, in the video compressor category. The
// product never depends on either.
#pragma once

#include <windows.h>

#include <string>

namespace standins {

// The DLL that serves both, beside the running program.
std::wstring StandInsDll();

HRESULT RegisterColorControl(const std::wstring& dllPath);
void UnregisterColorControl();

HRESULT RegisterTestCompressor(const std::wstring& dllPath);
void UnregisterTestCompressor();

}  // namespace standins
