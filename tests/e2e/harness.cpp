#include "e2e/harness.h"

#include "support/temp_folder.h"
#include "ui/commands.h"

#include <gtest/gtest.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstdio>

#ifndef MAVU_SOURCE_DIR_UNIX
#error "MAVU_SOURCE_DIR_UNIX must name the source tree"
#endif
#ifndef MAVU_BINARY_DIR_UNIX
#error "MAVU_BINARY_DIR_UNIX must name the build tree"
#endif

namespace e2e {

namespace {

constexpr const wchar_t* kProgramName = L"MAVU_VideoCapture.exe";

void CopyFolder(const std::wstring& from, const std::wstring& to)
{
    CreateDirectoryW(to.c_str(), nullptr);
    for (const std::wstring& name : ListFiles(from, L"*"))
        CopyFileW((from + L"\\" + name).c_str(), (to + L"\\" + name).c_str(), FALSE);
}

struct FindData {
    DWORD processId;
    const wchar_t* className;
    const wchar_t* title;
    HWND found;
};

// A window of the class and title asked for; for a top-level window, of the
// process too (a child's class is matched in any case).
BOOL CALLBACK MatchWindow(HWND window, LPARAM parameter)
{
    auto* data = reinterpret_cast<FindData*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (data->processId && owner != data->processId)
        return TRUE;
    if (data->className && _wcsicmp(ClassName(window).c_str(), data->className) != 0)
        return TRUE;
    if (data->title && WindowText(window) != data->title)
        return TRUE;
    data->found = window;
    return FALSE;
}

std::wstring BuildEnvironmentBlock(const Environment& extra)
{
    std::vector<std::wstring> entries;
    wchar_t* block = GetEnvironmentStringsW();
    for (const wchar_t* entry = block; *entry; entry += wcslen(entry) + 1)
        entries.emplace_back(entry);
    FreeEnvironmentStringsW(block);
    for (const auto& [name, value] : extra) {
        std::wstring prefix = name + L"=";
        std::erase_if(entries, [&](const std::wstring& entry) {
            return _wcsnicmp(entry.c_str(), prefix.c_str(), prefix.size()) == 0;
        });
        entries.push_back(prefix + value);
    }
    std::wstring result;
    for (const std::wstring& entry : entries) {
        result += entry;
        result += L'\0';
    }
    result += L'\0';
    return result;
}

}  // namespace

std::wstring BinFolder()
{
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    PathRemoveFileSpecW(path);
    return path;
}

std::wstring MakeWorkFolder(const std::wstring& name, const wchar_t* programName)
{
    std::wstring root = BinFolder() + L"\\..\\e2e-work";
    CreateDirectoryW(root.c_str(), nullptr);
    std::wstring folder = root + L"\\" + name;
    RemoveTree(folder);
    CreateDirectoryW(folder.c_str(), nullptr);
    CopyFileW((BinFolder() + L"\\" + kProgramName).c_str(),
              (folder + L"\\" + (programName ? programName : kProgramName)).c_str(), FALSE);
    CopyFolder(BinFolder() + L"\\MavuVideoIcons", folder + L"\\MavuVideoIcons");
    return folder;
}

std::wstring MakeWorkFolderForCurrentTest(const wchar_t* programName)
{
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "." + test->name();
    // A table's cases are named "Table/Suite.Test/Case": no folders.
    std::replace(name.begin(), name.end(), '/', '_');
    return MakeWorkFolder(std::wstring(name.begin(), name.end()), programName);
}

bool WaitUntil(const std::function<bool()>& condition, DWORD timeoutMs, DWORD intervalMs)
{
    ULONGLONG deadline = GetTickCount64() + timeoutMs;
    for (;;) {
        if (condition())
            return true;
        if (GetTickCount64() >= deadline)
            return false;
        Sleep(intervalMs);
    }
}

HWND FindProcessWindow(DWORD processId, const wchar_t* className, const wchar_t* title)
{
    FindData data{processId, className, title, nullptr};
    EnumWindows(MatchWindow, reinterpret_cast<LPARAM>(&data));
    return data.found;
}

HWND FindChild(HWND parent, const wchar_t* className, const wchar_t* text)
{
    FindData data{0, className, text, nullptr};
    EnumChildWindows(parent, MatchWindow, reinterpret_cast<LPARAM>(&data));
    return data.found;
}

HWND WaitForWindow(DWORD processId, const wchar_t* className, const wchar_t* title, DWORD timeoutMs)
{
    HWND window = nullptr;
    WaitUntil([&] { return IsVisible(window = FindProcessWindow(processId, className, title)); }, timeoutMs);
    return IsVisible(window) ? window : nullptr;
}

bool Answers(HWND window)
{
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &result) != 0;
}

