// Start-up, single instance and the ways out.
#include <gtest/gtest.h>

#include "e2e/harness.h"
#include "support/temp_folder.h"
#include "ui/commands.h"

using namespace e2e;

namespace {

constexpr DWORD kAnotherInstance = 0x80004004;

}  // namespace

// Without options, device or icons: the lines in order, no options file written, no record buttons, the default
// folders made. A second instance ends at once with its code and changes nothing; Set Window Positions writes the
// file; the close box ends the first with the loop's exit code.
TEST(Startup, NoOptionsNoDeviceReportsInOrderAndASecondInstanceChangesNothing)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    RemoveTree(folder + L"\\MavuVideoIcons");
    Program program(folder);
    ASSERT_TRUE(program.StartReady());

    std::wstring text = program.Messages();
    size_t zone = text.find(L"Computer local time is ");
    size_t noDevice = text.find(L"There is no video capture device connected to the computer");
    size_t noOptions = text.find(L"No Options File or unreadable Options File");
    ASSERT_NE(zone, std::wstring::npos) << Narrow(text);
    ASSERT_NE(noDevice, std::wstring::npos) << Narrow(text);
    ASSERT_NE(noOptions, std::wstring::npos) << Narrow(text);
    // Queued lines are shown only at the end of start-up, behind everything
    // reported once the window existed.
    EXPECT_LT(zone, noDevice);
    EXPECT_LT(noDevice, noOptions);
    EXPECT_EQ(text.rfind(L"No Options File or unreadable Options File"), noOptions);
    EXPECT_EQ(text.substr(noOptions), L"No Options File or unreadable Options File\r\n") << Narrow(text);
    EXPECT_TRUE(ListFiles(folder, L"*.xml").empty());

    EXPECT_EQ(WindowText(program.MainWindow()), kMainTitle);
    EXPECT_FALSE(IsVisible(program.RecordControlsWindow()));
    EXPECT_NE(GetFileAttributesW((folder + L"\\VideoFiles").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(GetFileAttributesW((folder + L"\\LogFiles").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(TakeScreenshot("startup-no-device"));

    RECT mainBefore = WindowRect(program.MainWindow());
    Program second(folder);
    ASSERT_TRUE(second.Start());
    DWORD code = 0;
    ASSERT_TRUE(second.WaitExit(5000, &code));
    EXPECT_EQ(code, kAnotherInstance);
    EXPECT_TRUE(program.IsRunning());
    EXPECT_EQ(program.Messages(), text);
    RECT mainAfter = WindowRect(program.MainWindow());
    EXPECT_TRUE(EqualRect(&mainBefore, &mainAfter));
    EXPECT_EQ(FindProcessWindow(second.ProcessId(), nullptr), nullptr);

    // Set Window Positions makes the file where none stood.
    SendCommand(program.MainWindow(), IDM_SET_WINDOW_POSITIONS);
    ASSERT_TRUE(program.WaitForMessage(L"Default window positions are saved in options file\r\n", 5000));
    EXPECT_NE(ReadFileBytes(folder + L"\\MAVU_options_capture.xml").find("\t<MessageWindowPosition Value=\""),
              std::string::npos);
    code = 1234;
    PostMessageW(program.MainWindow(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(program.WaitExit(10000, &code));
    EXPECT_EQ(code, 0u);
}

TEST(Startup, ProgramNameWithoutMavuCannotMakeTheDefaultFolders)
{
    // The program folder is found by the word MAVU in the file name; without
    // it the folders would go under the executable's own path, which is a file.
    Program program(MakeWorkFolderForCurrentTest(L"capture.exe"), L"capture.exe");
    ASSERT_TRUE(program.StartReady());
    std::wstring text = program.Messages();
    size_t video = text.find(L"Unable to create \"VideoFiles\" directory under the process directory.  Check security "
                             L"settings.\r\n");
    size_t logs = text.find(L"Unable to create \"LogFiles\" directory under the process directory.  Check security "
                            L"settings.\r\n");
    size_t queued = text.find(L"No Options File or unreadable Options File");
    ASSERT_NE(video, std::wstring::npos) << Narrow(text);
    ASSERT_NE(logs, std::wstring::npos) << Narrow(text);
    EXPECT_LT(video, logs);
    EXPECT_LT(logs, queued);
    // The program runs on: the main File menu is live, so Exit still works.
    DWORD code = 1;
    ASSERT_TRUE(program.Exit(10000, &code));
    EXPECT_EQ(code, 0u);
}
