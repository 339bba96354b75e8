#include "ui/device_format_window.h"

#include <commctrl.h>

#include <string>

#include "app/recording_control.h"
#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/device_dialogs.h"
#include "ui/device_format_rules.h"
#include "ui/device_format_snapshot.h"
#include "ui/dialog_common.h"
#include "ui/display_tools.h"
#include "ui/fonts.h"
#include "ui/menus.h"
#include "ui/video_windows.h"
#include "ui/window_layout.h"
#include "ui/window_set.h"
#include "video/analog_standard.h"
#include "video/capture_settings.h"
#include "video/device_properties.h"
#include "video/frame_size.h"
#include "video/video_player.h"

namespace {

constexpr int kWindowWidth = 550;
constexpr int kMediaLeft = 10;
constexpr int kMediaWidth = 255;
constexpr int kPropertiesLeft = 275;
constexpr int kPropertiesWidth = 255;
constexpr int kRowLeft = kPropertiesLeft + 15;
constexpr int kRowWidth = kPropertiesWidth - 30;

DeviceFormatSnapshot snapshot{};
// Raised while FillDeviceFormatDialog sizes the window: the move handler
// then leaves the current position as that step set it.
bool sizingWindow = false;

HWND Item(int id)
{
    return GetDlgItem(deviceFormatWindow, id);
}

HWND PropertyLabel(int row)
{
    return Item(kFormatFirstPropertyLabel + row);
}

HWND PropertySlider(int row)
{
    return Item(kFormatFirstPropertySlider + row);
}

void Show(int id, bool shown)
{
    ShowWindow(Item(id), shown ? SW_SHOW : SW_HIDE);
}

DeviceProperty* PropertyOfRow(VideoSourceInfo& source, int row)
{
    return PropertyRecord(source, kDevicePropertyNumbers[row]);
}

VideoFormatsByFrameRate* SelectedGroup(VideoSourceInfo& source)
{
    if (source.currentFrameRateIndex >= source.frameRates.size())
        return nullptr;
    return source.frameRates[source.currentFrameRateIndex];
}

void RestartCamera()
{
    if (SUCCEEDED(StopVideo()))
        StartVideo();
}

void DeviceSizeLayout()
{
    useDeviceSize = 1;
    UpdateMainWindowLayout();
    useDeviceSize = 0;
}

// The frame-rate list shows the enabled groups only, but a click takes its
// row as the group's index as it stands: with a disabled group ahead of
// the row, the index lands on another group. That is how the window has
// always behaved.
void OnFrameRateClicked()
{
    VideoSourceInfo* source = CurrentSource();
    int row = static_cast<int>(SendMessageW(Item(kFormatFrameRateList), LB_GETCURSEL, 0, 0));
    if (!source || row < 0 || static_cast<uint32_t>(row) == source->currentFrameRateIndex)
        return;
    source->currentFrameRateIndex = static_cast<uint32_t>(row);
    FillFrameSizeList();
    RestartCamera();
}

void OnAutoDetectClicked()
{
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return;
    if (IsButtonChecked(Item(kFormatAutoDetectBox))) {
        EnableWindow(Item(kFormatNtscRadio), FALSE);
        EnableWindow(Item(kFormatPalRadio), FALSE);
        source->autoDetect = 1;
        // The trial takes the main graph over; the restart below builds
        // the preview again.
        if (VideoPlayer* player = CurrentVideoPlayer())
            player->AutoSetAnalogDeviceFormat(source);
        FillDeviceFormatDialog();
        RestartCamera();
    } else {
        source->autoDetect = 0;
        EnableWindow(Item(kFormatNtscRadio), TRUE);
        EnableWindow(Item(kFormatPalRadio), TRUE);
    }
}

// Only the box is cleared: the device's auto-detect flag stays, and OK
// with Save takes it from the box.
void OnStandardClicked(DeviceStandard standard)
{
    int clicked = standard == StandardNTSC ? kFormatNtscRadio : kFormatPalRadio;
    int other = standard == StandardNTSC ? kFormatPalRadio : kFormatNtscRadio;
    if (IsButtonChecked(Item(clicked)))
        return;
    SetButtonChecked(Item(clicked), true);
    SetButtonChecked(Item(other), false);
    SetButtonChecked(Item(kFormatAutoDetectBox), false);
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return;
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->SetAnalogDeviceFormat(standard);
    source->deviceStandard = standard;
    SetAnalogDeviceFrameRate(source);
    FillDeviceFormatDialog();
    RestartCamera();
}

// Line, page and thumb-track moves, so that the device follows a dragged
// thumb; the end of a drag brings nothing new.
void OnSliderMoved(WPARAM wParam, HWND slider)
{
    int row = GetDlgCtrlID(slider) - kFormatFirstPropertySlider;
    if (row < 0 || row >= kPropertyRowCount)
        return;
    int position;
    if (!SliderMovedTo(slider, wParam, &position))
        return;
    // The record takes the value when the device does; a refusal is
    // reported by the setter.
    SetPropertyValue(kDevicePropertyNumbers[row], position);
}

void OnSetDefaultValues()
{
    if (FAILED(SetPropertiesToDefaults()))
        return;
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return;
    for (int row = 0; row < kPropertyRowCount; ++row) {
        const DeviceProperty* property = PropertyOfRow(*source, row);
        if (property->available)
            SendMessageW(PropertySlider(row), TBM_SETPOS, TRUE, property->defaultValue);
    }
}

void OnOk()
{
    VideoSourceInfo* source = CurrentSource();
    if (IsButtonChecked(Item(kFormatSaveBox)) && source) {
        source->hasConfiguration = 1;
        source->autoDetect = IsButtonChecked(Item(kFormatAutoDetectBox)) ? 1 : 0;
        SaveOptionsOrWarn();
    }
    CloseDeviceFormatDialog();
}

void OnCancel()
{
    CloseDeviceFormatDialog();
    if (VideoSourceInfo* source = CurrentSource()) {
        WindowPosition& main = options.windows[MainWindowKey];
        if (RestoreDeviceFormatSnapshot(snapshot, *source, currentSourceIndex, main.currentLeft, main.currentTop)) {
            for (int row = 0; row < kPropertyRowCount; ++row) {
                const DeviceProperty* property = PropertyOfRow(*source, row);
                if (property->available)
                    SetPropertyValue(kDevicePropertyNumbers[row], property->value);
            }
        }
    }
    RestartCamera();
    DeviceSizeLayout();
    ReportUserMessage(L"Input device properties are restored\r\n", true);
}

// The close box keeps the changes for this run, as OK without Save does,
// and restarts the camera.
void OnCloseBox()
{
    CloseDeviceFormatDialog();
    RestartCamera();
}

LRESULT CALLBACK DeviceFormatWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_HSCROLL:
        if (lParam)
            OnSliderMoved(wParam, reinterpret_cast<HWND>(lParam));
        return 0;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case kFormatFrameRateList:
            if (HIWORD(wParam) == LBN_SELCHANGE)
                OnFrameRateClicked();
            return 0;
        case kFormatFrameSizeList:
            if (HIWORD(wParam) == LBN_SELCHANGE)
                SelectFrameSize(static_cast<int>(SendMessageW(Item(kFormatFrameSizeList), LB_GETCURSEL, 0, 0)));
            return 0;
        }
        if (HIWORD(wParam) != BN_CLICKED)
            return 0;
        switch (LOWORD(wParam)) {
        case kFormatAutoDetectBox:
            OnAutoDetectClicked();
            break;
        case kFormatNtscRadio:
            OnStandardClicked(StandardNTSC);
            break;
        case kFormatPalRadio:
            OnStandardClicked(StandardPAL);
            break;
        case kFormatDefaultsButton:
            OnSetDefaultValues();
            break;
        case kFormatOkButton:
            OnOk();
            break;
        case kFormatCancelButton:
            OnCancel();
            break;
        }
        return 0;
    case WM_CLOSE:
        OnCloseBox();
        return 0;
    case WM_MOVE:
        if (sizingWindow)
            return 0;
        break;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, DeviceFormatWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND SmallControl(HWND window, const wchar_t* className, const wchar_t* text, DWORD style, int x, int y, int width,
                  int height, int id)
{
    return CreateControl(window, className, text, style, x, y, width, height, id, appFonts[SmallDialogFont]);
}

