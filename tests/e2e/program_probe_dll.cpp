// Loaded into the program under test to look at what another process can't
// see on this platform: its main menu's state, and whether each control's
// text fits the control in the control's own font. The harness starts an
// export as a remote thread; the thread's exit code is the answer.
#include <windows.h>
#include <commctrl.h>

#include <string>

namespace {

BOOL CALLBACK FindOwnMainWindow(HWND window, LPARAM found)
{
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    wchar_t className[64] = L"";
    GetClassNameW(window, className, 64);
    if (processId != GetCurrentProcessId() || lstrcmpW(className, L"MAVU_VideoCapture") != 0)
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

DWORD MainMenuState(void* item, UINT how)
{
    HWND main = nullptr;
    EnumWindows(FindOwnMainWindow, reinterpret_cast<LPARAM>(&main));
    HMENU menu = main ? GetMenu(main) : nullptr;
    if (!menu)
        return 0xFFFFFFFFu;
    return GetMenuState(menu, static_cast<UINT>(reinterpret_cast<UINT_PTR>(item)), how);
}

// The state of a main menu item by its command number, as GetMenuState gives
// it (0xFFFFFFFF when there is no such item or no main window).
extern "C" __declspec(dllexport) DWORD WINAPI ProbeMainMenuState(void* command)
{
    return MainMenuState(command, MF_BYCOMMAND);
}

// The same for a popup of the menu bar, by its position from 0 (File).
extern "C" __declspec(dllexport) DWORD WINAPI ProbeMenuBarState(void* position)
{
    return MainMenuState(position, MF_BYPOSITION);
}

namespace {

struct Fit {
    int needWidth = 0;
    int needHeight = 0;
    int haveWidth = 0;
    int haveHeight = 0;
    bool Fits() const { return needWidth <= haveWidth && needHeight <= haveHeight; }
};

std::wstring ClassOf(HWND control)
{
    wchar_t name[64] = L"";
    GetClassNameW(control, name, 64);
    return name;
}

std::wstring TextOf(HWND control)
{
    int length = GetWindowTextLengthW(control);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(control, text.data(), length + 1)));
    return text;
}

// The size the text takes in the control's font: one line, or wrapped at
// the width given, as the control draws it.
SIZE TextSize(HDC dc, const std::wstring& text, int wrapWidth, UINT extraFormat)
{
    RECT box{0, 0, wrapWidth > 0 ? wrapWidth : 1, 0};
    UINT format = DT_CALCRECT | DT_EXPANDTABS | extraFormat | (wrapWidth > 0 ? DT_WORDBREAK : DT_SINGLELINE);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &box, format);
    return SIZE{box.right - box.left, box.bottom - box.top};
}

// What the control's text needs and what it has, or false for a control
// whose text isn't drawn as plain text (frames, pictures, edits, lists).
bool MeasureControl(HWND control, Fit& fit)
{
    std::wstring className = ClassOf(control);
    std::wstring text = TextOf(control);
    if (text.empty())
        return false;
    const LONG style = GetWindowLongW(control, GWL_STYLE);
    RECT client{};
    GetClientRect(control, &client);
    HDC dc = GetDC(control);
    HFONT font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    HGDIOBJ old = SelectObject(dc, font ? font : GetStockObject(SYSTEM_FONT));
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    bool measured = true;
    fit.haveWidth = client.right;
    fit.haveHeight = client.bottom;
    SIZE need{};
    if (lstrcmpiW(className.c_str(), L"Static") == 0) {
        // A sunken static shows a value of any length (a folder), not a
        // label; where it is cut, the program shows it whole on demand.
        const LONG type = (style & SS_SUNKEN) ? SS_ETCHEDFRAME : style & SS_TYPEMASK;
        const UINT prefix = (style & SS_NOPREFIX) ? DT_NOPREFIX : 0;
        if (type == SS_LEFT || type == SS_CENTER || type == SS_RIGHT)
            need = (style & SS_CENTERIMAGE) ? TextSize(dc, text, 0, prefix) : TextSize(dc, text, client.right, prefix);
        else if (type == SS_LEFTNOWORDWRAP || type == SS_SIMPLE)
            need = TextSize(dc, text, 0, prefix);
        else
            measured = false;
    } else if (lstrcmpiW(className.c_str(), L"Button") == 0) {
        const LONG type = style & BS_TYPEMASK;
        const bool multiline = (style & BS_MULTILINE) != 0;
        if ((style & (BS_BITMAP | BS_ICON)) || type == BS_OWNERDRAW || type == BS_GROUPBOX) {
            measured = false;
        } else if (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON) {
            // The raised edge takes 2 pixels a side.
            fit.haveWidth -= 4;
            fit.haveHeight -= 4;
            need = TextSize(dc, text, multiline ? fit.haveWidth : 0, 0);
        } else {
            // Check boxes and radio buttons: the box, then half a character
            // of space before the text.
            const int box = GetSystemMetrics(SM_CXMENUCHECK) > 13 ? GetSystemMetrics(SM_CXMENUCHECK) : 13;
            fit.haveWidth -= box + metrics.tmAveCharWidth / 2;
            need = TextSize(dc, text, multiline ? fit.haveWidth : 0, 0);
        }
    } else if (lstrcmpiW(className.c_str(), DATETIMEPICK_CLASSW) == 0) {
        // The shown text, inside the border and beside the drop-down button
        // or the spin arrows.
        fit.haveWidth -= GetSystemMetrics(SM_CXVSCROLL) + 2 * GetSystemMetrics(SM_CXEDGE) + 2;
        need = TextSize(dc, text, 0, DT_NOPREFIX);
    } else {
        measured = false;
    }
    fit.needWidth = need.cx;
    fit.needHeight = need.cy;
    SelectObject(dc, old);
    ReleaseDC(control, dc);
    return measured;
}

struct FitSurvey {
    std::wstring report;
    DWORD clipped = 0;
};

BOOL CALLBACK SurveyControl(HWND control, LPARAM surveyPointer)
{
    auto* survey = reinterpret_cast<FitSurvey*>(surveyPointer);
    Fit fit;
    if (!IsWindowVisible(control) || !MeasureControl(control, fit) || fit.Fits())
        return TRUE;
    ++survey->clipped;
    wchar_t line[160];
    wsprintfW(line, L"%s %d: needs %d by %d, has %d by %d: \"", ClassOf(control).c_str(), GetDlgCtrlID(control),
              fit.needWidth, fit.needHeight, fit.haveWidth, fit.haveHeight);
    survey->report += line + TextOf(control) + L"\"\r\n";
    return TRUE;
}

}  // namespace

// The number of visible controls of a window whose text doesn't fit them;
// each one is described in %TEMP%\mavu-text-fit-<process>-<window>.txt.
extern "C" __declspec(dllexport) DWORD WINAPI ProbeClippedTexts(void* windowHandle)
{
    HWND window = static_cast<HWND>(windowHandle);
    if (!IsWindow(window))
        return 0xFFFFFFFFu;
    FitSurvey survey;
    EnumChildWindows(window, SurveyControl, reinterpret_cast<LPARAM>(&survey));
    wchar_t path[MAX_PATH + 64] = L"";
    DWORD folder = GetTempPathW(MAX_PATH, path);
    wsprintfW(path + folder, L"mavu-text-fit-%lu-%lu.txt", GetCurrentProcessId(),
              static_cast<unsigned long>(reinterpret_cast<UINT_PTR>(window)));
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(file, survey.report.data(), static_cast<DWORD>(survey.report.size() * sizeof(wchar_t)), &written,
                  nullptr);
        CloseHandle(file);
    }
    return survey.clipped;
}
