// Every scenario starts from a prefix without synthetic devices and with the
// platform's own VMR7: a test program that ended early may have left a
// device or the VMR7 stand-in registered.
#include <gtest/gtest.h>
#include <objbase.h>

#include "tools/synthcam/registry.h"
#include "tools/vmr7standin/registration.h"

namespace {

class CleanDevices : public testing::Environment {
public:
    void SetUp() override
    {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        synthcam::RemoveAllDevices();
        vmr7standin::RestorePlatformVmr7();
    }
};

const bool registered = [] {
    testing::AddGlobalTestEnvironment(new CleanDevices);
    return true;
}();

}  // namespace
