#include "ui/user_messages.h"

#include <richedit.h>

#include <mutex>

#include "app/app_state.h"
#include "app/commands.h"
#include "persistence/options.h"
#include "ui/message_log.h"
#include "ui/window_layout.h"

#ifndef EM_SETPAGEROTATE
#define EM_SETPAGEROTATE (WM_USER + 235)
#endif

namespace {

HWND richEditControl = nullptr;

// Lines reported before the window existed. Only the user-interface thread
// reports that early, but a lock costs nothing here.
std::mutex queueLock;
std::vector<std::wstring> pendingMessages;

LRESULT CALLBACK UserMessagesWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MOVE: {
        if (startingUp || repositioning)
            break;
        KeepWindowOnScreen(window);
        RECT rect;
        GetWindowRect(window, &rect);
        if (rect.left >= -10000 && rect.top >= -10000) {
            options.windows[MessageWindowKey].currentLeft = rect.left;
            options.windows[MessageWindowKey].currentTop = rect.top;
        }
        break;
    }
    case WM_SIZE: {
        if (startingUp)
            break;
        RECT rect;
        GetWindowRect(window, &rect);
        if (rect.left < -10000 || rect.top < -10000)
            break;
        int width = rect.right - rect.left;
        int height = rect.bottom - rect.top;
        options.messageWindowWidth = width;
        options.messageWindowHeight = height;
        // Sized by the main window's frame, not this window's: that is how
        // the control has always sat in it.
        if (richEditControl)
            SetWindowPos(richEditControl, nullptr, 0, 0, width - frameWidth, height - frameHeight,
                         SWP_NOZORDER | SWP_NOMOVE | SWP_NOACTIVATE);
        break;
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDM_SAVE_MESSAGES:
            SaveUserMessages(false);
            return 0;
        case IDM_SAVE_MESSAGES_AND_CLEAR:
            SaveUserMessages(true);
            return 0;
        }
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

std::wstring FormatTimeOfDay(const SYSTEMTIME& time)
{
    wchar_t text[32] = L"";
    GetTimeFormatEx(nullptr, TIME_NOTIMEMARKER | TIME_FORCE24HOURFORMAT, &time, L"HH':'mm':'ss", text, 32);
    return text;
}

std::wstring ComposeUserMessageEntry(const wchar_t* text, const wchar_t* timeStamp)
{
    std::wstring entry = L"\r\n";
    if (timeStamp) {
        entry += timeStamp;
        entry += L" (UTC)\r\n";
    }
    entry += text;
    return entry;
}

int CountLineFeeds(const std::wstring& text)
{
    int count = 0;
    for (wchar_t c : text)
        count += c == L'\n';
    return count;
}

std::vector<QueuedEntry> QueuedEntriesInFlushOrder(const std::vector<std::wstring>& queue)
{
    std::vector<QueuedEntry> entries;
    for (size_t i = 0; i < queue.size(); ++i)
        entries.push_back({queue[i], i == 0});
    return entries;
}

void ReportUserMessage(const wchar_t* text, bool withTimeStamp)
{
    if (userMessagesWindowReady)
        AppendUserMessage(text, withTimeStamp);
    else
        QueueUserMessage(text);
}

void AppendUserMessage(const wchar_t* text, bool withTimeStamp)
{
    std::wstring stamp;
    if (withTimeStamp) {
        SYSTEMTIME now;
        GetSystemTime(&now);
        stamp = FormatTimeOfDay(now);
    }
    // Built per call, so callers on different threads can't spoil each
    // other's entry.
    std::wstring entry = ComposeUserMessageEntry(text, withTimeStamp ? stamp.c_str() : nullptr);

    HWND control = richEditControl;
    int length = GetWindowTextLengthW(control);
    SendMessageW(control, EM_SETSEL, length, length);
    SendMessageW(control, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(entry.c_str()));

    SCROLLINFO scroll{sizeof scroll, SIF_ALL};
    if (GetScrollInfo(control, SB_VERT, &scroll))
        SendMessageW(control, EM_LINESCROLL, 0, CountLineFeeds(entry));
    UpdateWindow(control);
}

void QueueUserMessage(const wchar_t* text)
{
    std::lock_guard<std::mutex> hold(queueLock);
    pendingMessages.emplace_back(text);
}

std::vector<std::wstring> TakeQueuedUserMessages()
{
    std::lock_guard<std::mutex> hold(queueLock);
    std::vector<std::wstring> queue;
    queue.swap(pendingMessages);
    return queue;
}

void FlushQueuedUserMessages()
{
    std::vector<std::wstring> queue = TakeQueuedUserMessages();
    for (const QueuedEntry& entry : QueuedEntriesInFlushOrder(queue))
        AppendUserMessage(entry.text.c_str(), entry.withTimeStamp);
}

HWND CreateUserMessagesWindow(HINSTANCE instance, int width, int height)
{
    WNDCLASSEXW windowClass{sizeof windowClass};
    windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_NOCLOSE;
    windowClass.lpfnWndProc = UserMessagesWindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    windowClass.lpszClassName = L"User Messages Class";
    RegisterClassExW(&windowClass);
    return CreateWindowExW(0, L"User Messages Class", L"User Messages", 0xCE0000, 0, 0, width, height, nullptr,
                           nullptr, instance, nullptr);
}

HWND CreateUserMessagesRichEdit(HWND parent)
{
    HWND control = CreateWindowExW(WS_EX_CLIENTEDGE, L"RICHEDIT50W", L"",
                                   WS_CHILD | WS_VSCROLL | ES_MULTILINE | ES_READONLY, 0, 0, 100, 100, parent,
                                   nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!control) {
        ReportUserMessage(L"FATAL: cannot create rich edit window as child of User Messages window\r\n", false);
        return nullptr;
    }
    SendMessageW(control, EM_SETPAGEROTATE, 0, 0);
    SendMessageW(control, EM_SETBKGNDCOLOR, 0, RGB(225, 225, 225));
    SendMessageW(control, EM_SETMARGINS, EC_LEFTMARGIN, MAKELPARAM(7, 0));

    PARAFORMAT2 paragraph{};
    paragraph.cbSize = sizeof paragraph;
    paragraph.dwMask = PFM_SPACEBEFORE | PFM_SPACEAFTER | PFM_LINESPACING;
    paragraph.bLineSpacingRule = 0;
    SendMessageW(control, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&paragraph));

