// Drives the real program from outside, as a user would: starts it in a
// fresh working folder, finds its windows, sends commands and clicks, reads
// what it shows, and waits for conditions with a timeout.
#pragma once

#include <windows.h>

#include "support/file_bytes.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace e2e {

constexpr DWORD kStartTimeoutMs = 20000;
constexpr wchar_t kMainTitle[] = L"MAVU Video Capture Version 2.1";
constexpr wchar_t kPendingTitle[] = L"MAVU Video Capture -- Event pending";
constexpr wchar_t kRecordingTitle[] = L"MAVU Video Capture -- Recording in progress";

using Environment = std::vector<std::pair<std::wstring, std::wstring>>;

// Folder of the test executable, where the program and its icons are built.
std::wstring BinFolder();

// A fresh folder for one scenario, under the build tree, holding a copy of
// the program and its icons. The program's relative paths resolve there.
std::wstring MakeWorkFolder(const std::wstring& name, const wchar_t* programName = nullptr);

// The folder named after the running test: "<suite>.<test>". The program's
// copy may be given another file name.
std::wstring MakeWorkFolderForCurrentTest(const wchar_t* programName = nullptr);

bool WaitUntil(const std::function<bool()>& condition, DWORD timeoutMs, DWORD intervalMs = 50);

// Top-level window of a process by class and (optionally) title.
HWND FindProcessWindow(DWORD processId, const wchar_t* className, const wchar_t* title = nullptr);
// First child (at any depth) by class and (optionally) text.
HWND FindChild(HWND parent, const wchar_t* className, const wchar_t* text = nullptr);
// The process's top-level window by class and (optionally) title once it is
// visible; null when none shows in time.
HWND WaitForWindow(DWORD processId, const wchar_t* className, const wchar_t* title = nullptr, DWORD timeoutMs = 10000);
// The window's thread answers within five seconds (a hung or crashed
// program's doesn't).
bool Answers(HWND window);

std::wstring WindowText(HWND window);
std::wstring ClassName(HWND window);
bool IsVisible(HWND window);
bool IsEnabled(HWND window);
RECT WindowRect(HWND window);
void Click(HWND button);
void SendCommand(HWND window, unsigned id);
void PostCommand(HWND window, unsigned id);

// Tells the program that device nodes came or went, as the system would
// (WM_DEVICECHANGE with DBT_DEVNODES_CHANGED): this platform has no device
// node to tell it. Returns the program's answer, 1 for a change handled and
// 0 for one dropped; -1 when no answer came in time.
LRESULT SendDeviceChange(HWND mainWindow, DWORD timeoutMs = 60000);

// Files in a folder matching a pattern ("*.txt"), names only.
std::vector<std::wstring> ListFiles(const std::wstring& folder, const wchar_t* pattern);

// Starts a Unix shell command (the test runs under Wine). Wine doesn't wait
// for a Unix child: callers wait for what the command makes.
int RunUnix(const std::string& command, DWORD timeoutMs = 60000);
// Takes a picture of the whole display into <build>/screenshots/<name>.png.
bool TakeScreenshot(const std::string& name);

// Turns a wide text into UTF-8 for test output.
std::string Narrow(const std::wstring& text);

// A moment moved by some seconds.
SYSTEMTIME Shifted(const SYSTEMTIME& moment, int seconds);
// The present UTC time moved by some seconds, in whole seconds.
SYSTEMTIME UtcInSeconds(int seconds);
// The bytes of an event file as the program writes it, for an event at a
// UTC moment. The texts are the file's bytes.
std::string EventFileBytes(const SYSTEMTIME& moment, int durationSeconds, const char* asteroid = "",
                           const char* star = "", bool hibernate = false, bool shutdown = false,
                           const char* comment = "");
// Writes those bytes as "Events\NAME.mef" in the folder; returns the file's
// path.
std::wstring WriteEvent(const std::wstring& folder, const std::wstring& name, const SYSTEMTIME& moment,
                        int durationSeconds, const char* asteroid = "", const char* star = "", bool hibernate = false,
                        bool shutdown = false, const char* comment = "");
// Writes the options file with the given elements ("\t<Key Value=\"...\"/>" lines).
void WriteOptions(const std::wstring& folder, const std::string& elements);
// The element line of one option.
std::string Option(const char* key, const char* value);

// One run of the program.
class Program {
public:
    // The program of that name in the folder, started there with the
    // arguments.
    explicit Program(std::wstring workFolder, const wchar_t* programName = nullptr, std::wstring arguments = L"");
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool Start(const Environment& extra = {});
    bool WaitExit(DWORD timeoutMs, DWORD* exitCode = nullptr);
    // File, Exit; true once the process has ended.
    bool Exit(DWORD timeoutMs = 30000, DWORD* exitCode = nullptr);
    bool IsRunning() const;
    void Kill();
    DWORD ProcessId() const { return info_.dwProcessId; }
    const std::wstring& Folder() const { return folder_; }

    // Waits until start-up is over: the main window and User Messages are
    // up and the queued start-up lines have been shown.
    bool WaitReady(DWORD timeoutMs = kStartTimeoutMs);
    bool StartReady() { return Start() && WaitReady(); }

    HWND MainWindow() const;
    HWND UserMessagesWindow() const;
    HWND RichEdit() const;
    HWND RecordControlsWindow() const;
    // The Record window's Start and Stop buttons.
    HWND StartButton() const;
    HWND StopButton() const;
    bool WaitTitle(const wchar_t* title, DWORD timeoutMs) const;

    // The User Messages text as the control gives it.
    std::wstring Messages() const;
    bool WaitForMessage(const std::wstring& text, DWORD timeoutMs);
    // Number of times a text stands in User Messages.
    int CountMessages(const std::wstring& text) const;

private:
    std::wstring folder_;
    std::wstring programName_;
    std::wstring arguments_;
    PROCESS_INFORMATION info_{};
};

// A recording made by hand with the Record window's buttons.
struct ManualRecording {
    std::wstring avi;  // full path; empty when a step failed
    std::string report;  // the report's bytes
};
// Clicks Start, records for about `ms`, clicks Stop and waits for the new
// file's report; the files go to `videoFolder` (the program's default
// "VideoFiles" when empty).
ManualRecording RecordByHand(const Program& program, DWORD ms = 2000, const std::wstring& videoFolder = L"");

}  // namespace e2e
