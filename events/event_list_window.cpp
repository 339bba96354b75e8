#include "events/event_list_window.h"

#include <commctrl.h>

#include "base/report.h"
#include "events/event_dialogs.h"
#include "events/event_list_view.h"
#include "events/event_queue.h"
#include "events/event_state.h"
#include "events/schedule_window.h"
#include "persistence/options.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"
#include "ui/window_layout.h"

HWND viewEventsWindow = nullptr;

namespace {

constexpr int kShowExpiredBox = kEventListShowExpiredBox;
constexpr int kAscendingBox = kEventListAscendingBox;
constexpr int kEditButton = kEventListEditButton;
constexpr int kDeleteButton = kEventListDeleteButton;
constexpr int kCancelButton = kEventListCancelButton;

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
    bool checked = IsButtonChecked(GetDlgItem(viewEventsWindow, id));
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
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, ViewEventsWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateEventListWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"ViewEvents", EventListWindowProc, L"View, Edit, Delete Events",
                                   kPlainWindowStyle, 940, 470, ViewEventsWindowKey);
    if (!window)
        return nullptr;
    CreateCheckBox(window, L"Show expired events", 30, 15, 170, kShowExpiredBox);
    CreateCheckBox(window, L"Ascending times", 210, 15, 170, kAscendingBox);
    SetUpEventListView(CreateControl(window, WC_LISTVIEWW, L"", LVS_REPORT | LVS_SHOWSELALWAYS | WS_BORDER, 30, 50,
                                     866, 250, 0, appFonts[EventListFont]));
    CreateLabel(window, L"Event files folder:", 30, 320, 115);
    wchar_t folder[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, folder);
    CreateLabel(window, (std::wstring(folder) + L"\\Events").c_str(), 155, 320, 770);
    CreateLabel(window, L"Selected event file:", 30, 350, 125);
    selectedLabel = CreateLabel(window, L"nothing selected", 168, 350, 700);
    editButton = CreatePushButton(window, L"Edit Selected Event", 170, 390, 150, 28, kEditButton);
    deleteButton = CreatePushButton(window, L"Delete Selected Event(s)", 360, 390, 186, 28, kDeleteButton);
    CreatePushButton(window, L"Cancel", 585, 390, 80, 28, kCancelButton);
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