HWND ListControl(HWND window, int x, int y, int width, int height, int id)
{
    return CreateControl(window, L"LISTBOX", L"", WS_BORDER | WS_VSCROLL | LBS_NOTIFY | WS_TABSTOP, x, y, width, height,
                         id, appFonts[ListFont]);
}

// The sliders start at 0 to 100 for Brightness and 0 to 10 for the others,
// until a device's ranges replace that.
bool CreatePropertyRows(HWND window)
{
    for (int row = 0; row < kPropertyRowCount; ++row) {
        int top = kFirstPropertyTop + row * kPropertyRowSpacing;
        if (!SmallControl(window, L"STATIC", kPropertyRowNames[row], SS_LEFT, kRowLeft, top, kRowWidth, 18,
                          kFormatFirstPropertyLabel + row))
            return false;
        HWND slider =
            CreateControl(window, TRACKBAR_CLASSW, L"", TBS_HORZ | TBS_AUTOTICKS | TBS_TOOLTIPS | WS_TABSTOP,
                          kRowLeft - 5, top + 18, kRowWidth + 10, 30, kFormatFirstPropertySlider + row, nullptr);
        if (!slider)
            return false;
        bool brightness = row == 0;
        SendMessageW(slider, TBM_SETRANGE, TRUE, MAKELPARAM(0, brightness ? 100 : 10));
        SendMessageW(slider, TBM_SETPAGESIZE, 0, 1);
        SendMessageW(slider, TBM_SETPOS, TRUE, brightness ? 50 : 5);
    }
    return true;
}

