// The brightness tool's slider mapping, and the pairing of a chosen codec with a media subtype.
#include <gtest/gtest.h>

#include "base/report.h"
#include "persistence/options.h"
#include "support/temp_folder.h"
#include "ui/user_messages.h"
#include "video/codec_choice.h"
#include "video/codecs.h"
#include "video/color_controls.h"

TEST(ColorControls, SliderPositionsMapToTheEffectsRangeTowardsZero)
{
    const struct {
        int32_t slider;
        int32_t value;
    } cases[] = {{0, -127}, {1, -125}, {25, -64}, {49, -3}, {50, 0}, {51, 2}, {75, 63}, {99, 124}, {100, 127}};
    for (const auto& c : cases)
        EXPECT_EQ(ColorControlValue(c.slider), c.value) << "slider " << c.slider;
}

TEST(CodecPairs, AChosenLineIsPairedForTheRunAndWithSaveInTheFileToo)
{
    TempFolder folder;
    SetOptionDefaults(options, RECT{0, 0, 1920, 1080});
    TakeQueuedUserMessages();
    CodecRecord none{nullptr, L"NONE"}, codec{nullptr, L"Squeezer"};
    installedCodecs = {&none, &codec};
    usableCodecs = {&none, &codec};
    usableCodecIndexes = {0, 1};

    // Lines that name no installed codec change nothing.
    for (int line : {-1, 2}) {
        EXPECT_EQ(SelectUsableCodec(line, SubtypeYUY2, true), E_INVALIDARG);
        EXPECT_EQ(TakeQueuedUserMessages(), std::vector<std::wstring>{L"Selected Codec index is not valid\r\n"});
    }
    usableCodecIndexes = {0, 7};
    EXPECT_EQ(SelectUsableCodec(1, SubtypeYUY2, false), E_INVALIDARG);
    TakeQueuedUserMessages();
    EXPECT_TRUE(subtypeCodecPairs.empty());
    usableCodecIndexes = {0, 1};

    // Without save: this run only, and no file.
    EXPECT_EQ(SelectUsableCodec(1, SubtypeYUY2, false), S_OK);
    ASSERT_EQ(subtypeCodecPairs.size(), 1u);
    EXPECT_EQ(subtypeCodecPairs[0]->codec, &codec);
    EXPECT_TRUE(savedSubtypeCodecPairs.empty());
    EXPECT_EQ(GetFileAttributesW(folder.File(L"MAVU_options_capture.xml").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(SelectUsableCodec(0, SubtypeRGB24, false), S_OK);

    // With save: both lists, and the file carries the pair. A new choice replaces the first pair of its subtype;
    // another subtype's is appended.
    EXPECT_EQ(SelectUsableCodec(0, SubtypeYUY2, true), S_OK);
    ASSERT_EQ(subtypeCodecPairs.size(), 2u);
    EXPECT_EQ(subtypeCodecPairs[0]->codec, &none);
    EXPECT_EQ(subtypeCodecPairs[1]->subtype, SubtypeRGB24);
    ASSERT_EQ(savedSubtypeCodecPairs.size(), 1u);
    EXPECT_EQ(TakeQueuedUserMessages(), std::vector<std::wstring>{L"Codec / format pairing saved in options file\r\n"});
    std::string file = ReadFileBytes(folder.File(L"MAVU_options_capture.xml"));
    EXPECT_NE(file.find("<SubtypeCodecPair Value=\"YUY2|NONE\"/>"), std::string::npos) << file;

    installedCodecs.clear();
    usableCodecs.clear();
    usableCodecIndexes.clear();
    for (auto* pairs : {&subtypeCodecPairs, &savedSubtypeCodecPairs}) {
        for (SubtypeCodecPair* pair : *pairs)
            delete pair;
        pairs->clear();
    }
}
