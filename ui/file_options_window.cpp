#include "ui/file_options_window.h"

#include <shobjidl.h>

#include <algorithm>
#include <cwchar>

#include "base/com_ptr.h"
#include "base/name_text.h"
#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/app_icons.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"
#include "ui/window_layout.h"

HWND fileOptionsWindow = nullptr;
std::wstring defaultVideoFolder;
std::wstring defaultLogFolder;

namespace {

constexpr int kPrefixCapacity = 21;
constexpr int kGlobalCopyCapacity = 22;
constexpr int kFolderCapacity = 512;
constexpr wchar_t kAllowedCharacters[] =
    L"Allowed characters are 'a' thru 'z', 'A' thru 'Z', '0' thru '9', '-', '_' or blank\r\n";

// What the boxes and folder values hold between openings; Save takes them.
wchar_t videoPrefixEdit[kPrefixCapacity] = L"";
wchar_t logPrefixEdit[kPrefixCapacity] = L"";
wchar_t globalPrefixEdit[kGlobalCopyCapacity] = L"";
wchar_t videoFolderEdit[kFolderCapacity] = L"";
wchar_t logFolderEdit[kFolderCapacity] = L"";

// The pop-up that shows a whole folder path while the mouse rests on a
// folder value too narrow for it.
HWND pathPopup = nullptr;
bool pathPopupShown = false;
bool hoverTracking = false;

// The mouse zones of the two folder values, in client coordinates.
enum class Zone { None, VideoFolder, LogFolder };

Zone ZoneAt(int x, int y)
{
    if (x < 111 || x > 444)
        return Zone::None;
    if (y >= 146 && y <= 164)
        return Zone::VideoFolder;
    if (y >= 401 && y <= 419)
        return Zone::LogFolder;
    return Zone::None;
}

HWND Item(int id)
{
    return GetDlgItem(fileOptionsWindow, id);
}

void ShowFolder(bool video, const wchar_t* folder)
{
    wchar_t* copy = video ? videoFolderEdit : logFolderEdit;
    lstrcpynW(copy, folder, kFolderCapacity);
    SetWindowTextW(Item(video ? kFileVideoFolder : kFileLogFolder), copy);
}

// A prefix box changed: keep only the allowed characters, say so when some
// were removed, and show the file name pattern that follows.
void OnPrefixChanged(int id)
{
    wchar_t* copy = id == kFileVideoPrefixEdit ? videoPrefixEdit : id == kFileLogPrefixEdit ? logPrefixEdit : globalPrefixEdit;
    int capacity = id == kFileGlobalPrefixEdit ? kGlobalCopyCapacity : kPrefixCapacity;
    HWND box = Item(id);
    int oldLength = GetWindowTextW(box, copy, capacity);
    if (FilterNameCharacters(copy, false)) {
        // The replacement raises a change of its own, which passes clean.
        SendMessageW(box, EM_SETSEL, 0, oldLength);
        SendMessageW(box, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(copy));
        ReportUserMessage(kAllowedCharacters, false);
    }
    if (id == kFileVideoPrefixEdit)
        SetWindowTextW(Item(kFileVideoPattern), NamePattern(copy, L".avi").c_str());
    else if (id == kFileLogPrefixEdit)
        SetWindowTextW(Item(kFileLogPattern), NamePattern(copy, L".txt").c_str());
}

void OnHostName()
{
    wchar_t name[1024];
    DWORD size = 1024;
    if (!GetComputerNameW(name, &size))
        return;
    bool removed = false;
    std::wstring prefix = HostNamePrefix(name, &removed);
    if (removed)
        ReportUserMessage(L"One or more characters removed from computer name to have valid global event file name "
                          L"prefix\r\n",
                          false);
    SetWindowTextW(Item(kFileGlobalPrefixEdit), prefix.c_str());
    lstrcpynW(globalPrefixEdit, prefix.c_str(), kGlobalCopyCapacity);
}

// The platform's folder picker; a cancel or any failure changes nothing.
void SelectFolder(bool forVideo)
{
    ComPtr<IFileOpenDialog> dialog;
    if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileOpenDialog,
                                dialog.PutVoid())))
        return;
    FILEOPENDIALOGOPTIONS flags = 0;
    dialog->GetOptions(&flags);
    if (FAILED(dialog->SetOptions(flags | FOS_PICKFOLDERS)) || FAILED(dialog->Show(nullptr)))
        return;
    ComPtr<IShellItem> item;
    if (FAILED(dialog->GetResult(item.Put())))
        return;
    PWSTR path = nullptr;
    if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &path)) || !path)
        return;
    std::wstring folder = path;
    CoTaskMemFree(path);
    if (folder.empty() || folder.back() != L'\\')
        folder += L'\\';
    ShowFolder(forVideo, folder.c_str());
}