std::wstring WindowText(HWND window)
{
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, 5000, &length))
        return {};
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                        5000, &copied);
    text.resize(copied);
    return text;
}

std::wstring ClassName(HWND window)
{
    wchar_t name[256] = L"";
    GetClassNameW(window, name, 256);
    return name;
}

bool IsVisible(HWND window)
{
    return window && IsWindowVisible(window);
}

bool IsEnabled(HWND window)
{
    return window && IsWindowEnabled(window);
}

RECT WindowRect(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

void Click(HWND button)
{
    SendMessageW(button, BM_CLICK, 0, 0);
}

void SendCommand(HWND window, unsigned id)
{
    SendMessageW(window, WM_COMMAND, id, 0);
}

void PostCommand(HWND window, unsigned id)
{
    PostMessageW(window, WM_COMMAND, id, 0);
}

std::vector<std::wstring> ListFiles(const std::wstring& folder, const wchar_t* pattern)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW((folder + L"\\" + pattern).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            names.emplace_back(found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return names;
}

LRESULT SendDeviceChange(HWND mainWindow, DWORD timeoutMs)
{
    constexpr WPARAM kDevNodesChanged = 7;
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(mainWindow, WM_DEVICECHANGE, kDevNodesChanged, 0, SMTO_NORMAL, timeoutMs, &answer))
        return -1;
    return static_cast<LRESULT>(answer);
}

int RunUnix(const std::string& command, DWORD timeoutMs)
{
    std::wstring line = L"Z:\\bin\\sh -c \"";
    for (char c : command) {
        if (c == '"')
            line += L"\\\"";
        else
            line += static_cast<wchar_t>(c);
    }
    line += L"\"";
    STARTUPINFOW startup{sizeof startup};
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return -1;
    // This platform starts a Unix program with no process handle and leaves
    // garbage in the thread handle: closing that would close some other
    // handle of this process (its registry root, as seen). Only a real
    // process's handles are waited on and closed.
    if (!process.hProcess)
        return 0;
    WaitForSingleObject(process.hProcess, timeoutMs);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
}

bool TakeScreenshot(const std::string& name)
{
    std::string output = std::string(MAVU_BINARY_DIR_UNIX) + "/screenshots/" + name + ".png";
    std::string windowsPath = "Z:" + output;
    DeleteFileA(windowsPath.c_str());
    RunUnix(std::string(MAVU_SOURCE_DIR_UNIX) + "/tools/screenshot.sh '" + output + "'");
    // Wine hands back a Unix child's handle already signalled: wait for the
    // picture itself, which the script renames into place when complete.
    return WaitUntil([&] { return GetFileAttributesA(windowsPath.c_str()) != INVALID_FILE_ATTRIBUTES; }, 30000, 100);
}

SYSTEMTIME Shifted(const SYSTEMTIME& moment, int seconds)
{
    FILETIME file{};
    SystemTimeToFileTime(&moment, &file);
    ULARGE_INTEGER ticks{{file.dwLowDateTime, file.dwHighDateTime}};
    ticks.QuadPart += static_cast<ULONGLONG>(static_cast<LONGLONG>(seconds) * 10000000LL);
    FILETIME moved{ticks.LowPart, ticks.HighPart};
    SYSTEMTIME result{};
    FileTimeToSystemTime(&moved, &result);
    return result;
}

SYSTEMTIME UtcInSeconds(int seconds)
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    SYSTEMTIME utc = Shifted(now, seconds);
    // Event files hold whole seconds: a moment with milliseconds would not be
    // the one the program reads back.
    utc.wMilliseconds = 0;
    return utc;
}

