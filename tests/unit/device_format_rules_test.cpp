// The Device Properties window's rules: the frame-rate list and selection, slider scales, row layout, and Cancel.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "ui/device_format_rules.h"
#include "ui/device_format_snapshot.h"

namespace {

// A device with groups of the given rates, enabled or not, each with three
// formats.
struct Device {
    VideoSourceInfo source{};
    std::vector<std::unique_ptr<VideoFormatsByFrameRate>> groups;

    Device(std::initializer_list<std::pair<uint32_t, bool>> rates)
    {
        for (auto [rate, enabled] : rates) {
            auto group = std::make_unique<VideoFormatsByFrameRate>();
            group->frameRate = rate;
            group->enabled = enabled ? 1 : 0;
            group->formats = {nullptr, nullptr, nullptr};
            source.frameRates.push_back(group.get());
            groups.push_back(std::move(group));
        }
    }
};

}  // namespace

TEST(DeviceFormatRules, OnlyEnabledGroupsAreListedInTheirOrder)
{
    Device analog{{30, false}, {25, true}, {15, true}};
    EXPECT_EQ(ListedFrameRateGroups(analog.source), (std::vector<uint32_t>{1, 2}));
    Device none{};
    EXPECT_TRUE(ListedFrameRateGroups(none.source).empty());
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
        {1, 1, 0},
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
    EXPECT_EQ(SliderTickFrequency(0, 10), 1);
    EXPECT_EQ(SliderTickFrequency(5, 5), 1);
}

TEST(DeviceFormatRules, PropertyRowsStandFiftyApartWithTheButtonUnderTheLast)
{
    const bool all[kPropertyRowCount] = {true, true, true, true, true, true};
    DeviceFormatLayout full = LayOutDeviceFormatWindow(all);
    for (int row = 0; row < kPropertyRowCount; ++row)
        EXPECT_EQ(full.propertyTop[row], kFirstPropertyTop + row * kPropertyRowSpacing);
    EXPECT_GT(full.defaultsButtonTop, full.propertyTop[5] + 45);

    // A grabber: no sharpness and no gain.
    const bool grabber[kPropertyRowCount] = {true, true, true, true, false, false};
    DeviceFormatLayout four = LayOutDeviceFormatWindow(grabber);
    EXPECT_EQ(four.propertyTop[3], kFirstPropertyTop + 3 * kPropertyRowSpacing);
    EXPECT_EQ(four.propertyTop[4], -1);
    EXPECT_EQ(four.propertyTop[5], -1);
    EXPECT_EQ(four.defaultsButtonTop, full.defaultsButtonTop - 2 * kPropertyRowSpacing);
    EXPECT_EQ(four.propertiesGroupHeight, full.propertiesGroupHeight - 2 * kPropertyRowSpacing);

    // Rows close up over the gaps: Hue and Gain only.
    const bool two[kPropertyRowCount] = {false, false, true, false, false, true};
    DeviceFormatLayout gaps = LayOutDeviceFormatWindow(two);
    EXPECT_EQ(gaps.propertyTop[2], kFirstPropertyTop);
    EXPECT_EQ(gaps.propertyTop[5], kFirstPropertyTop + kPropertyRowSpacing);
}

TEST(DeviceFormatRules, WithoutPropertiesOnlyTheButtonStandsInTheGroup)
{
    const bool none[kPropertyRowCount] = {};
    DeviceFormatLayout layout = LayOutDeviceFormatWindow(none);
    for (int top : layout.propertyTop)
        EXPECT_EQ(top, -1);
    EXPECT_LT(layout.defaultsButtonTop, kFirstPropertyTop + kPropertyRowSpacing);
    // The group box closes just under the button.
    EXPECT_LT(kGroupTop + layout.propertiesGroupHeight, layout.defaultsButtonTop + 60);
}

TEST(DeviceFormatRules, TheButtonsGoUnderTheTallerGroupAndTheWindowEndsUnderThem)
{
    const bool all[kPropertyRowCount] = {true, true, true, true, true, true};
    DeviceFormatLayout layout = LayOutDeviceFormatWindow(all);
    int groupsBottom = kGroupTop + std::max(layout.mediaGroupHeight, layout.propertiesGroupHeight);
    EXPECT_GT(layout.saveBoxTop, groupsBottom);
    EXPECT_GT(layout.buttonsTop, layout.saveBoxTop + 24);
    EXPECT_GT(layout.clientHeight, layout.buttonsTop + 30);
    // The frame-size list ends inside the media group.
    EXPECT_GT(kGroupTop + layout.mediaGroupHeight, kMediaContentBottom);
}

TEST(DeviceFormatSnapshot, CancelPutsBackFormatStandardAndPropertiesButNotAutoDetect)
{
    Device grabber{{30, true}, {25, false}};
    VideoSourceInfo& source = grabber.source;
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

TEST(DeviceFormatSnapshot, NothingIsPutBackWithoutASnapshotOfThatDevice)
{
    Device webcam{{30, true}};
    webcam.source.brightness.value = 7;
    int32_t left = 1, top = 2;
    EXPECT_FALSE(RestoreDeviceFormatSnapshot(DeviceFormatSnapshot{}, webcam.source, 0, left, top));
    DeviceFormatSnapshot other = TakeDeviceFormatSnapshot(webcam.source, 1, 50, 60);
    webcam.source.brightness.value = 9;
    EXPECT_FALSE(RestoreDeviceFormatSnapshot(other, webcam.source, 0, left, top));
    EXPECT_EQ(webcam.source.brightness.value, 9);
    EXPECT_EQ(left, 1);
}
