// The options file at start-up and the Set Window Positions command.
#include <gtest/gtest.h>

#include "e2e/program_run.h"
#include "support/code_page.h"
#include "ui/commands.h"

using namespace e2e;

namespace {

constexpr wchar_t kPositionsSaved[] = L"Default window positions are saved in options file\r\n";

}  // namespace

// Set Window Positions saves where the windows stand (dialogs never opened keep no position), the codec pair that
// loaded and not the one naming a missing codec, and a video folder and a camera with accents; the next start
// puts the window back, reads the file, and saves it again to the same bytes. The bytes are code page 1252. A
// Wine process takes its narrow code page from the Unix locale of the process that started it, so the ctest
// entry runs the test program, and with it the program it starts, with LC_ALL=C.UTF-8.
TEST(Options, SavedPositionsFolderCameraAndCodecPairSurviveRestartAndSaveAgain)
{
    ASSERT_TRUE(NarrowCodePageIs1252());
    ProgramRun run;
    ASSERT_TRUE(run.devices.Add(L"Sky Cam", L"webcam"));
    ASSERT_TRUE(run.devices.Add(L"Cam\u00E9ra", L"webcam"));
    const std::wstring& folder = run.folder;
    // A folder that the user picked exists, and is stored with a backslash at its end.
    CreateDirectoryW((folder + L"\\VideoFiles").c_str(), nullptr);
    ASSERT_TRUE(CreateDirectoryW((folder + L"\\VideoFiles\\Vid\u00E9os").c_str(), nullptr));
    // The device list keys a camera by its name cleaned to the characters
    // 32 to 126, which takes the accent out: "Camra" is what choosing this
    // camera as the default stores.
    WriteOptions(folder, Option("VideoDirectory", "VideoFiles\\Vid\xE9os\\") + Option("DefaultVideoSource", "Camra") +
                             Option("DefaultRenderer", "VMR9") + Option("SubtypeCodecPair", "YUY2|NONE") +
                             Option("SubtypeCodecPair", "RGB24|No Such Codec"));
    const std::wstring optionsFile = folder + L"\\MAVU_options_capture.xml";

    std::string first;
    {
        ASSERT_TRUE(run.Run());
        Program& program = *run.program;
        EXPECT_EQ(program.Messages().find(L"No Options File"), std::wstring::npos) << Narrow(program.Messages());
        EXPECT_EQ(ListFiles(folder, L"*.xml").size(), 1u) << "reading writes no file";
        EXPECT_EQ(program.CountMessages(
                      L"WARNING: named codec in a Subtype / Codec pair is not installed on this computer\r\n"),
                  1)
            << Narrow(program.Messages());
        // The user drags the User Messages window and makes it bigger.
        SetWindowPos(program.UserMessagesWindow(), nullptr, 200, 100, 640, 500, SWP_NOZORDER | SWP_NOACTIVATE);
        SendCommand(program.MainWindow(), IDM_SET_WINDOW_POSITIONS);
        ASSERT_TRUE(program.WaitForMessage(kPositionsSaved, 5000));
        EXPECT_EQ(program.Messages().find(L"WARNING: cannot save"), std::wstring::npos);
        first = ReadFileBytes(optionsFile);
        EXPECT_NE(first.find("\t<MessageWindowPosition Value=\"200, 100, 640, 500\"/>\r\n"), std::string::npos)
            << first;
        RECT main = WindowRect(program.MainWindow());
        EXPECT_NE(first.find("\t<MainWindowPosition Value=\"" + std::to_string(main.left) + ", " +
                             std::to_string(main.top) + "\"/>\r\n"),
                  std::string::npos)
            << first;
        EXPECT_NE(first.find("\t<GpsWindowPosition Value=\"2147483647, 2147483647\"/>\r\n"), std::string::npos);
        EXPECT_NE(first.find("\t<SubtypeCodecPair Value=\"YUY2|NONE\"/>\r\n"), std::string::npos) << first;
        ASSERT_TRUE(program.Exit(10000));
    }

    ASSERT_TRUE(run.Run());
    Program& again = *run.program;
    RECT messages = WindowRect(again.UserMessagesWindow());
    EXPECT_EQ(messages.left, 200);
    EXPECT_EQ(messages.top, 100);
    EXPECT_EQ(messages.right - messages.left, 640);
    EXPECT_EQ(messages.bottom - messages.top, 500);
    SendCommand(again.MainWindow(), IDM_SET_WINDOW_POSITIONS);
    ASSERT_TRUE(again.WaitForMessage(kPositionsSaved, 5000));
    EXPECT_EQ(ReadFileBytes(optionsFile), first);

    // The next recording goes into that folder, from the default camera.
    const std::wstring videos = folder + L"\\VideoFiles\\Vid\u00E9os";
    Sleep(1000);
    const std::string report = RecordByHand(again, 3000, videos).report;
    ASSERT_FALSE(report.empty()) << Narrow(again.Messages());
    EXPECT_NE(report.find("Video file:  VideoFiles\\Vid\xE9os\\"), std::string::npos) << report;
    EXPECT_NE(report.find("Video source device: Camra\r"), std::string::npos) << report;
}
