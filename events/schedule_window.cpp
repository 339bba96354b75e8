#include "events/schedule_window.h"

#include <commctrl.h>
#include <shlwapi.h>

#include "base/name_text.h"
#include "base/report.h"
#include "base/ticks.h"
#include "events/event_dialogs.h"
#include "events/event_file.h"
#include "events/event_list_rules.h"
#include "events/event_list_view.h"
#include "events/event_queue.h"
#include "persistence/options.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"
#include "ui/picker_format.h"
#include "ui/window_layout.h"

namespace {

constexpr int kAsteroidEdit = kScheduleAsteroidEdit;
constexpr int kStarEdit = kScheduleStarEdit;
constexpr int kCommentEdit = kScheduleCommentEdit;
constexpr int kHibernateBox = kScheduleHibernateBox;
constexpr int kShutdownBox = kScheduleShutdownBox;
constexpr int kCancelButton = kScheduleCancelButton;

constexpr wchar_t kPrefixCharacters[] =
    L"Allowed characters are 'a' thru 'z', 'A' thru 'Z', '0' thru '9', '-', '_' or blank\r\n";
constexpr wchar_t kCommentCharacters[] =
    L"Allowed characters are 'a' thru 'z', 'A' thru 'Z', '0' thru '9', or {}()[].:_-+#* or blank\r\n";
constexpr wchar_t kDeleteWarning[] =
    L"WARNING: unable to delete one or more selected event files - write protected?\r\n";

HWND eventPicker = nullptr;
PickerFormat eventPickerFormat;
HWND durationPicker = nullptr;
PickerFormat durationPickerFormat;
HWND asteroidEdit = nullptr;
HWND starEdit = nullptr;
HWND commentEdit = nullptr;
HWND globalPrefixLabel = nullptr;
HWND hibernateBox = nullptr;
HWND shutdownBox = nullptr;
HWND scheduleButton = nullptr;
// The file of the event being edited, without its folder.
std::wstring editedFileName;

bool ReadPicker(HWND picker, SYSTEMTIME& time)
{
    return SendMessageW(picker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&time)) == GDT_VALID;
}

void SetPicker(HWND picker, const SYSTEMTIME& time)
{
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
    if (picker == eventPicker)
        FollowPickerMonth(eventPickerFormat);
}

std::wstring FieldText(HWND edit, int capacity)
{
    std::wstring text(static_cast<size_t>(capacity), L'\0');
    int length = GetWindowTextW(edit, text.data(), capacity);
    text.resize(static_cast<size_t>(length > 0 ? length : 0));
    return text;
}

// Keeps only the allowed characters of a name or comment field, and says
// which are allowed when it had to remove one.
void FilterField(HWND edit, bool isComment)
{
    wchar_t text[64] = L"";
    GetWindowTextW(edit, text, 64);
    if (!FilterNameCharacters(text, isComment))
        return;
    SendMessageW(edit, EM_SETSEL, 0, -1);
    SendMessageW(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text));
    ReportUserMessage(isComment ? kCommentCharacters : kPrefixCharacters, false);
}

// The Schedule button can be pressed only for a time later than the moment
// at which the window opened.
void OnEventTimeChanged()
{
    FollowPickerMonth(eventPickerFormat);
    SYSTEMTIME picked{};
    if (!ReadPicker(eventPicker, picked)) {
        ReportUserMessage(L"Unable to get datetime value\r\n", true);
        return;
    }
    EnableWindow(scheduleButton, SystemTimeToTicks(picked) > scheduleMinimumTicks);
}

void CloseScheduleWindow()
{
    scheduleMinimumTicks = ~0ull;
    ShowWindow(scheduleEventWindow, SW_HIDE);
}

void CopyInto(wchar_t* field, int capacity, const std::wstring& text)
{
    lstrcpynW(field, text.c_str(), capacity);
}

