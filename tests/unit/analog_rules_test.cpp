// The analog standard's rules: the frame count that means PAL, what is a change, each standard's group and format.
#include "video/analog_standard.h"

#include <gtest/gtest.h>

#include "device_records.h"

using Grabber = DeviceRecords;

TEST(AnalogRules, SixFramesDrawnMeanPalAndFiveNtsc)
{
    const struct {
        long drawn;
        bool pal;
    } rows[] = {{0, false}, {1, false}, {5, false}, {6, true}, {7, true}, {40, true}, {-1, false}};
    for (const auto& row : rows)
        EXPECT_EQ(TrialShowsPal(row.drawn), row.pal) << row.drawn;
}

TEST(AnalogRules, AChangeIsAStandardOtherThanTheDecodersAtTheStart)
{
    EXPECT_TRUE(AnalogStandardChanged(kDecoderNtscM, StandardPAL));
    EXPECT_TRUE(AnalogStandardChanged(kDecoderPalB, StandardNTSC));
    EXPECT_FALSE(AnalogStandardChanged(kDecoderNtscM, StandardNTSC));
    EXPECT_FALSE(AnalogStandardChanged(kDecoderPalB, StandardPAL));
    EXPECT_FALSE(AnalogStandardChanged(kDecoderNtscM, StandardDigital));
}

TEST(AnalogRules, EachStandardSelectsItsRateGroupAndSwitchesTheOthersOff)
{
    struct Row {
        DeviceStandard standard;
        uint32_t selectedGroup;
        uint32_t selectedFormat;  // in the selected group
        std::vector<int32_t> enabled;
    } rows[] = {
        {StandardNTSC, 0, 0, {1, 0, 0}},
        // PAL: the group of 25, and in it 720 by 576, wherever it stands.
        {StandardPAL, 1, 1, {0, 1, 0}},
        // Neither: every group off, the selection as it was.
        {StandardDigital, 2, 0, {0, 0, 0}},
        {StandardUnknown, 2, 0, {0, 0, 0}},
    };
    for (const Row& row : rows) {
        Grabber grabber;
        grabber.Group(30, {{720, 480}, {640, 480}}).Group(25, {{640, 480}, {720, 576}}).Group(15, {{640, 480}});
        grabber.First().currentFrameRateIndex = 2;
        grabber.First().deviceStandard = row.standard;
        SetAnalogDeviceFrameRate(&grabber.First());
        EXPECT_EQ(grabber.First().currentFrameRateIndex, row.selectedGroup) << row.standard;
        EXPECT_EQ(grabber.First().frameRates[row.selectedGroup]->currentFormatIndex, row.selectedFormat)
            << row.standard;
        std::vector<int32_t> enabled;
        for (const VideoFormatsByFrameRate* group : grabber.First().frameRates)
            enabled.push_back(group->enabled);
        EXPECT_EQ(enabled, row.enabled) << row.standard;
    }
}

TEST(AnalogRules, WithoutTheRightRateTheOldSelectionStaysWhileEveryGroupIsOff)
{
    Grabber grabber;
    grabber.Group(30, {{720, 480}}).Group(15, {{640, 480}});
    grabber.First().currentFrameRateIndex = 1;
    grabber.First().deviceStandard = StandardPAL;
    SetAnalogDeviceFrameRate(&grabber.First());
    EXPECT_EQ(grabber.First().currentFrameRateIndex, 1u);
    EXPECT_EQ(grabber.groups[0]->enabled, 0);
    EXPECT_EQ(grabber.groups[1]->enabled, 0);

    // PAL at 25 without 720 by 576: the group is chosen, its format stays.
    Grabber small;
    small.Group(30, {{720, 480}}).Group(25, {{640, 480}, {768, 576}});
    small.groups[1]->currentFormatIndex = 1;
    small.First().deviceStandard = StandardPAL;
    SetAnalogDeviceFrameRate(&small.First());
    EXPECT_EQ(small.First().currentFrameRateIndex, 1u);
    EXPECT_EQ(small.groups[1]->currentFormatIndex, 1u);
}

TEST(AnalogRules, TheTrialFormatIs720By576InTheGroupOf25Only)
{
    Grabber grabber;
    grabber.Group(30, {{720, 576}}).Group(25, {{640, 480}, {720, -576}, {720, 576}, {720, 576}});
    EXPECT_EQ(FindPalTrialFormat(grabber.First()), grabber.groups[1]->formats[2]);

    Grabber none;
    none.Group(30, {{720, 576}}).Group(25, {{640, 480}});
    EXPECT_EQ(FindPalTrialFormat(none.First()), nullptr);
}
