#include "ui/misc_options_window.h"

#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"

HWND miscellaneousWindow = nullptr;

namespace {

struct OptionBox {
    int id;
    int32_t Options::*option;
};

const OptionBox kBoxes[] = {
    {kMiscSpacingBox, &Options::RecordButtonsSpace},
    {kMiscGpsBox, &Options::AutostartGPS},
    {kMiscFileColourBox, &Options::EnableVideoBrightnessContrast},
};

HWND Box(const OptionBox& box)
{
    return GetDlgItem(miscellaneousWindow, box.id);
}

// Save is there only while a box differs from its option: putting a box
// back disables it again.
void OnBoxClicked()
{
    bool differs = false;
    for (const OptionBox& box : kBoxes)
        differs |= IsButtonChecked(Box(box)) != (options.*box.option != 0);
    EnableWindow(GetDlgItem(miscellaneousWindow, kMiscSaveButton), differs);
}

void OnSave()
{
    for (const OptionBox& box : kBoxes)
        options.*box.option = IsButtonChecked(Box(box)) ? 1 : 0;
    SaveOptionsOrWarn();
    ReportUserMessage(L"Miscellaneous options saved in options file\r\n", true);
    ShowWindow(miscellaneousWindow, SW_HIDE);
}

LRESULT CALLBACK MiscellaneousWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED)
            return 0;
        switch (LOWORD(wParam)) {
        case kMiscSpacingBox:
        case kMiscGpsBox:
        case kMiscFileColourBox:
            OnBoxClicked();
            break;
        case kMiscSaveButton:
            OnSave();
            break;
        case kMiscCancelButton:
            ShowWindow(window, SW_HIDE);
            break;
        }
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, MiscellaneousOptionsWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateMiscellaneousWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"MiscellaneousOptions", MiscellaneousWindowProc,
                                   L"Miscellaneous Options", kPlainWindowStyle, 380, 225,
                                   MiscellaneousOptionsWindowKey);
    if (!window)
        return nullptr;
    CreateCheckBox(window, L" Spacing around record buttons", 25, 15, 330, kMiscSpacingBox);
    CreateCheckBox(window, L" Automatically start USB GPS if connected", 25, 45, 330, kMiscGpsBox);
    CreateCheckBox(window, L" Enable brightness/contrast in video file", 25, 75, 330, kMiscFileColourBox);
    CreatePushButton(window, L"Save", 60, 130, 100, 30, kMiscSaveButton);
    CreatePushButton(window, L"Cancel", 210, 130, 100, 30, kMiscCancelButton);
    miscellaneousWindow = window;
    return window;
}

void OpenMiscellaneousWindow()
{
    if (!miscellaneousWindow)
        return;
    for (const OptionBox& box : kBoxes)
        SetButtonChecked(Box(box), options.*box.option != 0);
    EnableWindow(GetDlgItem(miscellaneousWindow, kMiscSaveButton), FALSE);
    ShowPlacedDialog(miscellaneousWindow);
}