std::string Option(const char* key, const char* value)
{
    return std::string("\t<") + key + " Value=\"" + value + "\"/>\r\n";
}

void WriteOptions(const std::wstring& folder, const std::string& elements)
{
    WriteFileBytes(folder + L"\\MAVU_options_capture.xml",
               "<?xml version='1.0'?>\r\n<!--MAVU Video Capture Version 2.1-->\r\n<Root>\r\n" + elements +
                   "</Root>\r\n");
}

std::string EventFileBytes(const SYSTEMTIME& moment, int durationSeconds, const char* asteroid, const char* star,
                           bool hibernate, bool shutdown, const char* comment)
{
    // The year as it is, the other numbers two wide, padded with a blank.
    auto number = [](int value) {
        char text[8];
        std::snprintf(text, sizeof text, "%2d", value);
        return std::string(text);
    };
    std::string body = "<?xml version='1.0'?>\r\n<!--MAVU Event File Version 2.1-->\r\n<Root>\r\n";
    body += Option("EventYear", std::to_string(moment.wYear).c_str());
    body += Option("EventMonth", number(moment.wMonth).c_str());
    body += Option("EventDay", number(moment.wDay).c_str());
    body += Option("EventHour", number(moment.wHour).c_str());
    body += Option("EventMinute", number(moment.wMinute).c_str());
    body += Option("EventSecond", number(moment.wSecond).c_str());
    body += Option("DurationHour", number(durationSeconds / 3600).c_str());
    body += Option("DurationMinute", number(durationSeconds / 60 % 60).c_str());
    body += Option("DurationSecond", number(durationSeconds % 60).c_str());
    body += Option("Hibernate", hibernate ? "TRUE" : "FALSE");
    body += Option("Shutdown", shutdown ? "TRUE" : "FALSE");
    body += Option("Comment", comment);
    body += Option("AsteroidName", asteroid);
    body += Option("StarName", star);
    return body + "</Root>\r\n";
}

std::wstring WriteEvent(const std::wstring& folder, const std::wstring& name, const SYSTEMTIME& moment,
                        int durationSeconds, const char* asteroid, const char* star, bool hibernate, bool shutdown,
                        const char* comment)
{
    CreateDirectoryW((folder + L"\\Events").c_str(), nullptr);
    std::wstring path = folder + L"\\Events\\" + name + L".mef";
    WriteFileBytes(path, EventFileBytes(moment, durationSeconds, asteroid, star, hibernate, shutdown, comment));
    return path;
}

std::string Narrow(const std::wstring& text)
{
    int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0, nullptr,
                                   nullptr);
    std::string result(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), result.data(), size, nullptr,
                        nullptr);
    return result;
}

Program::Program(std::wstring workFolder, const wchar_t* programName, std::wstring arguments)
    : folder_(std::move(workFolder)), programName_(programName ? programName : kProgramName),
      arguments_(std::move(arguments))
{
}

Program::~Program()
{
    Kill();
}

bool Program::Start(const Environment& extra)
{
    std::wstring executable = folder_ + L"\\" + programName_;
    std::wstring line = L"\"" + executable + L"\"" + (arguments_.empty() ? L"" : L" " + arguments_);
    std::wstring environment = BuildEnvironmentBlock(extra);
    STARTUPINFOW startup{sizeof startup};
    return CreateProcessW(executable.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT,
                          environment.data(), folder_.c_str(), &startup, &info_) != 0;
}

bool Program::WaitExit(DWORD timeoutMs, DWORD* exitCode)
{
    if (!info_.hProcess)
        return true;
    if (WaitForSingleObject(info_.hProcess, timeoutMs) != WAIT_OBJECT_0)
        return false;
    if (exitCode)
        GetExitCodeProcess(info_.hProcess, exitCode);
    return true;
}

