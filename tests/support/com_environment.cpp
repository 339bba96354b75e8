// Test programs run in the multithreaded COM apartment, as the program does.
#include <gtest/gtest.h>
#include <objbase.h>

namespace {

class ComEnvironment : public testing::Environment {
public:
    void SetUp() override { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    void TearDown() override { CoUninitialize(); }
};

const bool registered = [] {
    testing::AddGlobalTestEnvironment(new ComEnvironment);
    return true;
}();

}  // namespace