void OnSchedule()
{
    SYSTEMTIME picked{};
    ReadPicker(eventPicker, picked);
    picked.wMilliseconds = 0;
    uint64_t now = UtcNowTicks();
    if (!EventTimeFarEnoughAhead(SystemTimeToTicks(picked), now)) {
        SYSTEMTIME present = TicksToSystemTime(now);
        SetPicker(eventPicker, present);
        ReportUserMessage(L"Event time must be at least 5 seconds after\r\nthe current time to allow for camera "
                          L"restart\r\n",
                          true);
        return;
    }
    SYSTEMTIME duration{};
    ReadPicker(durationPicker, duration);

    EventFileText text{};
    FormatEventNumbers(text, picked, duration);
    CopyInto(text.hibernate, kEventNumberCapacity, IsButtonChecked(hibernateBox) ? L"TRUE" : L"FALSE");
    CopyInto(text.shutdown, kEventNumberCapacity, IsButtonChecked(shutdownBox) ? L"TRUE" : L"FALSE");
    CopyInto(text.asteroidName, kEventNameCapacity, FieldText(asteroidEdit, 21));
    CopyInto(text.starName, kEventNameCapacity, FieldText(starEdit, 21));
    CopyInto(text.comment, kEventCommentCapacity, FieldText(commentEdit, 36));

    if (!PathFileExistsW(L"Events") && !CreateDirectoryW(L"Events", nullptr)) {
        ReportUserMessage(L"\r\nUnable to create \"Events\" directory in process directory.  Check security "
                          L"settings.\r\n",
                          true);
        return;
    }
    std::wstring path = EventFileName(text, options.EventFileGlobalPrefix, picked);
    if (scheduleEditMode && !DeleteFileW((L"Events\\" + editedFileName).c_str()))
        ReportUserMessage(kDeleteWarning, true);
    // A file of the same name is replaced: two events with the same names
    // and moment are one. A failed write isn't reported.
    WriteEventFile(path.c_str(), &text);

    std::wstring name = path.substr(path.find(L'\\') + 1);
    name = name.substr(0, name.size() - 4);
    ReportUserMessage((L"Scheduled an event recording:  " + name + L"\r\n").c_str(), true);
    CloseScheduleWindow();
    FillEventList();
    LoadEvents();
}

void OnCommand(int id, int code)
{
    switch (id) {
    case kAsteroidEdit:
    case kStarEdit:
    case kCommentEdit:
        if (code == EN_CHANGE)
            FilterField(GetDlgItem(scheduleEventWindow, id), id == kCommentEdit);
        break;
    case kHibernateBox:
        if (code == BN_CLICKED && IsButtonChecked(hibernateBox))
            SetButtonChecked(shutdownBox, false);
        break;
    case kShutdownBox:
        if (code == BN_CLICKED && IsButtonChecked(shutdownBox))
            SetButtonChecked(hibernateBox, false);
        break;
    case kScheduleButton:
        if (code == BN_CLICKED)
            OnSchedule();
        break;
    case kCancelButton:
        if (code == BN_CLICKED)
            CloseScheduleWindow();
        break;
    }
}

LRESULT CALLBACK ScheduleWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_NOTIFY: {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        if (header->code == DTN_DATETIMECHANGE && header->hwndFrom == eventPicker)
            OnEventTimeChanged();
        return 0;
    }
    case WM_CLOSE:
        CloseScheduleWindow();
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, ScheduleEventWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND MakePicker(HWND parent, DWORD style, int x, int y, int width, int height, const wchar_t* format,
                PickerFormat& pickerFormat)
{
    HWND picker = CreateControl(parent, DATETIMEPICK_CLASSW, L"", style, x, y, width, height, 0,
                                appFonts[ScheduleEntryFont]);
    pickerFormat.picker = picker;
    pickerFormat.format = format;
    ApplyPickerFormat(pickerFormat);
    return picker;
}

HWND MakeEdit(HWND parent, int x, int y, int width, int id, int limit)
{
    HWND edit = CreateControl(parent, L"EDIT", L"", WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, x, y, width, 22, id,
                              appFonts[ScheduleEntryFont]);
    SendMessageW(edit, EM_SETLIMITTEXT, limit, 0);
    return edit;
}

}  // namespace