bool Program::Exit(DWORD timeoutMs, DWORD* exitCode)
{
    PostCommand(MainWindow(), IDM_EXIT);
    return WaitExit(timeoutMs, exitCode);
}

bool Program::IsRunning() const
{
    return info_.hProcess && WaitForSingleObject(info_.hProcess, 0) == WAIT_TIMEOUT;
}

void Program::Kill()
{
    if (!info_.hProcess)
        return;
    if (IsRunning()) {
        TerminateProcess(info_.hProcess, 1);
        WaitForSingleObject(info_.hProcess, 10000);
    }
    CloseHandle(info_.hThread);
    CloseHandle(info_.hProcess);
    info_ = {};
}

bool Program::WaitReady(DWORD timeoutMs)
{
    ULONGLONG deadline = GetTickCount64() + timeoutMs;
    if (!WaitUntil([&] { return IsVisible(MainWindow()) && IsVisible(UserMessagesWindow()); }, timeoutMs))
        return false;
    // The message loop runs once start-up is over.
    ULONGLONG now = GetTickCount64();
    DWORD left = now < deadline ? static_cast<DWORD>(deadline - now) : 0;
    return WaitForInputIdle(info_.hProcess, left) == 0;
}

HWND Program::MainWindow() const
{
    return FindProcessWindow(info_.dwProcessId, L"MAVU_VideoCapture");
}

HWND Program::UserMessagesWindow() const
{
    return FindProcessWindow(info_.dwProcessId, L"User Messages Class", L"User Messages");
}

HWND Program::RichEdit() const
{
    HWND window = UserMessagesWindow();
    return window ? FindChild(window, L"RICHEDIT50W") : nullptr;
}

HWND Program::RecordControlsWindow() const
{
    return FindProcessWindow(info_.dwProcessId, L"RecordControlsWindow", L"Record");
}

HWND Program::StartButton() const
{
    return FindChild(RecordControlsWindow(), L"Button");
}

HWND Program::StopButton() const
{
    return GetWindow(StartButton(), GW_HWNDNEXT);
}

bool Program::WaitTitle(const wchar_t* title, DWORD timeoutMs) const
{
    return WaitUntil([&] { return WindowText(MainWindow()) == title; }, timeoutMs, 20);
}

std::wstring Program::Messages() const
{
    HWND control = RichEdit();
    return control ? WindowText(control) : std::wstring();
}

bool Program::WaitForMessage(const std::wstring& text, DWORD timeoutMs)
{
    return WaitUntil([&] { return Messages().find(text) != std::wstring::npos; }, timeoutMs, 100);
}

int Program::CountMessages(const std::wstring& text) const
{
    std::wstring all = Messages();
    int count = 0;
    for (size_t at = all.find(text); at != std::wstring::npos; at = all.find(text, at + text.size()))
        ++count;
    return count;
}

ManualRecording RecordByHand(const Program& program, DWORD ms, const std::wstring& videoFolder)
{
    std::wstring folder = videoFolder.empty() ? program.Folder() + L"\\VideoFiles" : videoFolder;
    std::vector<std::wstring> before = ListFiles(folder, L"*.avi");
    HWND stop = program.StopButton();
    Click(program.StartButton());
    if (!program.WaitTitle(kRecordingTitle, 10000))
        return {};
    Sleep(ms);
    Click(stop);
    if (!program.WaitTitle(kMainTitle, 10000))
        return {};
    ManualRecording recording;
    for (const std::wstring& name : ListFiles(folder, L"*.avi"))
        if (std::find(before.begin(), before.end(), name) == before.end())
            recording.avi = folder + L"\\" + name;
    if (recording.avi.empty())
        return {};
    std::wstring report = recording.avi.substr(0, recording.avi.size() - 4) + L".txt";
    if (!WaitUntil([&] { return GetFileAttributesW(report.c_str()) != INVALID_FILE_ATTRIBUTES; }, 10000))
        return {};
    // The report is written whole at the stop; give its writer the moment
    // to close it.
    Sleep(200);
    recording.report = ReadFileBytes(report);
    return recording;
}

}  // namespace e2e
