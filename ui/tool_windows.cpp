#include "ui/tool_windows.h"

#include <commctrl.h>

#include <cwchar>

#include "app/recording_control.h"
#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/display_tools.h"
#include "ui/fonts.h"
#include "ui/window_layout.h"
#include "video/capture_settings.h"
#include "video/frame_size.h"
#include "video/video_player.h"

namespace {

// Video Magnify: the radios in their order on the window, with their choice.
struct MagnifyRadio {
    int id;
    const wchar_t* text;
    int32_t choice;
};
const MagnifyRadio kMagnifyRadios[] = {
    {kMagnifyHalfRadio, L" x 0.5", 1},      {kMagnifyThreeQuartersRadio, L" x 0.75", 2},
    {kMagnifyNoneRadio, L" None", 0},       {kMagnifyOneAndHalfRadio, L" x 1.5", 3},
    {kMagnifyDoubleRadio, L" x 2.0", 4},
};

void OnMagnifyChoice(int32_t choice)
{
    magnifyChanging = 1;
    magnifyChoice = choice;
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->UpdateRendererFrameSize();
    UpdateMainWindowLayout();
    magnifyChanging = 0;
}

LRESULT CALLBACK MagnifyWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) {
        for (const MagnifyRadio& radio : kMagnifyRadios)
            if (radio.id == LOWORD(wParam))
                OnMagnifyChoice(radio.choice);
        return 0;
    }
    if (message == WM_CLOSE) {
        CloseMagnify();
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, MagnifyWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

// Pixel Saturation.
HWND Item(HWND window, int id)
{
    return GetDlgItem(window, id);
}

// The slider writes the threshold straight into the running filter: the
// filter reads it at each frame, so there is no restart.
void OnSaturationSlider(HWND window, WPARAM wParam)
{
    int position;
    if (!SliderMovedTo(Item(window, kSaturationSlider), wParam, &position))
        return;
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->transformFilter->saturationValue = position;
}

// The two boxes exclude each other; Save is there while one is checked.
void OnSaturationBox(HWND window, int id)
{
    int other = id == kSaturationUseBox ? kSaturationRemoveBox : kSaturationUseBox;
    if (IsButtonChecked(Item(window, id)))
        SetButtonChecked(Item(window, other), false);
    EnableWindow(Item(window, kSaturationSaveButton),
                 IsButtonChecked(Item(window, kSaturationUseBox)) || IsButtonChecked(Item(window, kSaturationRemoveBox)));
}

void OnSaturationSave(HWND window)
{
    if (IsButtonChecked(Item(window, kSaturationUseBox))) {
        int position = static_cast<int>(SendMessageW(Item(window, kSaturationSlider), TBM_GETPOS, 0, 0));
        options.PixelSaturationValue = position;
        if (VideoPlayer* player = CurrentVideoPlayer())
            player->transformFilter->saturationValue = position;
        SetButtonChecked(Item(window, kSaturationUseBox), false);
        EnableWindow(Item(window, kSaturationSaveButton), FALSE);
        ReportUserMessage(L"Pixel saturation value saved in options file\r\n", true);
        SaveOptionsOrWarn();
    } else if (IsButtonChecked(Item(window, kSaturationRemoveBox))) {
        options.PixelSaturationValue = -1;
        ReportUserMessage(L"Pixel saturation removed from options file\r\n", true);
        ClosePixelSaturation();
        SaveOptionsOrWarn();
    }
}

LRESULT CALLBACK PixelSaturationWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_HSCROLL:
        if (reinterpret_cast<HWND>(lParam) == Item(window, kSaturationSlider))
            OnSaturationSlider(window, wParam);
        return 0;
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED)
            return 0;
        switch (LOWORD(wParam)) {
        case kSaturationUseBox:
        case kSaturationRemoveBox:
            OnSaturationBox(window, LOWORD(wParam));
            break;
        case kSaturationSaveButton:
            OnSaturationSave(window);
            break;
        case kSaturationCancelButton:
            ClosePixelSaturation();
            RestartVideo();
            break;
        }
        return 0;
    case WM_CLOSE:
        ClosePixelSaturation();
        RestartVideo();
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, PixelSaturationWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