// Places the property rows of the device's available properties, one under
// the other, and the button and group box to them.
void PlacePropertyRows(const DeviceFormatLayout& layout)
{
    for (int row = 0; row < kPropertyRowCount; ++row) {
        ShowWindow(PropertyLabel(row), SW_HIDE);
        ShowWindow(PropertySlider(row), SW_HIDE);
    }
    UINT flags = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
    for (int row = 0; row < kPropertyRowCount; ++row) {
        int top = layout.propertyTop[row];
        if (top < 0)
            continue;
        SetWindowPos(PropertyLabel(row), nullptr, kRowLeft, top, 0, 0, flags);
        SetWindowPos(PropertySlider(row), nullptr, kRowLeft - 5, top + 18, 0, 0, flags);
        ShowWindow(PropertyLabel(row), SW_SHOW);
        ShowWindow(PropertySlider(row), SW_SHOW);
    }
    SetWindowPos(Item(kFormatDefaultsButton), nullptr, kRowLeft + (kRowWidth - 150) / 2, layout.defaultsButtonTop, 0, 0,
                 flags);
    SetWindowPos(Item(kFormatPropertiesGroup), nullptr, 0, 0, kPropertiesWidth, layout.propertiesGroupHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowPos(Item(kFormatMediaGroup), nullptr, 0, 0, kMediaWidth, layout.mediaGroupHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PlaceBottomControls(const DeviceFormatLayout& layout)
{
    UINT flags = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
    SetWindowPos(Item(kFormatSaveBox), nullptr, 25, layout.saveBoxTop, 0, 0, flags);
    SetWindowPos(Item(kFormatOkButton), nullptr, 140, layout.buttonsTop, 0, 0, flags);
    SetWindowPos(Item(kFormatCancelButton), nullptr, 310, layout.buttonsTop, 0, 0, flags);
}

// Width 550, the height of the content; the position is the saved one,
// which PlaceDialog corrects when there is none.
void SizeWindow(const DeviceFormatLayout& layout)
{
    RECT outer{0, 0, kWindowWidth, layout.clientHeight};
    AdjustWindowRectEx(&outer, kPlainWindowStyle, FALSE, 0);
    WindowPosition& position = options.windows[DeviceFormatWindowKey];
    position.currentLeft = position.savedLeft;
    position.currentTop = position.savedTop;
    sizingWindow = true;
    SetWindowPos(deviceFormatWindow, nullptr, 0, 0, kWindowWidth, outer.bottom - outer.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    sizingWindow = false;
}

void ShowStandardControls(const VideoSourceInfo& source)
{
    SetButtonChecked(Item(kFormatAutoDetectBox), false);
    if (source.deviceStandard == StandardDigital) {
        for (int id : {kFormatAutoDetectBox, kFormatStandardFrame, kFormatNtscRadio, kFormatPalRadio})
            Show(id, false);
        Show(kFormatDigitalLabel, true);
    } else if (source.autoDetect) {
        SetButtonChecked(Item(kFormatAutoDetectBox), true);
        Show(kFormatDigitalLabel, false);
        for (int id : {kFormatAutoDetectBox, kFormatStandardFrame, kFormatNtscRadio, kFormatPalRadio})
            Show(id, true);
        EnableWindow(Item(kFormatNtscRadio), FALSE);
        EnableWindow(Item(kFormatPalRadio), FALSE);
    } else {
        // The radios keep whatever state they had: only clearing the box
        // enables them.
        Show(kFormatDigitalLabel, false);
        Show(kFormatAutoDetectBox, source.autoDetectCapable != 0);
        for (int id : {kFormatStandardFrame, kFormatNtscRadio, kFormatPalRadio})
            Show(id, true);
    }
}

void SetSliderScales(VideoSourceInfo& source)
{
    for (int row = 0; row < kPropertyRowCount; ++row) {
        const DeviceProperty* property = PropertyOfRow(source, row);
        if (!property->available)
            continue;
        HWND slider = PropertySlider(row);
        SendMessageW(slider, TBM_SETRANGE, TRUE, MAKELPARAM(property->minimum, property->maximum));
        SendMessageW(slider, TBM_SETTICFREQ, SliderTickFrequency(property->minimum, property->maximum), 0);
        SendMessageW(slider, TBM_SETPOS, TRUE, property->value);
        ShowWindow(slider, SW_SHOW);
        ShowWindow(PropertyLabel(row), SW_SHOW);
    }
}

}  // namespace

bool CreateDeviceFormatWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"DeviceFormat", DeviceFormatWindowProc, L" Properties", kPlainWindowStyle,
                                   kWindowWidth, 640, DeviceFormatWindowKey);
    if (!window)
        return false;
    deviceFormatWindow = window;
    bool none[kPropertyRowCount] = {};
    DeviceFormatLayout layout = LayOutDeviceFormatWindow(none);

    SmallControl(window, L"BUTTON", L"Video Media", BS_GROUPBOX, kMediaLeft, kGroupTop, kMediaWidth,
                 layout.mediaGroupHeight, kFormatMediaGroup);
    SmallControl(window, L"BUTTON", L"Video Proc Properties", BS_GROUPBOX, kPropertiesLeft, kGroupTop, kPropertiesWidth,
                 layout.propertiesGroupHeight, kFormatPropertiesGroup);
    SmallControl(window, L"BUTTON", L" Auto Detect", BS_AUTOCHECKBOX | WS_TABSTOP, 25, 32, 200, 22,
                 kFormatAutoDetectBox);
    SmallControl(window, L"BUTTON", L"", BS_GROUPBOX, 25, 55, 225, 45, kFormatStandardFrame);
    // Not automatic: a click on the radio already chosen must be told
    // apart from a change.
    SmallControl(window, L"BUTTON", L"NTSC", BS_RADIOBUTTON | WS_GROUP | WS_TABSTOP, 45, 70, 80, 22, kFormatNtscRadio);
    SmallControl(window, L"BUTTON", L"PAL", BS_RADIOBUTTON, 145, 70, 80, 22, kFormatPalRadio);
    ShowWindow(SmallControl(window, L"STATIC", L"Digital", SS_LEFT, 25, 35, 200, 20, kFormatDigitalLabel), SW_HIDE);
    SmallControl(window, L"STATIC", L"Frame Rate:", SS_LEFT, 25, 115, 200, 18, kFormatFrameRateLabel);
    ListControl(window, 25, 135, 225, 110, kFormatFrameRateList);
    SmallControl(window, L"STATIC", L"Frame Size:", SS_LEFT, 25, 255, 200, 18, kFormatFrameSizeLabel);
    ListControl(window, 25, 275, 225, kMediaContentBottom - 275, kFormatFrameSizeList);
    // Made and filled, never shown.
    HWND subtypeLabel =
        SmallControl(window, L"STATIC", L"Media subtype:", SS_LEFT, 25, 440, 100, 18, kFormatSubtypeLabel);
    HWND subtypeField = CreateControl(window, L"EDIT", L"", WS_BORDER | ES_READONLY, 130, 438, 120, 22,
                                      kFormatSubtypeField, appFonts[ListFont]);
    ShowWindow(subtypeLabel, SW_HIDE);
    ShowWindow(subtypeField, SW_HIDE);
    if (!CreatePropertyRows(window))
        return false;
    SmallControl(window, L"BUTTON", L"Set Default Values", BS_PUSHBUTTON | WS_TABSTOP, kRowLeft + (kRowWidth - 150) / 2,
                 layout.defaultsButtonTop, 150, 28, kFormatDefaultsButton);
    SmallControl(window, L"BUTTON", L" Save Device Configuration", BS_AUTOCHECKBOX | WS_TABSTOP, 25, layout.saveBoxTop,
                 300, 24, kFormatSaveBox);
    SmallControl(window, L"BUTTON", L"OK", BS_PUSHBUTTON | WS_TABSTOP, 140, layout.buttonsTop, 100, 30,
                 kFormatOkButton);
    SmallControl(window, L"BUTTON", L"Cancel", BS_PUSHBUTTON | WS_TABSTOP, 310, layout.buttonsTop, 100, 30,
                 kFormatCancelButton);
    return true;
}

void OpenDeviceFormatWindow()
{
    if (!deviceFormatWindow)
        return;
    BeginDeviceDialog(deviceFormatOpen);
    snapshot = DeviceFormatSnapshot{};
    if (VideoSourceInfo* source = CurrentSource()) {
        const WindowPosition& main = options.windows[MainWindowKey];
        snapshot = TakeDeviceFormatSnapshot(*source, currentSourceIndex, main.currentLeft, main.currentTop);
    }
    FillDeviceFormatDialog();
    ShowPlacedDialog(deviceFormatWindow);
}

void FillDeviceFormatDialog()
{
    VideoSourceInfo* source = CurrentSource();
    if (!deviceFormatWindow || !source)
        return;
    if (source->deviceStandard == StandardUnknown) {
        ReportUserMessage(L"Device has an unknown format; properties cannot be set\r\n", true);
        return;
    }
    bool available[kPropertyRowCount];
    for (int row = 0; row < kPropertyRowCount; ++row)
        available[row] = PropertyOfRow(*source, row)->available != 0;
    DeviceFormatLayout layout = LayOutDeviceFormatWindow(available);
    PlacePropertyRows(layout);
    ShowStandardControls(*source);
    FillFrameRateList();
    if (source->deviceStandard == StandardNTSC || source->deviceStandard == StandardPAL) {
        SetButtonChecked(Item(kFormatNtscRadio), source->deviceStandard == StandardNTSC);
        SetButtonChecked(Item(kFormatPalRadio), source->deviceStandard == StandardPAL);
    }
    PlaceBottomControls(layout);
    SizeWindow(layout);
    SetSliderScales(*source);
    std::wstring title = source->name;
    title += L" Properties";
    SetWindowTextW(deviceFormatWindow, title.c_str());
}

void FillFrameRateList()
{
    HWND list = Item(kFormatFrameRateList);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return;
    std::vector<uint32_t> listed = ListedFrameRateGroups(*source);
    for (uint32_t group : listed)
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(source->frameRates[group]->frameRateText));
    FrameRateSelection selection = ResolveFrameRateSelection(listed, source->currentFrameRateIndex);
    source->currentFrameRateIndex = selection.groupIndex;
    SendMessageW(list, LB_SETCURSEL, selection.row, 0);
    FillFrameSizeList();
}