    CHARFORMAT2W character{};
    character.cbSize = sizeof character;
    character.dwMask = CFM_SIZE | CFM_FACE;
    character.yHeight = 200;
    wcscpy(character.szFaceName, L"Tahoma");
    SendMessageW(control, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&character));

    SetWindowTextW(control, L"");
    richEditControl = control;
    return control;
}

HWND UserMessagesRichEdit()
{
    return richEditControl;
}

std::wstring UserMessagesText()
{
    GETTEXTLENGTHEX lengthRequest{GTL_USECRLF | GTL_NUMCHARS, 1200};
    LRESULT length = SendMessageW(richEditControl, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&lengthRequest), 0);
    if (length <= 0)
        return {};
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    GETTEXTEX textRequest{};
    textRequest.cb = static_cast<DWORD>((length + 1) * sizeof(wchar_t));
    textRequest.flags = GT_USECRLF;
    textRequest.codepage = 1200;
    LRESULT copied = SendMessageW(richEditControl, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&textRequest),
                                  reinterpret_cast<LPARAM>(text.data()));
    text.resize(copied > 0 ? static_cast<size_t>(copied) : 0);
    return text;
}

void ClearUserMessages()
{
    SendMessageW(richEditControl, EM_SETSEL, 0, -1);
    SendMessageW(richEditControl, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
}
