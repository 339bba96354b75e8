// One run of the program in the running test's own folder, with its
// synthetic cameras, and what most scenarios ask of it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "device/graph_helpers.h"
#include "e2e/harness.h"
#include "support/ffprobe.h"

namespace e2e {

using Rows = std::vector<std::wstring>;

inline SIZE Size(HWND window)
{
    RECT rect = WindowRect(window);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

inline Rows ListRows(HWND list)
{
    Rows rows;
    LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT row = 0; row < count; ++row) {
        wchar_t text[300] = {};
        if (SendMessageW(list, LB_GETTEXTLEN, row, 0) < 300)
            SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text));
        rows.push_back(text);
    }
    return rows;
}

inline bool Checked(HWND button)
{
    return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

// A slider moved by a page, as by a click beside the thumb.
inline void MoveSlider(HWND slider, int position)
{
    SendMessageW(slider, TBM_SETPOS, TRUE, position);
    SendMessageW(GetParent(slider), WM_HSCROLL, MAKEWPARAM(TB_PAGEDOWN, 0), reinterpret_cast<LPARAM>(slider));
}

// The thumb dragged: the position comes with the notification.
inline void DragSlider(HWND slider, int position, WORD code = TB_THUMBTRACK)
{
    SendMessageW(slider, TBM_SETPOS, TRUE, position);
    SendMessageW(GetParent(slider), WM_HSCROLL, MAKEWPARAM(code, static_cast<WORD>(position)),
                 reinterpret_cast<LPARAM>(slider));
}

// "mm_dd_yyyy_hh_mm_ss" of a moment, as the program names files by it.
inline std::wstring TimeName(const SYSTEMTIME& time)
{
    wchar_t text[32];
    std::swprintf(text, 32, L"%02u_%02u_%04u_%02u_%02u_%02u", time.wMonth, time.wDay, time.wYear, time.wHour,
                  time.wMinute, time.wSecond);
    return text;
}

struct ProgramRun {
    devicetest::SyntheticDevices devices;
    std::wstring folder = MakeWorkFolderForCurrentTest();
    std::unique_ptr<Program> program;
    // The window the last Open showed.
    HWND window = nullptr;

    // The options file with VMR9 as the renderer and `options`, then the program.
    bool Start(const std::string& options = "", const Environment& environment = {})
    {
        WriteOptions(folder, Option("DefaultRenderer", "VMR9") + options);
        return Run(environment);
    }
    // Sky Cam, a webcam, then Start; false too when the picture's window is missing.
    bool StartWithSkyCam(const std::string& options = "")
    {
        return devices.Add(L"Sky Cam", L"webcam") && Start(options) && Clipping();
    }
    // The program again, on the folder as it stands.
    bool Run(const Environment& environment = {}, DWORD readyMs = kStartTimeoutMs)
    {
        program = std::make_unique<Program>(folder);
        return program->Start(environment) && program->WaitReady(readyMs);
    }
    HWND Main() const { return program->MainWindow(); }
    HWND Clipping() const { return FindChild(Main(), L"MavuVideoRecordWindow"); }
    HWND Window(const wchar_t* className) const { return FindProcessWindow(program->ProcessId(), className); }
    // Opens a window by its menu command; null unless it shows.
    HWND Open(unsigned command, const wchar_t* className)
    {
        SendCommand(Main(), command);
        window = Window(className);
        return window && IsVisible(window) ? window : nullptr;
    }
    HWND Item(int id) const { return GetDlgItem(window, id); }
    bool Checked(int id) const { return e2e::Checked(Item(id)); }
    Rows RowsOf(int listId) const { return ListRows(Item(listId)); }
    int Selected(int listId) const { return static_cast<int>(SendMessageW(Item(listId), LB_GETCURSEL, 0, 0)); }
    // A click on a row: the list box tells its window.
    void Choose(int listId, int row) const
    {
        SendMessageW(Item(listId), LB_SETCURSEL, row, 0);
        SendMessageW(window, WM_COMMAND, MAKEWPARAM(listId, LBN_SELCHANGE), reinterpret_cast<LPARAM>(Item(listId)));
    }
    bool WaitTitle(const wchar_t* title, DWORD timeoutMs) const { return program->WaitTitle(title, timeoutMs); }
    int Count(const std::wstring& text) const { return program->CountMessages(text); }
    std::string OptionsFile() const { return ReadFileBytes(folder + L"\\MAVU_options_capture.xml"); }
    std::wstring Videos() const { return folder + L"\\VideoFiles"; }
    std::wstring VideoPath(const std::wstring& name) const { return Videos() + L"\\" + name; }
    // The video folder's recordings by name, once `reports` reports stand beside them; none when they don't come.
    std::vector<std::wstring> Recordings(size_t reports = 1, DWORD timeoutMs = 10000) const
    {
        if (!WaitUntil([&] { return ListFiles(Videos(), L"*.txt").size() >= reports; }, timeoutMs))
            return {};
        std::vector<std::wstring> avis = ListFiles(Videos(), L"*.avi");
        std::sort(avis.begin(), avis.end());
        return avis;
    }
    // The report beside a recording in the video folder.
    std::string ReportOf(const std::wstring& avi) const
    {
        return ReadFileBytes(VideoPath(avi.substr(0, avi.size() - 4) + L".txt"));
    }
    // A cable pulled or plugged, then the system's word that something changed.
    LRESULT Pull(const std::wstring& name) { return devices.Pull(name) ? SendDeviceChange(Main()) : -2; }
    LRESULT Plug(const std::wstring& name) { return devices.Add(name, L"webcam") ? SendDeviceChange(Main()) : -2; }
};

// A short recording by hand: its report and its file are at this size, rate and standard, and, when asked, the
// file's frames can be counted.
inline void ExpectRecordedAt(const Program& program, int width, int height, const char* rate, const char* standard,
                             bool framesCounted = true)
{
    ManualRecording recording = RecordByHand(program);
    const std::string& report = recording.report;
    ASSERT_FALSE(report.empty());
    std::string size = std::to_string(width) + "x" + std::to_string(height);
    EXPECT_NE(report.find("Frame size: " + size + "\r\r\n"), std::string::npos) << report;
    EXPECT_NE(report.find(std::string("Frame rate: ") + rate + "\r\r\n"), std::string::npos) << report;
    EXPECT_NE(report.find(std::string("Source device format: ") + standard + "\r\r\n"), std::string::npos) << report;
    testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(recording.avi));
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_EQ(video.width, width);
    EXPECT_EQ(video.height, height);
    if (framesCounted) {
        EXPECT_GT(video.frames, 0) << video.raw;
    }
}

}  // namespace e2e