void OnSave()
{
    lstrcpynW(options.VideoNamePrefix, videoPrefixEdit, kShortTextCapacity);
    // The default folder is never stored as a path: the options file then
    // moves with the program.
    lstrcpynW(options.VideoDirectory, defaultVideoFolder == videoFolderEdit ? L"" : videoFolderEdit, kPathCapacity);
    lstrcpynW(options.LogfileNamePrefix, logPrefixEdit, kShortTextCapacity);
    lstrcpynW(options.LogfileDirectory, defaultLogFolder == logFolderEdit ? L"" : logFolderEdit, kPathCapacity);
    lstrcpynW(options.EventFileGlobalPrefix, globalPrefixEdit, kGlobalPrefixCapacity);
    ShowWindow(fileOptionsWindow, SW_HIDE);
    ReportUserMessage(L"File options saved in options file\r\n", true);
    SaveOptionsOrWarn();
}

// The width of the video folder's text: it decides for both zones.
int VideoFolderTextWidth()
{
    HDC context = GetDC(fileOptionsWindow);
    SIZE size{};
    GetTextExtentPoint32W(context, videoFolderEdit, static_cast<int>(wcslen(videoFolderEdit)), &size);
    POINT extent{size.cx, 0};
    LPtoDP(context, &extent, 1);
    ReleaseDC(fileOptionsWindow, context);
    return extent.x;
}

void MovePopupTo(int x, int y)
{
    RECT window{};
    GetWindowRect(fileOptionsWindow, &window);
    int width = VideoFolderTextWidth() + 5;
    int left = std::min<int>(window.left + 10 + x, workRight - width);
    SetWindowPos(pathPopup, HWND_TOP, left, window.top + 10 + y, width, 20, SWP_NOACTIVATE);
}

void TrackHover(DWORD flags, const wchar_t* failure)
{
    TRACKMOUSEEVENT track{sizeof track, flags, fileOptionsWindow, 750};
    if (!TrackMouseEvent(&track))
        ReportUserMessage(failure, false);
}

void OnMouseMove(int x, int y)
{
    Zone zone = ZoneAt(x, y);
    if (pathPopupShown) {
        if (zone == Zone::None) {
            TrackHover(TME_CANCEL | TME_HOVER, L"INFO: canceling a tracking mouse hover event failed\r\n");
            ShowWindow(pathPopup, SW_HIDE);
            pathPopupShown = false;
        } else {
            MovePopupTo(x, y);
        }
    } else if (zone != Zone::None) {
        if (VideoFolderTextWidth() > 334)
            TrackHover(TME_HOVER, L"INFO: creating a tracking mouse hover event failed\r\n");
    } else if (hoverTracking) {
        TrackHover(TME_CANCEL | TME_HOVER, L"INFO: canceling a tracking mouse hover event failed\r\n");
        ShowWindow(pathPopup, SW_HIDE);
        hoverTracking = false;
    }
}

void OnMouseHover(int x, int y)
{
    Zone zone = ZoneAt(x, y);
    if (zone == Zone::None)
        return;
    SetWindowTextW(pathPopup, zone == Zone::VideoFolder ? videoFolderEdit : logFolderEdit);
    MovePopupTo(x, y);
    ShowWindow(pathPopup, SW_SHOWNOACTIVATE);
    pathPopupShown = true;
    hoverTracking = true;
}

void OnCommand(int id, int code)
{
    if (code == EN_CHANGE && (id == kFileVideoPrefixEdit || id == kFileLogPrefixEdit || id == kFileGlobalPrefixEdit)) {
        OnPrefixChanged(id);
        return;
    }
    if (code != BN_CLICKED)
        return;
    switch (id) {
    case kFileVideoSelectFolder:
    case kFileLogSelectFolder:
        SelectFolder(id == kFileVideoSelectFolder);
        break;
    case kFileVideoUseDefault:
        ShowFolder(true, defaultVideoFolder.c_str());
        break;
    case kFileLogUseDefault:
        ShowFolder(false, defaultLogFolder.c_str());
        break;
    case kFileHostNameButton:
        OnHostName();
        break;
    case kFileSaveButton:
        OnSave();
        break;
    case kFileCancelButton:
        // What was typed stays for the next Save.
        ShowWindow(fileOptionsWindow, SW_HIDE);
        break;
    }
}

