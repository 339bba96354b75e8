#include "ui/display_tools.h"

#include "persistence/options.h"
#include <commctrl.h>

#include "ui/commands.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/menus.h"
#include "ui/window_layout.h"
#include "video/capture_settings.h"
#include "video/frame_size.h"
#include "video/video_player.h"

HWND brightnessContrastWindow = nullptr;
HWND pixelSaturationWindow = nullptr;
HWND frameIntegrationWindow = nullptr;
HWND magnifyWindow = nullptr;

namespace {

void ShowTool(HWND window)
{
    if (window)
        ShowPlacedDialog(window);
}

void HideTool(HWND window)
{
    if (window)
        ShowWindow(window, SW_HIDE);
}

void SetSaturationValue(int32_t value)
{
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->transformFilter->saturationValue = value;
}

HWND Control(HWND window, int id)
{
    return window ? GetDlgItem(window, id) : nullptr;
}

void SetSlider(HWND window, int id, int position)
{
    SendMessageW(Control(window, id), TBM_SETPOS, TRUE, position);
}

}  // namespace

void TurnOnBrightnessContrast()
{
    brightnessContrastOn = 1;
    SetMenuCheck(IDM_BRIGHTNESS_CONTRAST, true);
    SetButtonChecked(Control(brightnessContrastWindow, kColorInFileBox), false);
    colorInCaptureFile = 0;
    // The file box is offered only when the option allows colour in files.
    if (brightnessContrastWindow) {
        bool fileBox = options.EnableVideoBrightnessContrast != 0;
        SetWindowPos(brightnessContrastWindow, nullptr, 0, 0, 320, fileBox ? 320 : 270,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        ShowWindow(Control(brightnessContrastWindow, kColorInFileBox), fileBox ? SW_SHOW : SW_HIDE);
    }
    ShowTool(brightnessContrastWindow);
}

void CloseBrightnessContrast()
{
    SetMenuCheck(IDM_BRIGHTNESS_CONTRAST, false);
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->SetColorControls(50, 50);
    SetSlider(brightnessContrastWindow, kBrightnessSlider, 50);
    SetSlider(brightnessContrastWindow, kContrastSlider, 50);
    SetButtonChecked(Control(brightnessContrastWindow, kColorInFileBox), false);
    colorInCaptureFile = 0;
    brightnessContrastOn = 0;
    HideTool(brightnessContrastWindow);
}

void TurnOnPixelSaturation()
{
    pixelSaturationOn = 1;
    SetMenuCheck(IDM_PIXEL_SATURATION, true);
    // Without a stored default the value stays as it stood: the tool marks
    // nothing until its slider moves.
    if (options.PixelSaturationValue >= 50 && options.PixelSaturationValue <= 255) {
        SetSlider(pixelSaturationWindow, kSaturationSlider, options.PixelSaturationValue);
        SetSaturationValue(options.PixelSaturationValue);
    }
    EnableWindow(Control(pixelSaturationWindow, kSaturationSaveButton), FALSE);
    ShowTool(pixelSaturationWindow);
}

void ClosePixelSaturation()
{
    SetMenuCheck(IDM_PIXEL_SATURATION, false);
    pixelSaturationOn = 0;
    SetSaturationValue(-1);
    HideTool(pixelSaturationWindow);
}

void TurnOnFrameIntegration()
{
    // No integration until the window's Start gives a count.
    frameIntegrationOn = 1;
    SetMenuCheck(IDM_FRAME_INTEGRATION, true);
    SetWindowTextW(Control(frameIntegrationWindow, kIntegrationCountBox), L"2");
    ShowTool(frameIntegrationWindow);
}

void CloseFrameIntegration()
{
    SetMenuCheck(IDM_FRAME_INTEGRATION, false);
    frameIntegrationCount = 1;
    frameIntegrationOn = 0;
    HideTool(frameIntegrationWindow);
}

void TurnOnMagnify()
{
    magnifyOn = 1;
    SetMenuCheck(IDM_MAGNIFY, true);
    // " None" selected: the factor stays as it is until a button is pressed.
    for (int id = kMagnifyHalfRadio; id <= kMagnifyDoubleRadio; ++id)
        SetButtonChecked(Control(magnifyWindow, id), id == kMagnifyNoneRadio);
    ShowTool(magnifyWindow);
}

void CloseMagnify()
{
    magnifyClosing = 1;
    SetMenuCheck(IDM_MAGNIFY, false);
    magnifyOn = 0;
    magnifyChoice = 0;
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->UpdateRendererFrameSize();
    UpdateMainWindowLayout();
    HideTool(magnifyWindow);
    // Once more, now without the tool's window.
    UpdateMainWindowLayout();
    magnifyClosing = 0;
}
