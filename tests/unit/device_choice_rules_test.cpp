// The Select Input Device window's rules: rows, the Properties title, the default flag, the in-use mark, and OK.
#include "ui/device_choice_rules.h"

#include <gtest/gtest.h>

#include "device_records.h"

namespace {

using Devices = DeviceRecords;

// "row:index" for each entry, in order.
std::string Rows(const std::vector<DeviceRow>& rows)
{
    std::string text;
    for (const DeviceRow& row : rows)
        text += (text.empty() ? "" : " ") + std::to_string(row.row) + ":" + std::to_string(row.sourceIndex);
    return text;
}

TEST(DeviceChoiceRules, RowsSkipDisconnectedDevicesAndSplitIgnoredOnesOff)
{
    struct Case {
        const char* what;
        Devices devices;
        const char* deviceRows;
        const char* ignoredRows;
    };
    const Case cases[] = {
        {"none", {}, "", ""},
        {"ignored first", {{L"A", "I"}, {L"B", ""}, {L"C", ""}}, "0:1 1:2", "0:0"},
        {"disconnected in neither", {{L"A", "D"}, {L"B", "ID"}, {L"C", "I"}, {L"D", ""}}, "0:3", "0:2"},
        {"all ignored", {{L"A", "I"}, {L"B", "I"}}, "", "0:0 1:1"},
    };
    for (const Case& test : cases) {
        DeviceRowMaps maps = MapDeviceRows(test.devices.sources);
        EXPECT_EQ(Rows(maps.devices), test.deviceRows) << test.what;
        EXPECT_EQ(Rows(maps.ignored), test.ignoredRows) << test.what;
    }
}

TEST(DeviceChoiceRules, RowLookupsGiveNoneForNothingSelectedOrAMissingRow)
{
    Devices devices{{L"A", "I"}, {L"B", ""}, {L"C", ""}};
    DeviceRowMaps maps = MapDeviceRows(devices.sources);
    EXPECT_EQ(SourceAtRow(maps.devices, 1), 2u);
    EXPECT_EQ(SourceAtRow(maps.devices, -1), kNoSource);
    EXPECT_EQ(SourceAtRow(maps.devices, 2), kNoSource);
    EXPECT_EQ(SourceAtRow(maps.ignored, 0), 0u);
    EXPECT_EQ(RowOfSource(maps.devices, 2), 1);
    EXPECT_EQ(RowOfSource(maps.devices, 0), -1);
    EXPECT_EQ(RowOfSource(maps.devices, kNoSource), -1);
}

// The Properties title reads the device list at the row numbered like the
// device's index, so an ignored device ahead of it shifts the name.
TEST(DeviceChoiceRules, PropertiesTitleTakesTheRowNumberedLikeTheDeviceIndex)
{
    struct Case {
        Devices devices;
        std::vector<std::pair<uint32_t, const wchar_t*>> titles;  // by device index
    };
    const Case kCases[] = {
        {{{L"Sky Cam", ""}, {L"Side Cam", ""}}, {{0, L"Sky Cam Properties"}, {1, L"Side Cam Properties"}}},
        {{{L"Gone Cam", "I"}, {L"Sky Cam", ""}, {L"Side Cam", ""}}, {{1, L"Side Cam Properties"}, {2, L" Properties"}}},
        {{{L"Old Cam", "D"}, {L"Sky Cam", ""}}, {{1, L" Properties"}, {kNoSource, L" Properties"}}},
    };
    for (const Case& c : kCases) {
        DeviceRowMaps maps = MapDeviceRows(c.devices.sources);
        for (auto [index, title] : c.titles)
            EXPECT_EQ(DeviceFormatTitleAtRow(c.devices.sources, maps, index), title) << index;
    }
}

TEST(DeviceChoiceRules, CheckingDefaultMakesTheOnlyDefaultAndClearingTakesOnlyThatOne)
{
    Devices devices{{L"A", "F"}, {L"B", ""}, {L"C", "F"}};
    SetDefaultDevice(devices.sources, 1, true);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isDefault), "010");
    SetDefaultDevice(devices.sources, 2, false);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isDefault), "010");
    SetDefaultDevice(devices.sources, 1, false);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isDefault), "000");
    SetDefaultDevice(devices.sources, 7, true);
    SetDefaultDevice(devices.sources, kNoSource, true);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isDefault), "000");
}

TEST(DeviceChoiceRules, OnlyTheCurrentDeviceKeepsTheInUseMark)
{
    Devices devices{{L"A", "A"}, {L"B", ""}, {L"C", "IA"}, {L"D", "M"}};
    MarkOnlyCurrentActive(devices.sources, 1);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isActive), "0100");
    // A recording device is marked as recording, not as in use.
    MarkOnlyCurrentActive(devices.sources, 3);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isActive), "0000");
    MarkOnlyCurrentActive(devices.sources, kNoSource);
    EXPECT_EQ(devices.Flags(&VideoSourceInfo::isActive), "0000");
}

TEST(DeviceChoiceRules, OkWritesEveryIgnoredNameAndTheDefaultButNeverClearsTheDefault)
{
    struct Case {
        const char* what;
        Devices devices;
        const wchar_t* oldDefault;
        std::vector<std::wstring> oldExcluded;
        const wchar_t* defaultName;
        std::vector<std::wstring> excluded;
    };
    const Case cases[] = {
        {"nothing flagged keeps the old default", {{L"A", ""}, {L"B", ""}}, L"A", {L"Old"}, L"A", {}},
        {"default and ignored", {{L"A", "I"}, {L"B", "F"}}, L"", {}, L"B", {L"A"}},
        {"disconnected count too", {{L"A", "ID"}, {L"B", "FD"}, {L"C", "I"}}, L"C", {}, L"B", {L"A", L"C"}},
        {"last default wins", {{L"A", "F"}, {L"B", "F"}}, L"", {}, L"B", {}},
        {"two of one name", {{L"Cam", "I"}, {L"Cam", "I"}}, L"", {}, L"", {L"Cam", L"Cam"}},
    };
    for (const Case& test : cases) {
        Options record{};
        wcscpy(record.DefaultVideoSource, test.oldDefault);
        record.ExcludedVideoSource = test.oldExcluded;
        CollectDeviceChoice(test.devices.sources, record);
        EXPECT_STREQ(record.DefaultVideoSource, test.defaultName) << test.what;
        EXPECT_EQ(record.ExcludedVideoSource, test.excluded) << test.what;
    }
}

}  // namespace
