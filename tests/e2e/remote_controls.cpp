#include "e2e/remote_controls.h"

#include <commctrl.h>

#include "e2e/harness.h"

namespace e2e {

namespace {

// A block of memory in the process that owns a window, freed with it.
class RemoteBuffer {
public:
    RemoteBuffer(HWND window, size_t size)
    {
        DWORD processId = 0;
        GetWindowThreadProcessId(window, &processId);
        process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId);
        if (process_)
            address_ = VirtualAllocEx(process_, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    }
    RemoteBuffer(const RemoteBuffer&) = delete;
    RemoteBuffer& operator=(const RemoteBuffer&) = delete;
    ~RemoteBuffer()
    {
        if (address_)
            VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
        if (process_)
            CloseHandle(process_);
    }
    bool Valid() const { return address_ != nullptr; }
    void* Address(size_t offset = 0) const { return static_cast<char*>(address_) + offset; }
    LPARAM Param(size_t offset = 0) const { return reinterpret_cast<LPARAM>(Address(offset)); }
    bool Write(const void* data, size_t size, size_t offset = 0) const
    {
        return WriteProcessMemory(process_, Address(offset), data, size, nullptr) != 0;
    }
    bool Read(void* data, size_t size, size_t offset = 0) const
    {
        return ReadProcessMemory(process_, Address(offset), data, size, nullptr) != 0;
    }

private:
    HANDLE process_ = nullptr;
    void* address_ = nullptr;
};

}  // namespace

bool SetPickerTime(HWND picker, const SYSTEMTIME& time)
{
    RemoteBuffer buffer(picker, sizeof time);
    return buffer.Valid() && buffer.Write(&time, sizeof time) &&
           SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, buffer.Param()) != 0;
}

bool PickerTime(HWND picker, SYSTEMTIME* time)
{
    RemoteBuffer buffer(picker, sizeof *time);
    if (!buffer.Valid() || SendMessageW(picker, DTM_GETSYSTEMTIME, 0, buffer.Param()) != GDT_VALID)
        return false;
    return buffer.Read(time, sizeof *time);
}

void StepPickerFieldUp(HWND picker, int field)
{
    // A click on the first field selects it; the Right key moves on field
    // by field, and Up raises the selected one by one step.
    PostMessageW(picker, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(12, 12));
    PostMessageW(picker, WM_LBUTTONUP, 0, MAKELPARAM(12, 12));
    Sleep(200);
    for (int i = 0; i < field; ++i) {
        PostMessageW(picker, WM_KEYDOWN, VK_RIGHT, 0);
        PostMessageW(picker, WM_KEYUP, VK_RIGHT, 0xC0000001);
    }
    PostMessageW(picker, WM_KEYDOWN, VK_UP, 0);
    PostMessageW(picker, WM_KEYUP, VK_UP, 0xC0000001);
    Sleep(300);
}

int ListViewRowCount(HWND list)
{
    return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

std::wstring ListViewText(HWND list, int row, int column)
{
    constexpr size_t kChars = 512;
    RemoteBuffer buffer(list, sizeof(LVITEMW) + kChars * sizeof(wchar_t));
    if (!buffer.Valid())
        return {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = static_cast<wchar_t*>(buffer.Address(sizeof(LVITEMW)));
    item.cchTextMax = kChars;
    buffer.Write(&item, sizeof item);
    LRESULT length = SendMessageW(list, LVM_GETITEMTEXTW, row, buffer.Param());
    std::wstring text(kChars, L'\0');
    buffer.Read(text.data(), kChars * sizeof(wchar_t), sizeof(LVITEMW));
    text.resize(static_cast<size_t>(length > 0 ? length : 0));
    return text;
}

std::vector<std::vector<std::wstring>> ListViewRows(HWND list, int columns)
{
    std::vector<std::vector<std::wstring>> rows;
    for (int row = 0; row < ListViewRowCount(list); ++row) {
        std::vector<std::wstring> cells;
        for (int column = 0; column < columns; ++column)
            cells.push_back(ListViewText(list, row, column));
        rows.push_back(cells);
    }
    return rows;
}

void ClickListViewRow(HWND list, int row, bool addToSelection)
{
    RemoteBuffer buffer(list, sizeof(RECT));
    RECT rect{};
    rect.left = LVIR_LABEL;
    buffer.Write(&rect, sizeof rect);
    SendMessageW(list, LVM_GETITEMRECT, row, buffer.Param());
    buffer.Read(&rect, sizeof rect);
    int x = rect.left + 10;
    int y = (rect.top + rect.bottom) / 2;
    // A mouse move without the button, reaching the list between the button
    // down and up, makes it forget the press, and the up then gives no
    // NM_CLICK. Wine sends such moves to the window under the pointer when
    // windows change around it, so the pointer waits in the screen's far
    // corner, away from every window of the program, and the move that
    // parking it causes is let pass first.
    POINT corner{GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1};
    POINT pointer{};
    if (GetCursorPos(&pointer) && (pointer.x != corner.x || pointer.y != corner.y)) {
        SetCursorPos(corner.x, corner.y);
        Sleep(100);
    }
    WPARAM keys = MK_LBUTTON | (addToSelection ? MK_CONTROL : 0);
    SendMessageW(list, WM_LBUTTONDOWN, keys, MAKELPARAM(x, y));
    SendMessageW(list, WM_LBUTTONUP, keys & ~static_cast<WPARAM>(MK_LBUTTON), MAKELPARAM(x, y));
}

int ListViewSelectedCount(HWND list)
{
    return static_cast<int>(SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0));
}

std::wstring MessageBoxText(HWND box)
{
    HWND text = GetDlgItem(box, 0xFFFF);
    return text ? WindowText(text) : std::wstring();
}

void AnswerMessageBox(HWND box, int button)
{
    PostMessageW(GetDlgItem(box, button), BM_CLICK, 0, 0);
}

}  // namespace e2e
