// Registering the stand-in under VMR7's class id in a test prefix, and
// giving the platform's own VMR7 back. The registry's InprocServer32 value
// decides which DLL CoCreateInstance loads; the value the stand-in replaced
// is kept beside it, so that a test that ended early can still be undone.
#pragma once

#include <windows.h>

#include <string>

namespace vmr7standin {

// The DLL beside the running program.
std::wstring StandInBesideProgram();
// Points VMR7's class id at the stand-in DLL at that path.
HRESULT InstallStandIn(const std::wstring& dllPath);
// Puts the replaced registration back; nothing when the stand-in isn't in.
void RestorePlatformVmr7();

// The stand-in for the life of the object.
class StandInRegistration {
public:
    StandInRegistration() { installed_ = SUCCEEDED(InstallStandIn(StandInBesideProgram())); }
    ~StandInRegistration() { RestorePlatformVmr7(); }
    StandInRegistration(const StandInRegistration&) = delete;
    StandInRegistration& operator=(const StandInRegistration&) = delete;
    bool Installed() const { return installed_; }

private:
    bool installed_ = false;
};

}  // namespace vmr7standin
