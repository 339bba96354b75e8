// The User Messages window: saving the log, clearing, the Help lines.
#include <gtest/gtest.h>

#include <regex>

#include "e2e/harness.h"
#include "ui/commands.h"

using namespace e2e;

namespace {

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

// Save writes the window's text to a log file named by the UTC moment and says so below it; About writes its
// three lines, and after far more lines than the window shows the newest is in sight; Save and Clear writes the
// log and leaves only its own line.
TEST(Messages, SaveAboutAndSaveAndClear)
{
    Program program(MakeWorkFolderForCurrentTest());
    ASSERT_TRUE(program.StartReady());
    std::wstring before = program.Messages();

    SYSTEMTIME utc{};
    GetSystemTime(&utc);
    SendCommand(program.UserMessagesWindow(), IDM_SAVE_MESSAGES);

    std::vector<std::wstring> logs = ListFiles(program.Folder() + L"\\LogFiles", L"*.txt");
    ASSERT_EQ(logs.size(), 1u);
    // mm_dd_yyyy_hh_mm_ss.txt in UTC: the date part is today's UTC date.
    std::wsmatch parts;
    ASSERT_TRUE(std::regex_match(logs[0], parts, std::wregex(L"(\\d\\d)_(\\d\\d)_(\\d{4})_\\d\\d_\\d\\d_\\d\\d\\.txt")))
        << Narrow(logs[0]);
    EXPECT_EQ(std::stoi(parts[1].str()), utc.wMonth);
    EXPECT_EQ(std::stoi(parts[3].str()), utc.wYear);

    std::string bytes = ReadFileBytes(program.Folder() + L"\\LogFiles\\" + logs[0]);
    EXPECT_EQ(bytes, AsLogBytes(before));
    EXPECT_EQ(bytes.rfind("\r\r\nNo Options File or unreadable Options File\r\r\n"),
              bytes.size() - std::string("\r\r\nNo Options File or unreadable Options File\r\r\n").size());

    std::wstring after = program.Messages();
    EXPECT_EQ(after.substr(0, before.size()), before);
    EXPECT_NE(after.find(L"User messages saved in log file \"LogFiles\\" + logs[0] + L"\"\r\n"), std::wstring::npos)
        << Narrow(after);

    for (int i = 0; i < 20; ++i)
        SendCommand(program.MainWindow(), IDM_ABOUT);
    std::wstring text = program.Messages();
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
    EXPECT_LT(first, lines);
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
    std::vector<std::wstring> both = ListFiles(program.Folder() + L"\\LogFiles", L"*.txt");
    ASSERT_EQ(both.size(), 2u);
    std::wstring cleared = both[0] == logs[0] ? both[1] : both[0];
    EXPECT_EQ(ReadFileBytes(program.Folder() + L"\\LogFiles\\" + cleared), AsLogBytes(before));
    std::wregex expected(L"\r\n\\d\\d:\\d\\d:\\d\\d \\(UTC\\)\r\nUser messages saved in log file \"LogFiles\\\\" +
                         cleared + L"\" and all messages cleared\r\n");
    EXPECT_TRUE(std::regex_match(program.Messages(), expected)) << Narrow(program.Messages());
}
