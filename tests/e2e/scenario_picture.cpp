// The picture controls and codecs at start-up, as the platform is: no
// "Color Control" effect, and Wine's own compressors.
#include <gtest/gtest.h>

#include "device/graph_helpers.h"
#include "e2e/harness.h"

using namespace e2e;

namespace {

constexpr unsigned kSetWindowPositions = 33098;
constexpr wchar_t kCodecWarning[] =
    L"WARNING: named codec in a Subtype / Codec pair is not installed on this computer\r\n";

}  // namespace

TEST(Picture, ASavedPairNamingNoneLoadsQuietlyAndOneNamingAMissingCodecWarnsAndIsDropped)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteOptions(folder, Option("SubtypeCodecPair", "YUY2|NONE") + Option("SubtypeCodecPair", "RGB24|No Such Codec"));
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    EXPECT_EQ(program.CountMessages(kCodecWarning), 1) << Narrow(program.Messages());

    // The next save writes the pair that loaded, and not the other.
    SendCommand(program.MainWindow(), kSetWindowPositions);
    ASSERT_TRUE(program.WaitForMessage(L"Default window positions are saved in options file\r\n", 5000));
    std::string saved = ReadBytes(folder + L"\\MAVU_options_capture.xml");
    EXPECT_NE(saved.find("\t<SubtypeCodecPair Value=\"YUY2|NONE\"/>\r\n"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("No Such Codec"), std::string::npos) << saved;
}
