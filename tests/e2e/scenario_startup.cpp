// Start-up, single instance and the ways out.
#include <gtest/gtest.h>

#include "e2e/harness.h"

using namespace e2e;

namespace {

constexpr unsigned kExitCommand = 33099;
constexpr DWORD kAnotherInstance = 0x80004004;

}  // namespace

TEST(Startup, NoOptionsNoDeviceReportsInOrder)
{
    Program program(MakeWorkFolderForCurrentTest());
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());

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

    EXPECT_EQ(WindowText(program.MainWindow()), L"MAVU Video Capture Version 2.1");
    // No device: the record buttons are hidden, the default folders exist.
    EXPECT_FALSE(IsVisible(program.RecordControlsWindow()));
    EXPECT_NE(GetFileAttributesW((program.Folder() + L"\\VideoFiles").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(GetFileAttributesW((program.Folder() + L"\\LogFiles").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(TakeScreenshot("startup-no-device"));
}

TEST(Startup, SecondInstanceEndsAtOnceAndChangesNothing)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    Program first(folder);
    ASSERT_TRUE(first.Start());
    ASSERT_TRUE(first.WaitReady());
    std::wstring before = first.Messages();
    RECT mainBefore = WindowRect(first.MainWindow());

    Program second(folder);
    ASSERT_TRUE(second.Start());
    DWORD code = 0;
    ASSERT_TRUE(second.WaitExit(5000, &code));
    EXPECT_EQ(code, kAnotherInstance);

    EXPECT_TRUE(first.IsRunning());
    EXPECT_EQ(first.Messages(), before);
    RECT mainAfter = WindowRect(first.MainWindow());
    EXPECT_TRUE(EqualRect(&mainBefore, &mainAfter));
    EXPECT_EQ(FindProcessWindow(second.ProcessId(), nullptr), nullptr);
}

TEST(Startup, ExitOrTheCloseBoxEndsWithTheLoopsExitCode)
{
    for (bool closeBox : {false, true}) {
        SCOPED_TRACE(closeBox ? "close box" : "Exit");
        Program program(MakeWorkFolderForCurrentTest());
        ASSERT_TRUE(program.Start());
        ASSERT_TRUE(program.WaitReady());
        if (closeBox)
            PostMessageW(program.MainWindow(), WM_CLOSE, 0, 0);
        else
            PostCommand(program.MainWindow(), kExitCommand);
        DWORD code = 1234;
        ASSERT_TRUE(program.WaitExit(10000, &code));
        EXPECT_EQ(code, 0u);
    }
}

TEST(Startup, MissingIconsAreHarmless)
{
    std::wstring folder = MakeWorkFolderForCurrentTest();
    for (const std::wstring& icon : ListFiles(folder + L"\\MavuVideoIcons", L"*.ico"))
        DeleteFileW((folder + L"\\MavuVideoIcons\\" + icon).c_str());
    RemoveDirectoryW((folder + L"\\MavuVideoIcons").c_str());

    Program program(folder);
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
    EXPECT_TRUE(IsVisible(program.UserMessagesWindow()));
    EXPECT_NE(program.Messages().find(L"No Options File or unreadable Options File"), std::wstring::npos);
}

TEST(Startup, ProgramNameWithoutMavuCannotMakeTheDefaultFolders)
{
    // The program folder is found by the word MAVU in the file name; without
    // it the folders would go under the executable's own path, which is a file.
    Program program(MakeWorkFolderForCurrentTest(L"capture.exe"), L"capture.exe");
    ASSERT_TRUE(program.Start());
    ASSERT_TRUE(program.WaitReady());
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
    PostCommand(program.MainWindow(), kExitCommand);
    DWORD code = 1;
    ASSERT_TRUE(program.WaitExit(10000, &code));
    EXPECT_EQ(code, 0u);
}
