// The system device enumerator lists exactly the synthetic devices added,
// by name, and forgets one that is removed (an unplug).
#include "device/graph_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace devicetest;

namespace {

std::vector<std::wstring> Sorted(std::vector<std::wstring> names)
{
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

TEST(DeviceList, ListsExactlyTheAddedDevicesAndDropsARemovedOne)
{
    SyntheticDevices devices;
    EXPECT_TRUE(DeviceNames().empty());

    ASSERT_TRUE(devices.Add(L"Alpha Cam", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Kamera \u00c4", L"webcam"));
    ASSERT_TRUE(devices.Add(L"Twin Cam", L"bare"));
    ASSERT_TRUE(devices.Add(L"Twin Cam", L"small"));
    EXPECT_EQ(Sorted(DeviceNames()),
              (std::vector<std::wstring>{L"Alpha Cam", L"Kamera \u00c4", L"Twin Cam", L"Twin Cam"}));

    ASSERT_TRUE(devices.Remove(L"Alpha Cam"));
    ASSERT_TRUE(devices.Remove(L"Twin Cam"));
    EXPECT_EQ(Sorted(DeviceNames()), (std::vector<std::wstring>{L"Kamera \u00c4", L"Twin Cam"}));
    EXPECT_FALSE(devices.Remove(L"Alpha Cam"));

    // Plugged back in, it is listed again and can be bound.
    ASSERT_TRUE(devices.Add(L"Alpha Cam", L"webcam"));
    EXPECT_TRUE(BindDevice(L"Alpha Cam"));
}
