// Every scenario starts from a prefix without synthetic devices: a test
// program that ended early may have left one registered.
#include <gtest/gtest.h>
#include <objbase.h>

#include "tools/synthcam/registry.h"

namespace {

class CleanDevices : public testing::Environment {
public:
    void SetUp() override
    {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        synthcam::RemoveAllDevices();
    }
};

const bool registered = [] {
    testing::AddGlobalTestEnvironment(new CleanDevices);
    return true;
}();

}  // namespace
