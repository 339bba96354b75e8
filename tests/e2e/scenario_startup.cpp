// Start-up, single instance, the User Messages window and the ways out.
#include <gtest/gtest.h>

#include <regex>

#include "e2e/harness.h"
#include "support/temp_folder.h"
#include "ui/commands.h"

using namespace e2e;

namespace {

constexpr DWORD kAnotherInstance = 0x80004004;

// The log is a text stream over the control's CR LF text: CR CR LF.
std::string AsLogBytes(const std::wstring& text)
{
    std::string bytes;
    for (wchar_t c : text) {
        if (c == L'\n')
            bytes += '\r';
        bytes += static_cast<char>(c);
    }
    return bytes;
}

}  // namespace

// Without options, device or icons: the lines in order, no options file written, no record buttons, the default
// folders made. A second instance ends at once with its code and changes nothing. Save writes the User Messages
// text to a log file named by the UTC moment and says so below it; About writes its three lines, and after far
// more lines than the window shows the newest is in sight; Save and Clear writes the log and leaves only its own
// line. Set Window Positions writes the file; the close box ends the first with the loop's exit code.
TEST(Startup, NoOptionsNoDeviceReportsInOrderASecondInstanceChangesNothingAndMessagesSave)
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

    std::wstring before = program.Messages();

    SYSTEMTIME utc{};
    GetSystemTime(&utc);
    SendCommand(program.UserMessagesWindow(), IDM_SAVE_MESSAGES);

    std::vector<std::wstring> logs = ListFiles(folder + L"\\LogFiles", L"*.txt");
    ASSERT_EQ(logs.size(), 1u);
    // mm_dd_yyyy_hh_mm_ss.txt in UTC: the date part is today's UTC date.
    std::wsmatch parts;
    ASSERT_TRUE(std::regex_match(logs[0], parts, std::wregex(L"(\\d\\d)_(\\d\\d)_(\\d{4})_\\d\\d_\\d\\d_\\d\\d\\.txt")))
        << Narrow(logs[0]);
    EXPECT_EQ(std::stoi(parts[1].str()), utc.wMonth);
    EXPECT_EQ(std::stoi(parts[3].str()), utc.wYear);

    std::string bytes = ReadFileBytes(folder + L"\\LogFiles\\" + logs[0]);
    EXPECT_EQ(bytes, AsLogBytes(before));

    std::wstring after = program.Messages();
    EXPECT_EQ(after.substr(0, before.size()), before);
    EXPECT_NE(after.find(L"User messages saved in log file \"LogFiles\\" + logs[0] + L"\"\r\n"), std::wstring::npos)
        << Narrow(after);

    for (int i = 0; i < 20; ++i)
        SendCommand(program.MainWindow(), IDM_ABOUT);
    text = program.Messages();
    // The last About, from the line break before its time.
    size_t last = text.rfind(L" (UTC)\r\nMAVU Video Capture Version");
    ASSERT_TRUE(last != std::wstring::npos && last >= 10) << Narrow(text);
    std::wregex about(L"\r\n\\d\\d:\\d\\d:\\d\\d \\(UTC\\)\r\nMAVU Video Capture Version 2\\.1\r\n"
                      L"Report errors to \"[^\"]+@[^\"]+\"\\.  Please describe\r\n"
                      L"how to duplicate the error and attach a saved user message log file\\.\r\n");
    EXPECT_TRUE(std::regex_match(text.substr(last - 10), about)) << Narrow(text);
    HWND control = program.RichEdit();
    int lines = static_cast<int>(SendMessageW(control, EM_GETLINECOUNT, 0, 0));
    int first = static_cast<int>(SendMessageW(control, EM_GETFIRSTVISIBLELINE, 0, 0));
    EXPECT_GT(first, 0) << "scrolled down";
    // The last line of text, before the closing empty line, has its top inside the control.
    int lastText = static_cast<int>(SendMessageW(control, EM_LINEINDEX, lines - 2, 0));
    int top = static_cast<short>(HIWORD(SendMessageW(control, EM_POSFROMCHAR, lastText, 0)));
    RECT client{};
    GetClientRect(control, &client);
    EXPECT_GE(top, 0);
    EXPECT_LT(top, client.bottom);
    EXPECT_TRUE(TakeScreenshot("user-messages-scrolled"));

    // A log of another second.
    Sleep(1100);
    before = program.Messages();
    SendCommand(program.UserMessagesWindow(), IDM_SAVE_MESSAGES_AND_CLEAR);
    std::vector<std::wstring> both = ListFiles(folder + L"\\LogFiles", L"*.txt");
    ASSERT_EQ(both.size(), 2u);
    std::wstring cleared = both[0] == logs[0] ? both[1] : both[0];
    EXPECT_EQ(ReadFileBytes(folder + L"\\LogFiles\\" + cleared), AsLogBytes(before));
    std::wregex expected(L"\r\n\\d\\d:\\d\\d:\\d\\d \\(UTC\\)\r\nUser messages saved in log file \"LogFiles\\\\" +
                         cleared + L"\" and all messages cleared\r\n");
    EXPECT_TRUE(std::regex_match(program.Messages(), expected)) << Narrow(program.Messages());

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
