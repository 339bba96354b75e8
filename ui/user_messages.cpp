#include "ui/user_messages.h"

#include <richedit.h>

#include <mutex>

#include "base/time_text.h"

#ifndef EM_SETPAGEROTATE
#define EM_SETPAGEROTATE (WM_USER + 235)
#endif

Flag userMessagesWindowReady{0};
HWND richEdit = nullptr;

namespace {

// Lines reported before the window existed. Only the user-interface thread
// reports that early, but a lock costs nothing here.
std::mutex queueLock;
std::vector<std::wstring> pendingMessages;

}  // namespace

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
    if (withTimeStamp)
        stamp = UtcClockText();
    // Built per call, so callers on different threads can't spoil each
    // other's entry.
    std::wstring entry = ComposeUserMessageEntry(text, withTimeStamp ? stamp.c_str() : nullptr);

    HWND control = richEdit;
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
    for (size_t i = 0; i < queue.size(); ++i)
        AppendUserMessage(queue[i].c_str(), i == 0);
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
    richEdit = control;
    return control;
}

std::wstring UserMessagesText()
{
    GETTEXTLENGTHEX lengthRequest{GTL_USECRLF | GTL_NUMCHARS, 1200};
    LRESULT length = SendMessageW(richEdit, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&lengthRequest), 0);
    if (length <= 0)
        return {};
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    GETTEXTEX textRequest{};
    textRequest.cb = static_cast<DWORD>((length + 1) * sizeof(wchar_t));
    textRequest.flags = GT_USECRLF;
    textRequest.codepage = 1200;
    LRESULT copied = SendMessageW(richEdit, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&textRequest),
                                  reinterpret_cast<LPARAM>(text.data()));
    text.resize(copied > 0 ? static_cast<size_t>(copied) : 0);
    return text;
}

void ClearUserMessages()
{
    SendMessageW(richEdit, EM_SETSEL, 0, -1);
    SendMessageW(richEdit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
}
