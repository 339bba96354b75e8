#include "ui/select_device_window.h"

#include <string>

#include "app/recording_control.h"
#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/device_choice_rules.h"
#include "ui/device_dialogs.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"
#include "ui/menus.h"
#include "ui/window_layout.h"
#include "video/device_scan_rules.h"
#include "video/video_sources.h"

namespace {

// What Cancel puts back: the device current at opening, its two flags, and
// where the main window stood. Other devices' flags are not kept.
struct SelectDeviceSnapshot {
    uint32_t currentSourceIndex = kNoSource;
    int32_t isDefault = 0;
    int32_t isIgnored = 0;
    int32_t mainLeft = kNoPosition;
    int32_t mainTop = kNoPosition;
};

SelectDeviceSnapshot snapshot;
// The application's ActivateCurrentDevice: windows, menus and record buttons
// for the device now current.
HRESULT (*activateCurrentDevice)() = nullptr;
// Rebuilt at each refresh, row by row as the list boxes show them.
DeviceRowMaps rowMaps;

HWND Control(int id)
{
    return GetDlgItem(selectDeviceWindow, id);
}

int SelectedRow(int listId)
{
    return static_cast<int>(SendMessageW(Control(listId), LB_GETCURSEL, 0, 0));
}

// The main window takes the new device's picture size.
void DeviceSizeLayout()
{
    useDeviceSize = 1;
    UpdateMainWindowLayout();
    useDeviceSize = 0;
}

void Report(const wchar_t* head, const VideoSourceInfo& source, const wchar_t* tail)
{
    std::wstring line = std::wstring(head) + source.name + tail;
    ReportUserMessage(line.c_str(), true);
}

void TakeSnapshot()
{
    snapshot = SelectDeviceSnapshot{};
    snapshot.currentSourceIndex = currentSourceIndex;
    if (VideoSourceInfo* source = CurrentSource()) {
        snapshot.isDefault = source->isDefault;
        snapshot.isIgnored = source->isIgnored;
    }
    snapshot.mainLeft = options.windows[MainWindowKey].currentLeft;
    snapshot.mainTop = options.windows[MainWindowKey].currentTop;
}

void OnDeviceListClick()
{
    int row = SelectedRow(kSelectDeviceList);
    if (row >= static_cast<int>(rowMaps.devices.size())) {
        ReportUserMessage(L"Failure in USB attach / detach detection mechanism\r\n", true);
        return;
    }
    uint32_t index = SourceAtRow(rowMaps.devices, row);
    if (index == kNoSource || index >= videoSources.size() || index == currentSourceIndex)
        return;
    SetButtonChecked(Control(kSelectDeviceDefaultBox), videoSources[index]->isDefault != 0);
    currentSourceIndex = index;
    MarkOnlyCurrentActive(videoSources, currentSourceIndex);
    if (SUCCEEDED(StopVideo()))
        StartVideo();
    DeviceSizeLayout();
}

void OnDefaultBoxClick()
{
    uint32_t index = SourceAtRow(rowMaps.devices, SelectedRow(kSelectDeviceList));
    if (index == kNoSource)
        return;
    SetDefaultDevice(videoSources, index, IsButtonChecked(Control(kSelectDeviceDefaultBox)));
}

void ApplyDeviceChoice()
{
    if (activateCurrentDevice)
        activateCurrentDevice();
}

// After a device leaves or joins the choice: the choice is made again and
// the camera restarts on whatever is current now.
void ChooseAndApplyDevice()
{
    ChooseCurrentDevice();
    MarkOnlyCurrentActive(videoSources, currentSourceIndex);
    StopVideo();
    ApplyDeviceChoice();
}

void OnIgnoreDevice()
{
    uint32_t index = SourceAtRow(rowMaps.devices, SelectedRow(kSelectDeviceList));
    if (index != kNoSource && index < videoSources.size()) {
        VideoSourceInfo& source = *videoSources[index];
        source.isIgnored = 1;
        source.isDefault = 0;
        Report(L"Device \"", source, L"\" is ignored\r\n");
        ChooseAndApplyDevice();
        if (currentSourceIndex != kNoSource) {
            StartVideo();
            DeviceSizeLayout();
        }
    }
    RefreshSelectDeviceDialog();
}

void OnRestoreDevice()
{
    uint32_t index = SourceAtRow(rowMaps.ignored, SelectedRow(kSelectDeviceIgnoredList));
    if (index != kNoSource && index < videoSources.size()) {
        VideoSourceInfo& source = *videoSources[index];
        source.isIgnored = 0;
        Report(L"Device \"", source, L"\" is restored\r\n");
        ChooseAndApplyDevice();
        StartVideo();
    }
    RefreshSelectDeviceDialog();
}

void OnOk()
{
    CollectDeviceChoice(videoSources, options);
    SaveOptionsOrWarn();
    CloseSelectDeviceDialog();
}

// Cancel and the close box alike.
void OnCancel()
{
    CloseSelectDeviceDialog();
    if (snapshot.currentSourceIndex != kNoSource && snapshot.currentSourceIndex < videoSources.size()) {
        currentSourceIndex = snapshot.currentSourceIndex;
        VideoSourceInfo& source = *videoSources[currentSourceIndex];
        source.isDefault = snapshot.isDefault;
        source.isIgnored = snapshot.isIgnored;
        MarkOnlyCurrentActive(videoSources, currentSourceIndex);
    }
    ApplyDeviceChoice();
    if (SUCCEEDED(StopVideo()))
        StartVideo();
    // The menus rebuilt above move the client area, and with the window
    // closed the main window's move handler records where it stands now:
    // the place it had at opening goes back just before the layout uses it.
    if (snapshot.currentSourceIndex != kNoSource && snapshot.currentSourceIndex < videoSources.size()) {
        options.windows[MainWindowKey].currentLeft = snapshot.mainLeft;
        options.windows[MainWindowKey].currentTop = snapshot.mainTop;
    }
    DeviceSizeLayout();
    ReportUserMessage(L"Input devices settings are restored\r\n", true);
}

LRESULT CALLBACK SelectDeviceWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case kSelectDeviceList:
            if (HIWORD(wParam) == LBN_SELCHANGE)
                OnDeviceListClick();
            return 0;
        case kSelectDeviceDefaultBox:
            if (HIWORD(wParam) == BN_CLICKED)
                OnDefaultBoxClick();
            return 0;
        case kSelectDeviceIgnoreButton:
            if (HIWORD(wParam) == BN_CLICKED)
                OnIgnoreDevice();
            return 0;
        case kSelectDeviceRestoreButton:
            if (HIWORD(wParam) == BN_CLICKED)
                OnRestoreDevice();
            return 0;
        case kSelectDeviceOkButton:
            if (HIWORD(wParam) == BN_CLICKED)
                OnOk();
            return 0;
        case kSelectDeviceCancelButton:
            if (HIWORD(wParam) == BN_CLICKED)
                OnCancel();
            return 0;
        }
        return 0;
    case WM_CLOSE:
        OnCancel();
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, DevicesWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND CreateDeviceList(HWND parent, int y, int height, int id)
{
    return CreateControl(parent, L"LISTBOX", L"",
                         WS_BORDER | WS_VSCROLL | WS_TABSTOP | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, 20, y, 305, height,
                         id, appFonts[ListFont]);
}