void FillFrameSizeList()
{
    HWND list = Item(kFormatFrameSizeList);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    SetWindowTextW(Item(kFormatSubtypeField), L"");
    VideoSourceInfo* source = CurrentSource();
    VideoFormatsByFrameRate* group = source ? SelectedGroup(*source) : nullptr;
    if (!group)
        return;
    for (const VideoFormat* format : group->formats)
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(format ? format->videoFormatName : L""));
    if (!group->formats.empty() && group->formats.front())
        SetWindowTextW(Item(kFormatSubtypeField), SubtypeName(group->formats.front()->subtype));
    SendMessageW(list, LB_SETCURSEL, group->currentFormatIndex, 0);
}

void SelectFrameSize(int row)
{
    VideoSourceInfo* source = CurrentSource();
    VideoFormatsByFrameRate* group = source ? SelectedGroup(*source) : nullptr;
    if (!group || row < 0 || static_cast<size_t>(row) >= group->formats.size() ||
        static_cast<uint32_t>(row) == group->currentFormatIndex || !group->formats[row])
        return;
    if (magnifyOn)
        CloseMagnify();
    group->currentFormatIndex = static_cast<uint32_t>(row);
    const VideoFormat& format = *group->formats[row];
    videoWidth = displayedWidth = format.width;
    videoHeight = displayedHeight = format.height < 0 ? -format.height : format.height;
    SetWindowPos(clippingWindow, nullptr, 0, 0, displayedWidth, displayedHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowPos(mainWindow, nullptr, 0, 0, displayedWidth + frameWidth, displayedHeight + frameHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    KeepWindowOnScreen(mainWindow);
    if (SUCCEEDED(StopVideo())) {
        UpdateMainWindowLayout();
        StartVideo();
    }
}

void CloseDeviceFormatDialog()
{
    EndDeviceDialog(deviceFormatWindow, deviceFormatOpen);
}
