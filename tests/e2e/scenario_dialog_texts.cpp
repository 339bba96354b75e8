// Every window's static texts, buttons, check boxes and date pickers show
// their whole text in the program's own fonts, measured inside the program.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "e2e/program_run.h"
#include "e2e/program_windows.h"
#include "e2e/remote_probe.h"
#include "support/stand_ins.h"
#include "support/synthetic_gps.h"

using namespace e2e;

namespace {

// Texts that the windows' fixed layout gives too little room in this
// platform's fonts (Wine's Tahoma, and a 0.60 em fixed face where Consolas
// is 0.55 em). They are listed here so that any other cut text fails.
struct TooNarrow {
    const wchar_t* window;
    const wchar_t* text;  // the start of the control's text
};
const TooNarrow kTooNarrow[] = {
    {L"ScheduleEvents", L"Predicted Event Date and Time (UTC):"},
    {L"ScheduleEvents", L"Recording Duration (hh:mm:ss):"},
    {L"ScheduleEvents", L"Optional File Prefixes (20 chars max each)"},
    {L"ScheduleEvents", L"Global Prefix:"},
    {L"ScheduleEvents", L"Optional Comment (35 chars max):"},
    {L"ScheduleEvents", L"Hibernate after recording completed"},
    {L"ScheduleEvents", L"Shut down after recording completed"},
    // The two pickers: the event's date and time, and the duration.
    {L"ScheduleEvents", L"SysDateTimePick32"},
    {L"ViewEvents", L"Event files folder:"},
    {L"ViewEvents", L"Selected event file:"},
    {L"ViewEvents", L"Edit Selected Event"},
    {L"ViewEvents", L"Delete Selected Event(s)"},
};

bool IsKnownTooNarrow(const std::wstring& windowClass, const std::wstring& line)
{
    for (const TooNarrow& known : kTooNarrow) {
        if (windowClass != known.window)
            continue;
        if (line.rfind(known.text, 0) == 0 || line.find(L": \"" + std::wstring(known.text)) != std::wstring::npos)
            return true;
    }
    return false;
}

void ExpectEveryTextFits(DWORD processId, HWND window)
{
    std::wstring report;
    ASSERT_GE(ClippedTexts(processId, window, &report), 0);
    const std::wstring windowClass = ClassName(window);
    std::wstring unexpected;
    for (size_t start = 0; start < report.size();) {
        size_t end = report.find(L"\r\n", start);
        std::wstring line = report.substr(start, end == std::wstring::npos ? std::wstring::npos : end - start);
        start = end == std::wstring::npos ? report.size() : end + 2;
        if (!IsKnownTooNarrow(windowClass, line))
            unexpected += line + L"\n";
        else
            std::printf("too narrow at its given size: %s %s\n", Narrow(windowClass).c_str(), Narrow(line).c_str());
    }
    EXPECT_TRUE(unexpected.empty()) << Narrow(windowClass) << " \"" << Narrow(WindowText(window)) << "\":\n"
                                    << Narrow(unexpected);
}

}  // namespace

TEST(Dialogs, EveryTextFitsItsControlInItsOwnFont)
{
    testsupport::RegisteredColorControl colorControl;
    testsupport::SyntheticGps receiver;
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    ProgramRun run;
    // An event ahead keeps the countdown window up with all its lines.
    WriteEvent(run.folder, L"Vesta_TYC1234", UtcInSeconds(600), 30, "Vesta", "TYC1234", false, false, "Rehearsal");
    ASSERT_TRUE(run.StartWithSkyCam());
    const DWORD process = run.program->ProcessId();

    HWND countdown = WaitForWindow(process, L"CountdownWindow");
    ASSERT_NE(countdown, nullptr);
    // The digits (the one centred text) once the first second has ticked.
    HWND digits = nullptr;
    for (HWND child = GetWindow(countdown, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if ((GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK) == SS_CENTER)
            digits = child;
    ASSERT_NE(digits, nullptr);
    ASSERT_TRUE(WaitUntil([&] { return WindowText(digits).size() >= 5; }, 5000));
    ExpectEveryTextFits(process, countdown);
    TakeScreenshot("dialog-CountdownWindow");

    for (const CommandWindow& entry : kCommandWindows) {
        SCOPED_TRACE(Narrow(entry.className));
        SendCommand(run.Main(), entry.command);
        HWND window = WaitForWindow(process, entry.className, nullptr, 60000);
        if (!window) {
            ADD_FAILURE() << "did not open";
            continue;
        }
        ExpectEveryTextFits(process, window);
        TakeScreenshot("dialog-" + Narrow(entry.className));
        SendMessageW(window, WM_CLOSE, 0, 0);
    }
    EXPECT_TRUE(run.program->Exit());
}