// Frame Integration.
void OnIntegrationStart(HWND window)
{
    wchar_t text[8] = L"";
    GetWindowTextW(Item(window, kIntegrationCountBox), text, 8);
    unsigned count = 0;
    // An empty box gives no number: the same message as one out of range.
    if (swscanf(text, L"%u", &count) == 1 && count >= 2 && count <= 30) {
        frameIntegrationCount = static_cast<int32_t>(count);
        frameIntegrationOn = 1;
        RestartVideo();
        return;
    }
    ReportUserMessage(L"\r\nFrame count must be a value from 2 to 30\r\n", true);
    SetWindowTextW(Item(window, kIntegrationCountBox), L"2");
}

LRESULT CALLBACK FrameIntegrationWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kIntegrationStartButton) {
            OnIntegrationStart(window);
        } else if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kIntegrationCancelButton) {
            CloseFrameIntegration();
            RestartVideo();
        }
        return 0;
    case WM_CLOSE:
        CloseFrameIntegration();
        RestartVideo();
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, FrameIntegrationWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

// Brightness and Contrast: each slider acts on the colour filters at once,
// leaving the other value as it is.
void OnColorSlider(HWND window, WPARAM wParam, HWND slider)
{
    int position;
    if (!SliderMovedTo(slider, wParam, &position))
        return;
    VideoPlayer* player = CurrentVideoPlayer();
    if (!player)
        return;
    if (slider == Item(window, kBrightnessSlider))
        player->SetColorControls(position, -1);
    else if (slider == Item(window, kContrastSlider))
        player->SetColorControls(-1, position);
}

LRESULT CALLBACK BrightnessContrastWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_HSCROLL:
        OnColorSlider(window, wParam, reinterpret_cast<HWND>(lParam));
        return 0;
    case WM_COMMAND:
        if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == kColorInFileBox)
            colorInCaptureFile = IsButtonChecked(Item(window, kColorInFileBox)) ? 1 : 0;
        return 0;
    case WM_CLOSE:
        CloseBrightnessContrast();
        RestartVideo();
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, BrightnessContrastWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

// One slider with its centred label below it. False, after the line, when
// either can't be made.
bool CreateColorSlider(HWND window, int top, int sliderId, int labelId, const wchar_t* label,
                       const wchar_t* sliderWarning, const wchar_t* labelWarning)
{
    HWND slider =
        CreateControl(window, TRACKBAR_CLASSW, L"", TBS_HORZ | WS_TABSTOP, 20, top, 265, 45, sliderId, nullptr);
    if (!slider) {
        ReportUserMessage(sliderWarning, false);
        return false;
    }
    SendMessageW(slider, TBM_SETRANGE, TRUE, MAKELPARAM(0, 100));
    for (int tick : {25, 50, 75})
        SendMessageW(slider, TBM_SETTIC, 0, tick);
    SendMessageW(slider, TBM_SETPAGESIZE, 0, 1);
    SendMessageW(slider, TBM_SETPOS, TRUE, 50);
    if (!CreateControl(window, L"STATIC", label, SS_CENTER, 20, top + 50, 265, 22, labelId, appFonts[ListFont])) {
        ReportUserMessage(labelWarning, false);
        return false;
    }
    return true;
}

}  // namespace

