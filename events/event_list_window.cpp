#include "events/event_list_window.h"

#include <commctrl.h>

#include "base/report.h"
#include "events/event_dialogs.h"
#include "events/event_list_view.h"
#include "events/event_queue.h"
#include "events/event_state.h"
#include "events/schedule_window.h"
#include "persistence/options.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"
#include "ui/window_layout.h"

HWND viewEventsWindow = nullptr;

namespace {

constexpr int kShowExpiredBox = 32968;
constexpr int kAscendingBox = 32969;
constexpr int kEditButton = 32970;
constexpr int kDeleteButton = 32971;
constexpr int kCancelButton = 32972;

HWND selectedLabel = nullptr;
HWND editButton = nullptr;
HWND deleteButton = nullptr;

int SelectedCount()
{
    return static_cast<int>(SendMessageW(eventListView, LVM_GETSELECTEDCOUNT, 0, 0));
}

// A click in the list: Delete for any selection, Edit for exactly one.
void OnListClick()
{
    int selected = SelectedCount();
    EnableWindow(deleteButton, selected >= 1);
    if (selected == 0)
        SetWindowTextW(selectedLabel, L"nothing selected");
    else if (selected > 1)
        SetWindowTextW(selectedLabel, L"multiple events selected");
    EnableWindow(editButton, selected == 1);
    if (selected == 1) {
        int mark = static_cast<int>(SendMessageW(eventListView, LVM_GETSELECTIONMARK, 0, 0));
        SetWindowTextW(selectedLabel, EventFileNameOfRow(mark).c_str());
    }
}

void OnEdit()
{
    int row = static_cast<int>(SendMessageW(eventListView, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    if (row < 0)
        return;
    OpenScheduleWindowForEdit(EventFileNameOfRow(row));
}

void OnDelete()
{
    // The question counts the rows of the list, not the selected ones.
    int rows = static_cast<int>(SendMessageW(eventListView, LVM_GETITEMCOUNT, 0, 0));
    const wchar_t* question = rows >= 2 ? L"You are about to delete event files.  Continue?"
                                        : L"You are about to delete an event file.  Continue?";
    if (MessageBoxW(nullptr, question, L"Attention", MB_YESNO | MB_ICONINFORMATION) == IDNO)
        return;
    int deleted = 0;
    for (const std::wstring& name : SelectedEventFileNames()) {
        if (DeleteFileW((L"Events\\" + name).c_str()))
            ++deleted;
        else
            ReportUserMessage(L"WARNING: unable to delete one or more selected event files - write protected?\r\n",
                              true);
    }
    if (deleted > 0) {
        if (eventPending)
            CancelCountdown();
        EnableWindow(editButton, FALSE);
        EnableWindow(deleteButton, FALSE);
    }
    LoadEvents();
    FillEventList();
}

void OnCheckBox(int id)
{
    bool checked = SendMessageW(GetDlgItem(viewEventsWindow, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
    if (id == kShowExpiredBox)
        showExpiredEvents = checked;
    else
        ascendingEventTimes = checked;
    FillEventList();
}

LRESULT CALLBACK EventListWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED)
            break;
        switch (LOWORD(wParam)) {
        case kShowExpiredBox:
        case kAscendingBox:
            OnCheckBox(LOWORD(wParam));
            break;
        case kEditButton:
            OnEdit();
            break;
        case kDeleteButton:
            OnDelete();
            break;
        case kCancelButton:
            ShowWindow(window, SW_HIDE);
            break;
        }
        return 0;
    case WM_NOTIFY: {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        if (header->hwndFrom == eventListView && header->code == NM_CLICK)
            OnListClick();
        return 0;
    }
    case WM_CLOSE:
        ShowWindow(window, SW_HIDE);
        return 0;
    case WM_MOVE:
        TrackWindowPosition(window, ViewEventsWindowKey);
        break;
    case WM_CTLCOLORSTATIC:
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateEventListWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"ViewEvents", EventListWindowProc, L"View, Edit, Delete Events",
                                   kPlainWindowStyle, 940, 470, ViewEventsWindowKey);
    if (!window)
        return nullptr;
    HFONT text = appFonts[DialogStaticFont];
    HFONT button = appFonts[DialogButtonFont];
    CreateControl(window, L"BUTTON", L"Show expired events", BS_AUTOCHECKBOX, 30, 15, 170, 25, kShowExpiredBox, text);
    CreateControl(window, L"BUTTON", L"Ascending times", BS_AUTOCHECKBOX, 210, 15, 170, 25, kAscendingBox, text);
    SetUpEventListView(CreateControl(window, WC_LISTVIEWW, L"", LVS_REPORT | LVS_SHOWSELALWAYS | WS_BORDER, 30, 50,
                                     866, 250, 0, appFonts[EventListFont]));
    CreateControl(window, L"STATIC", L"Event files folder:", SS_LEFT, 30, 320, 115, 20, 0, text);
    wchar_t folder[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, folder);
    CreateControl(window, L"STATIC", (std::wstring(folder) + L"\\Events").c_str(), SS_LEFT, 155, 320, 770, 20, 0,
                  text);
    CreateControl(window, L"STATIC", L"Selected event file:", SS_LEFT, 30, 350, 125, 20, 0, text);
    selectedLabel = CreateControl(window, L"STATIC", L"nothing selected", SS_LEFT, 168, 350, 700, 20, 0, text);
    editButton = CreateControl(window, L"BUTTON", L"Edit Selected Event", BS_PUSHBUTTON, 170, 390, 150, 28,
                               kEditButton, button);
    deleteButton = CreateControl(window, L"BUTTON", L"Delete Selected Event(s)", BS_PUSHBUTTON, 360, 390, 186, 28,
                                 kDeleteButton, button);
    CreateControl(window, L"BUTTON", L"Cancel", BS_PUSHBUTTON, 585, 390, 80, 28, kCancelButton, button);
    viewEventsWindow = window;
    return window;
}

void OpenEventListWindow()
{
    if (!viewEventsWindow)
        return;
    FillEventList();
    EnableWindow(editButton, FALSE);
    EnableWindow(deleteButton, FALSE);
    SetWindowTextW(selectedLabel, L"nothing selected");
    ShowPlacedDialog(viewEventsWindow);
}
