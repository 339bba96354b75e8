// The Device Properties window's rules: the frame-rate list and selection, slider scales, row layout, and Cancel.
#include <gtest/gtest.h>

#include <algorithm>

#include "device_records.h"
#include "ui/device_format_rules.h"
#include "ui/device_format_snapshot.h"

TEST(DeviceFormatRules, OnlyEnabledGroupsAreListedInTheirOrder)
{
    DeviceRecords analog;
    analog.Group(30, {}, false).Group(25, {}).Group(15, {});
    EXPECT_EQ(ListedFrameRateGroups(analog.First()), (std::vector<uint32_t>{1, 2}));
    DeviceRecords none;
    EXPECT_TRUE(ListedFrameRateGroups(none.First()).empty());
}

TEST(DeviceFormatRules, TheCurrentGroupStaysSelectedOnItsRowElseTheFirstListed)
{
    const std::vector<uint32_t> listed{1, 2};
    struct Case {
        uint32_t current;
        uint32_t group;
        int row;
    };
    const Case cases[] = {
        {2, 2, 1},
        // A disabled group gives way to the first one listed.
        {0, 1, 0},
        // So does an index beyond the groups.
        {7, 1, 0},
    };
    for (const Case& c : cases) {
        FrameRateSelection selection = ResolveFrameRateSelection(listed, c.current);
        EXPECT_EQ(selection.groupIndex, c.group) << c.current;
        EXPECT_EQ(selection.row, c.row) << c.current;
    }
    FrameRateSelection empty = ResolveFrameRateSelection({}, 3);
    EXPECT_EQ(empty.groupIndex, 0u);
    EXPECT_EQ(empty.row, -1);
}

TEST(DeviceFormatRules, SliderTicksFallEveryTenthOfTheRangeOrEveryUnit)
{
    EXPECT_EQ(SliderTickFrequency(0, 255), 25);
    EXPECT_EQ(SliderTickFrequency(-64, 64), 12);
    EXPECT_EQ(SliderTickFrequency(-180, 180), 36);
    EXPECT_EQ(SliderTickFrequency(0, 7), 1);
    EXPECT_EQ(SliderTickFrequency(5, 5), 1);
}

TEST(DeviceFormatRules, PropertyRowsCloseUpFiftyApartAndTheButtonsGroupsAndWindowEndUnderThem)
{
    const struct {
        const char* what;
        bool shown[kPropertyRowCount];
        int slot[kPropertyRowCount];  // -1: no row
        int rows;
    } cases[] = {
        {"all", {true, true, true, true, true, true}, {0, 1, 2, 3, 4, 5}, 6},
        {"a grabber: no sharpness and no gain", {true, true, true, true, false, false}, {0, 1, 2, 3, -1, -1}, 4},
        {"hue and gain only", {false, false, true, false, false, true}, {-1, -1, 0, -1, -1, 1}, 2},
        {"none", {}, {-1, -1, -1, -1, -1, -1}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        DeviceFormatLayout layout = LayOutDeviceFormatWindow(c.shown);
        for (int row = 0; row < kPropertyRowCount; ++row)
            EXPECT_EQ(layout.propertyTop[row], c.slot[row] < 0 ? -1 : kFirstPropertyTop + c.slot[row] * 50);
        // The button right under the last row, the group box just under the button.
        EXPECT_GT(layout.defaultsButtonTop, kFirstPropertyTop + (c.rows - 1) * 50 + 45);
        EXPECT_LT(layout.defaultsButtonTop, kFirstPropertyTop + (c.rows - 1) * 50 + 60);
        EXPECT_GT(kGroupTop + layout.propertiesGroupHeight, layout.defaultsButtonTop + 20);
        EXPECT_LT(kGroupTop + layout.propertiesGroupHeight, layout.defaultsButtonTop + 60);
        // The buttons go under the taller group and the window ends under
        // them; the frame-size list ends inside the media group.
        int groupsBottom = kGroupTop + std::max(layout.mediaGroupHeight, layout.propertiesGroupHeight);
        EXPECT_GT(layout.saveBoxTop, groupsBottom);
        EXPECT_GT(layout.buttonsTop, layout.saveBoxTop + 24);
        EXPECT_GT(layout.clientHeight, layout.buttonsTop + 30);
        EXPECT_GT(kGroupTop + layout.mediaGroupHeight, kMediaContentBottom);
    }
}

TEST(DeviceFormatSnapshot, CancelPutsBackFormatStandardAndPropertiesButNotAutoDetectAndOnlyOnItsDevice)
{
    DeviceRecords grabber;
    grabber.Group(30, {{720, 480}, {640, 480}, {320, 240}}).Group(25, {{720, 576}, {640, 480}}, false);
    VideoSourceInfo& source = grabber.First();
    source.currentFrameRateIndex = 0;
    grabber.groups[0]->currentFormatIndex = 2;
    source.deviceStandard = StandardNTSC;
    source.brightness = {1, 128, 0, 255, 1, 128};
    source.savedSubtype = SubtypeYUY2;
    source.autoDetect = 1;
    DeviceFormatSnapshot snapshot = TakeDeviceFormatSnapshot(source, 4, 100, 200);

    // PAL chosen, brightness moved, auto-detect cleared, the window moved.
    source.currentFrameRateIndex = 1;
    grabber.groups[0]->currentFormatIndex = 0;
    grabber.groups[1]->currentFormatIndex = 1;
    source.deviceStandard = StandardPAL;
    source.brightness.value = 30;
    source.savedSubtype = SubtypeRGB24;
    source.autoDetect = 0;
    int32_t left = 5, top = 6;

    // No snapshot taken, or one of another device: nothing is put back.
    EXPECT_FALSE(RestoreDeviceFormatSnapshot(DeviceFormatSnapshot{}, source, 0, left, top));
    EXPECT_FALSE(RestoreDeviceFormatSnapshot(snapshot, source, 3, left, top));
    EXPECT_EQ(source.brightness.value, 30);
    EXPECT_EQ(left, 5);

    ASSERT_TRUE(RestoreDeviceFormatSnapshot(snapshot, source, 4, left, top));
    EXPECT_EQ(source.currentFrameRateIndex, 0u);
    EXPECT_EQ(grabber.groups[0]->currentFormatIndex, 2u);
    // Only the selected group's format is part of it.
    EXPECT_EQ(grabber.groups[1]->currentFormatIndex, 1u);
    EXPECT_EQ(source.deviceStandard, StandardNTSC);
    EXPECT_EQ(source.brightness.value, 128);
    EXPECT_EQ(source.savedSubtype, SubtypeYUY2);
    EXPECT_EQ(source.autoDetect, 0);
    EXPECT_EQ(left, 100);
    EXPECT_EQ(top, 200);
}