void FillList(int listId, const std::vector<DeviceRow>& rows)
{
    HWND list = Control(listId);
    for (const DeviceRow& entry : rows)
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(videoSources[entry.sourceIndex]->name));
}

}  // namespace

bool CreateSelectDeviceWindow(HINSTANCE instance, HRESULT (*activate)())
{
    activateCurrentDevice = activate;
    HWND window = CreateToolWindow(instance, L"SelectVideoDeviceClassName", SelectDeviceWindowProc,
                                   L"Video Input Device", kPlainWindowStyle, 360, 485, DevicesWindowKey);
    if (!window)
        return false;
    CreateLabel(window, L"Select device for video input:", 20, 15, 305);
    CreateDeviceList(window, 40, 140, kSelectDeviceList);
    CreateCheckBox(window, L" Default device", 20, 188, 150, kSelectDeviceDefaultBox);
    CreatePushButton(window, L"Ignore Device", 185, 186, 140, 30, kSelectDeviceIgnoreButton);
    CreateLabel(window, L"Ignored devices:", 20, 235, 305);
    CreateDeviceList(window, 260, 100, kSelectDeviceIgnoredList);
    CreatePushButton(window, L" Restore device", 20, 368, 150, 30, kSelectDeviceRestoreButton);
    CreatePushButton(window, L"OK", 50, 412, 100, 30, kSelectDeviceOkButton);
    CreatePushButton(window, L"Cancel", 195, 412, 100, 30, kSelectDeviceCancelButton);
    selectDeviceWindow = window;
    return true;
}

void OpenSelectDeviceWindow()
{
    if (!selectDeviceWindow)
        return;
    TakeSnapshot();
    BeginDeviceDialog(selectDeviceOpen);
    RefreshSelectDeviceDialog();
    ShowPlacedDialog(selectDeviceWindow);
}

void RefreshSelectDeviceDialog()
{
    if (!selectDeviceWindow)
        return;
    rowMaps = DeviceRowMaps{};
    SendMessageW(Control(kSelectDeviceList), LB_RESETCONTENT, 0, 0);
    SendMessageW(Control(kSelectDeviceIgnoredList), LB_RESETCONTENT, 0, 0);
    if (videoSources.empty())
        return;
    rowMaps = MapDeviceRows(videoSources);
    FillList(kSelectDeviceList, rowMaps.devices);
    FillList(kSelectDeviceIgnoredList, rowMaps.ignored);
    if (VideoSourceInfo* current = CurrentSource()) {
        SendMessageW(Control(kSelectDeviceList), LB_SETCURSEL, RowOfSource(rowMaps.devices, currentSourceIndex), 0);
        SetButtonChecked(Control(kSelectDeviceDefaultBox), current->isDefault != 0);
        if (deviceFormatWindow) {
            std::wstring title = DeviceFormatTitleAtRow(videoSources, rowMaps, currentSourceIndex);
            SetWindowTextW(deviceFormatWindow, title.c_str());
        }
    } else {
        SetButtonChecked(Control(kSelectDeviceDefaultBox), false);
    }
}

void CloseSelectDeviceDialog()
{
    EndDeviceDialog(selectDeviceWindow, selectDeviceOpen);
}