HWND CreateScheduleWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"ScheduleEvents", ScheduleWindowProc, L"Schedule Event",
                                   kPlainWindowStyle, 400, 560, ScheduleEventWindowKey);
    if (!window)
        return nullptr;
    CreateLabel(window, L"Predicted Event Date and Time (UTC):", 60, 20, 260);
    eventPicker = MakePicker(window, 0x50810000, 90, 50, 210, 30, L"MMM d',' yyyy   HH':'mm':'ss",
                             eventPickerFormat);
    CreateLabel(window, L"Recording Duration (hh:mm:ss):", 80, 110, 210);
    durationPicker = MakePicker(window, 0x50810009, 140, 140, 100, 30, L"HH':'mm':'ss", durationPickerFormat);
    CreateLabel(window, L"Optional File Prefixes (20 chars max each)", 35, 200, 280);
    CreateLabel(window, L"Asteroid:", 35, 230, 120);
    asteroidEdit = MakeEdit(window, 100, 230, 195, kAsteroidEdit, 20);
    CreateLabel(window, L"Star:", 60, 260, 80);
    starEdit = MakeEdit(window, 100, 260, 195, kStarEdit, 20);
    CreateLabel(window, L"Global Prefix:", 58, 290, 90);
    globalPrefixLabel = CreateLabel(window, L"", 155, 290, 120);
    CreateLabel(window, L"Optional Comment (35 chars max):", 60, 340, 230);
    commentEdit = MakeEdit(window, 22, 370, 330, kCommentEdit, 35);
    hibernateBox = CreateCheckBox(window, L"Hibernate after recording completed", 50, 410, 260, kHibernateBox);
    shutdownBox = CreateCheckBox(window, L"Shut down after recording completed", 50, 435, 260, kShutdownBox);
    scheduleButton = CreatePushButton(window, L"Schedule", 40, 480, 80, 28, kScheduleButton);
    CreatePushButton(window, L"Cancel", 265, 480, 80, 28, kCancelButton);
    scheduleEventWindow = window;
    return window;
}

void OpenScheduleWindow()
{
    if (!scheduleEventWindow)
        return;
    scheduleEditMode = 0;
    SetWindowTextW(scheduleEventWindow, L"Schedule Event");
    SYSTEMTIME now{};
    GetSystemTime(&now);
    SetPicker(eventPicker, now);
    scheduleMinimumTicks = SystemTimeToTicks(now);
    SetPicker(durationPicker, defaultDuration);
    SetWindowTextW(asteroidEdit, L"");
    SetWindowTextW(starEdit, L"");
    SetWindowTextW(commentEdit, L"");
    SetWindowTextW(globalPrefixLabel, options.EventFileGlobalPrefix);
    SetButtonChecked(hibernateBox, false);
    SetButtonChecked(shutdownBox, false);
    EnableWindow(scheduleButton, FALSE);
    ShowPlacedDialog(scheduleEventWindow);
}

void OpenScheduleWindowForEdit(const std::wstring& fileName)
{
    if (!scheduleEventWindow)
        return;
    SetWindowTextW(scheduleEventWindow, L"Edit Event");
    EventRecord record{};
    ReadEventFile((L"Events\\" + fileName).c_str(), record.text);
    ParseEventRecord(record);
    SetWindowTextW(asteroidEdit, record.text.asteroidName);
    SetWindowTextW(starEdit, record.text.starName);
    SetWindowTextW(commentEdit, record.text.comment);
    SetButtonChecked(hibernateBox, record.hibernate != 0);
    SetButtonChecked(shutdownBox, record.shutdown != 0);
    // The duration picker wants a valid date too: the event's.
    SYSTEMTIME duration = record.duration;
    duration.wYear = record.eventTime.wYear;
    duration.wMonth = record.eventTime.wMonth;
    duration.wDayOfWeek = record.eventTime.wDayOfWeek;
    duration.wDay = record.eventTime.wDay;
    SetPicker(eventPicker, record.eventTime);
    SetPicker(durationPicker, duration);
    scheduleMinimumTicks = UtcNowTicks();
    scheduleEditMode = 1;
    editedFileName = fileName;
    // Where it stands: the event list stays open behind it, and the Schedule
    // button stays as it was left.
    ShowWindow(scheduleEventWindow, SW_SHOW);
    BringWindowToTop(scheduleEventWindow);
}
