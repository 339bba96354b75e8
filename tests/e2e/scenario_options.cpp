// The options file at start-up and the Set Window Positions command.
#include <gtest/gtest.h>

#include "e2e/harness.h"

using namespace e2e;

namespace {

constexpr unsigned kSetWindowPositions = 33098;

const char kHeader[] = "<?xml version='1.0'?>\r\n<!--MAVU Video Capture Version 2.1-->\r\n<Root>\r\n";

}  // namespace

TEST(Options, SavedPositionsApplyAtStartUp)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteBytes(folder + L"\\MAVU_options_capture.xml",
               std::string(kHeader) +
                   "\t<EventPendingDisplay Value=\"UTC\"/>\r\n"
                   "\t<MessageWindowPosition Value=\"120, 150, 700, 420\"/>\r\n"
                   "\t<RecordControlsWindowPosition Value=\"300, 700\"/>\r\n"
                   "</Root>\r\n");
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());

    RECT messages = WindowRect(program.UserMessagesWindow());
    EXPECT_EQ(messages.left, 120);
    EXPECT_EQ(messages.top, 150);
    EXPECT_EQ(messages.right - messages.left, 700);
    EXPECT_EQ(messages.bottom - messages.top, 420);
    std::wstring text = program.Messages();
    EXPECT_EQ(text.find(L"No Options File or unreadable Options File"), std::wstring::npos) << Narrow(text);
    // Reading is not writing: the file is as it was.
    EXPECT_EQ(ListFiles(folder, L"*.xml").size(), 1u);
}

TEST(Options, UnreadableFileIsReportedAndDefaultsStand)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteBytes(folder + L"\\MAVU_options_capture.xml", std::string(kHeader) + "\t<MessageWindowPosition Valu");
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    std::wstring text = program.Messages();
    EXPECT_NE(text.find(L"No Options File or unreadable Options File\r\n"), std::wstring::npos) << Narrow(text);
    RECT messages = WindowRect(program.UserMessagesWindow());
    EXPECT_EQ(messages.right - messages.left, 600);
    EXPECT_EQ(messages.bottom - messages.top, 460);
}

TEST(Options, FallbackFileIsReadWhenTheFirstIsDamaged)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    WriteBytes(folder + L"\\MAVU_options_capture.xml", "\x01\x02 not xml");
    WriteBytes(folder + L"\\MAVU_options.xml",
               std::string(kHeader) + "\t<MessageWindowPosition Value=\"10, 20, 650, 400\"/>\r\n</Root>\r\n");
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    EXPECT_EQ(program.Messages().find(L"No Options File"), std::wstring::npos);
    RECT messages = WindowRect(program.UserMessagesWindow());
    EXPECT_EQ(messages.left, 10);
    EXPECT_EQ(messages.right - messages.left, 650);
}

TEST(Options, SetWindowPositionsSavesWhereTheWindowsStand)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    EXPECT_TRUE(ListFiles(folder, L"MAVU_options_capture.xml").empty());

    // The user drags the User Messages window and makes it bigger.
    SetWindowPos(program.UserMessagesWindow(), nullptr, 200, 100, 640, 500, SWP_NOZORDER | SWP_NOACTIVATE);
    SendCommand(program.MainWindow(), kSetWindowPositions);
    ASSERT_TRUE(program.WaitForMessage(L"Default window positions are saved in options file\r\n", 5000));

    std::string saved = ReadBytes(folder + L"\\MAVU_options_capture.xml");
    EXPECT_NE(saved.find("\t<MessageWindowPosition Value=\"200, 100, 640, 500\"/>\r\n"), std::string::npos) << saved;
    RECT main = WindowRect(program.MainWindow());
    std::string mainLine = "\t<MainWindowPosition Value=\"" + std::to_string(main.left) + ", " +
                           std::to_string(main.top) + "\"/>\r\n";
    EXPECT_NE(saved.find(mainLine), std::string::npos) << saved;
    // Dialogs never opened keep no position.
    EXPECT_NE(saved.find("\t<GpsWindowPosition Value=\"2147483647, 2147483647\"/>\r\n"), std::string::npos);
    // A start with that file puts the window back there.
    PostCommand(program.MainWindow(), 33099);
    ASSERT_TRUE(program.WaitExit(10000));
    Program again(folder);
    ASSERT_TRUE(again.Start());
    ASSERT_TRUE(again.WaitReady());
    RECT messages = WindowRect(again.UserMessagesWindow());
    EXPECT_EQ(messages.left, 200);
    EXPECT_EQ(messages.top, 100);
    EXPECT_EQ(messages.bottom - messages.top, 500);
}