LRESULT CALLBACK FileOptionsWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
        return 0;
    case WM_MOUSEHOVER:
        OnMouseHover(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, FileOptionsWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND MakePrefixBox(HWND parent, int x, int y, int width, int id, int limit)
{
    HWND box = CreateControl(parent, L"EDIT", L"", WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, x, y, width, 24, id,
                             appFonts[ListFont]);
    SendMessageW(box, EM_SETLIMITTEXT, limit, 0);
    return box;
}

HWND MakeSelectFolderButton(HWND parent, int x, int y, int id)
{
    HICON icon = appIcons.folder;
    HWND button = CreateControl(parent, L"BUTTON", L"Select\r\nFolder",
                                BS_PUSHBUTTON | BS_MULTILINE | WS_TABSTOP | (icon ? BS_ICON : 0), x, y, 70, 50, id,
                                appFonts[SmallDialogFont]);
    if (button && icon)
        SendMessageW(button, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
    return button;
}

// One group: frame, heading, prefix box, file name pattern, folder.
void MakeGroup(HWND window, int top, const wchar_t* heading, const wchar_t* pattern, int prefixId, int patternId,
               int selectId, int folderId, int defaultId)
{
    CreateControl(window, L"STATIC", L"", SS_BLACKFRAME, 15, top, 465, 210, 0, nullptr);
    CreateLabel(window, heading, 25, top - 10, 190);
    CreateLabel(window, L"Prefix", 30, top + 25, 70);
    MakePrefixBox(window, 111, top + 23, 200, prefixId, 20);
    CreateLabel(window, L"File name:", 30, top + 60, 80);
    CreateLabel(window, pattern, 111, top + 60, 335, 20, patternId);
    MakeSelectFolderButton(window, 30, top + 100, selectId);
    CreateControl(window, L"STATIC", L"", SS_LEFT | SS_SUNKEN | SS_NOPREFIX, 111, top + 126, 335, 19, folderId,
                  appFonts[DialogStaticFont]);
    CreatePushButton(window, L"Use Default", 111, top + 160, 120, 28, defaultId);
}

}  // namespace

HWND CreateFileOptionsWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"FileOptions", FileOptionsWindowProc, L"File Options",
                                   kPlainWindowStyle, 510, 700, FileOptionsWindowKey);
    if (!window)
        return nullptr;
    fileOptionsWindow = window;
    MakeGroup(window, 20, L" Video", L"mm_dd_yyyy_hh_mm_ss.avi", kFileVideoPrefixEdit, kFileVideoPattern,
              kFileVideoSelectFolder, kFileVideoFolder, kFileVideoUseDefault);
    MakeGroup(window, 275, L" User Messages Log", L"mm_dd_yyyy_hh_mm_ss.txt", kFileLogPrefixEdit, kFileLogPattern,
              kFileLogSelectFolder, kFileLogFolder, kFileLogUseDefault);
    CreateLabel(window, L"Event file global prefix (12 chars max):", 15, 525, 300);
    MakePrefixBox(window, 320, 523, 150, kFileGlobalPrefixEdit, 12);
    CreatePushButton(window, L"Host Name", 320, 557, 150, 28, kFileHostNameButton);
    CreatePushButton(window, L"Save", 100, 610, 100, 30, kFileSaveButton);
    CreatePushButton(window, L"Cancel", 290, 610, 100, 30, kFileCancelButton);
    pathPopup = CreateWindowExW(WS_EX_STATICEDGE, L"STATIC", L"", 0, 0, 0, 100, 20, nullptr, nullptr, instance,
                                nullptr);
    if (pathPopup)
        ShowWindow(pathPopup, SW_HIDE);
    return window;
}

void FillFileOptions()
{
    if (!fileOptionsWindow)
        return;
    ShowFolder(true, options.VideoDirectory[0] ? options.VideoDirectory : defaultVideoFolder.c_str());
    ShowFolder(false, options.LogfileDirectory[0] ? options.LogfileDirectory : defaultLogFolder.c_str());
    // Through the change handler, which fills the working copies and the
    // name patterns.
    if (options.VideoNamePrefix[0])
        SetWindowTextW(Item(kFileVideoPrefixEdit), options.VideoNamePrefix);
    if (options.LogfileNamePrefix[0])
        SetWindowTextW(Item(kFileLogPrefixEdit), options.LogfileNamePrefix);
    if (options.EventFileGlobalPrefix[0])
        SetWindowTextW(Item(kFileGlobalPrefixEdit), options.EventFileGlobalPrefix);
}

void OpenFileOptionsWindow()
{
    if (fileOptionsWindow)
        ShowPlacedDialog(fileOptionsWindow);
}
