// The test stand-ins registered in the prefix for as long as a test holds
// one of these: the "Color Control" effect, or the test compressor (twice,
// under one name).
#pragma once

#include "tools/standins/registration.h"

#include <gtest/gtest.h>

namespace testsupport {

class RegisteredColorControl {
public:
    RegisteredColorControl() { EXPECT_EQ(standins::RegisterColorControl(standins::StandInsDll()), S_OK); }
    ~RegisteredColorControl() { standins::UnregisterColorControl(); }
};

class RegisteredTestCompressor {
public:
    RegisteredTestCompressor() { EXPECT_EQ(standins::RegisterTestCompressor(standins::StandInsDll()), S_OK); }
    ~RegisteredTestCompressor() { standins::UnregisterTestCompressor(); }
};

}  // namespace testsupport