HWND CreateBrightnessContrastWindow(HINSTANCE instance)
{
    // Made at the larger size; turning the tool on sizes it to the option.
    HWND window = CreateToolWindow(instance, L"BrightnessContrast", BrightnessContrastWindowProc,
                                   L"Brightness and Contrast", kPlainWindowStyle, 320, 320,
                                   BrightnessContrastWindowKey);
    if (!window)
        return nullptr;
    brightnessContrastWindow = window;
    if (!CreateColorSlider(window, 20, kBrightnessSlider, kBrightnessLabel, L"Brightness",
                           L"WARNING: cannot create child brightness slider window\r\n",
                           L"WARNING: cannot create parent brightness slider window\r\n") ||
        !CreateColorSlider(window, 120, kContrastSlider, kContrastLabel, L"Contrast",
                           L"WARNING: cannot create child contrast slider window\r\n",
                           L"WARNING: cannot create parent contrast slider window\r\n"))
        return window;
    CreateCheckBox(window, L" Insert into video file when recording", 8, 225, 296, kColorInFileBox);
    return window;
}

HWND CreateMagnifyWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"Magnify", MagnifyWindowProc, L"Video Magnify", kPlainWindowStyle, 270,
                                   230, MagnifyWindowKey);
    if (!window)
        return nullptr;
    int top = 15;
    for (const MagnifyRadio& radio : kMagnifyRadios) {
        HWND button = CreateRadioButton(window, radio.text, 70, top, 150, radio.id, radio.id == kMagnifyHalfRadio);
        SetControlFont(button, appFonts[DialogButtonFont]);
        top += 32;
    }
    magnifyWindow = window;
    return window;
}

HWND CreatePixelSaturationWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"PixelSaturation", PixelSaturationWindowProc, L"Pixel Saturation",
                                   kPlainWindowStyle, 650, 340, PixelSaturationWindowKey);
    if (!window)
        return nullptr;
    CreateControl(window, L"STATIC", L"Set pixel saturation value, range 50 to 255", SS_RIGHT, 20, 20, 590, 20, 0,
                  appFonts[DialogStaticFont]);
    HWND slider = CreateControl(window, TRACKBAR_CLASSW, L"", TBS_HORZ | TBS_AUTOTICKS | TBS_TOOLTIPS | WS_TABSTOP,
                                20, 55, 590, 45, kSaturationSlider, nullptr);
    SendMessageW(slider, TBM_SETRANGE, TRUE, MAKELPARAM(50, 255));
    SendMessageW(slider, TBM_SETTICFREQ, 10, 0);
    SendMessageW(slider, TBM_SETPAGESIZE, 0, 1);
    SendMessageW(slider, TBM_SETPOS, TRUE, 255);
    CreateCheckBox(window, L"Use current value as options default", 40, 130, 400, kSaturationUseBox);
    CreateCheckBox(window, L"Remove saturation default from options", 40, 165, 400, kSaturationRemoveBox);
    CreatePushButton(window, L"Save", 170, 230, 100, 30, kSaturationSaveButton);
    CreatePushButton(window, L"Cancel", 370, 230, 100, 30, kSaturationCancelButton);
    pixelSaturationWindow = window;
    return window;
}

HWND CreateFrameIntegrationWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"FrameIntegration", FrameIntegrationWindowProc, L"Frame Integration",
                                   kPlainWindowStyle, 500, 300, FrameIntegrationWindowKey);
    if (!window)
        return nullptr;
    CreateLabel(window,
                L"Integration frame count is the number of frames\r\noverlaid on top of one another and presented as "
                L"a\r\nsingle frame.  Frame count can vary from 2 to 30.\r\nDisplay only impact.  Record file has no "
                L"integration.",
                20, 15, 450, 90);
    CreateLabel(window, L"Frame Count:", 120, 130, 110);
    HWND box = CreateControl(window, L"EDIT", L"2", WS_BORDER | WS_TABSTOP | ES_NUMBER, 240, 128, 50, 24,
                             kIntegrationCountBox, appFonts[ListFont]);
    SendMessageW(box, EM_SETLIMITTEXT, 2, 0);
    CreatePushButton(window, L"Start", 110, 190, 100, 30, kIntegrationStartButton);
    CreatePushButton(window, L"Cancel", 270, 190, 100, 30, kIntegrationCancelButton);
    frameIntegrationWindow = window;
    return window;
}
