#include "events/event_list_view.h"

#include <commctrl.h>

#include <memory>

#include "base/scoped_handles.h"
#include "events/event_dialogs.h"
#include "events/event_file.h"
#include "events/event_list_rules.h"

HWND eventListView = nullptr;

namespace {

struct Column {
    const wchar_t* header;
    int width;
    int format;
};

const Column kColumns[kEventListColumns] = {
    {L" Date (UTC)", 115, LVCFMT_LEFT}, {L"Time (UTC)", 93, LVCFMT_LEFT},  {L"Duration", 85, LVCFMT_LEFT},
    {L"Comment", 293, LVCFMT_LEFT},     {L"Hibernate", 88, LVCFMT_CENTER}, {L"Shut down", 88, LVCFMT_CENTER},
    {L"Expired", 80, LVCFMT_CENTER},    {L"", 0, LVCFMT_CENTER},
};

// One file of the folder, read for the list.
struct ListedEvent {
    std::unique_ptr<EventRecord> record;
    std::wstring fileName;
    bool textRead;
};

void AddRow(int row, const std::array<std::wstring, kEventListColumns>& cells)
{
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = 0;
    item.pszText = const_cast<wchar_t*>(cells[0].c_str());
    int index = static_cast<int>(SendMessageW(eventListView, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
    if (index < 0)
        return;
    for (int column = 1; column < kEventListColumns; ++column) {
        LVITEMW cell{};
        cell.mask = LVIF_TEXT;
        cell.iItem = index;
        cell.iSubItem = column;
        cell.pszText = const_cast<wchar_t*>(cells[column].c_str());
        SendMessageW(eventListView, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&cell));
    }
}

}  // namespace

void SetUpEventListView(HWND listView)
{
    eventListView = listView;
    SendMessageW(listView, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    for (int i = 0; i < kEventListColumns; ++i) {
        LVCOLUMNW column{};
        column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
        column.fmt = kColumns[i].format;
        column.cx = kColumns[i].width;
        column.pszText = const_cast<wchar_t*>(kColumns[i].header);
        column.iSubItem = i;
        SendMessageW(listView, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
}

void FillEventList()
{
    if (!eventListView)
        return;
    SendMessageW(eventListView, LVM_DELETEALLITEMS, 0, 0);
    WIN32_FIND_DATAW found{};
    ScopedFindHandle search(FindFirstFileW(L"Events\\*.mef", &found));
    if (!search)
        return;
    std::vector<ListedEvent> events;
    do {
        ListedEvent event{std::make_unique<EventRecord>(), found.cFileName, false};
        std::wstring path = std::wstring(L"Events\\") + found.cFileName;
        event.textRead = ReadEventFile(path.c_str(), event.record->text) == 1;
        ParseEventRecord(*event.record);
        if (!event.record->expired || showExpiredEvents)
            events.push_back(std::move(event));
    } while (FindNextFileW(search.Get(), &found));

    std::vector<uint64_t> starts;
    for (const ListedEvent& event : events)
        starts.push_back(event.record->startTicks);
    int row = 0;
    for (size_t index : EventListOrder(starts, ascendingEventTimes != 0)) {
        const ListedEvent& event = events[index];
        AddRow(row++, EventListCells(*event.record, event.fileName, event.textRead));
    }
}

std::wstring EventFileNameOfRow(int row)
{
    wchar_t name[MAX_PATH] = L"";
    LVITEMW item{};
    item.iSubItem = kEventListColumns - 1;
    item.pszText = name;
    item.cchTextMax = MAX_PATH;
    SendMessageW(eventListView, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return name;
}

std::vector<std::wstring> SelectedEventFileNames()
{
    std::vector<std::wstring> names;
    int row = -1;
    while ((row = static_cast<int>(SendMessageW(eventListView, LVM_GETNEXTITEM, row, LVNI_SELECTED))) >= 0)
        names.push_back(EventFileNameOfRow(row));
    return names;
}
