#include "ui/display_tools.h"

#include "persistence/options.h"
#include "ui/commands.h"
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

}  // namespace

void TurnOnBrightnessContrast()
{
    brightnessContrastOn = 1;
    SetMenuCheck(IDM_BRIGHTNESS_CONTRAST, true);
    colorInCaptureFile = 0;
    ShowTool(brightnessContrastWindow);
}

void CloseBrightnessContrast()
{
    SetMenuCheck(IDM_BRIGHTNESS_CONTRAST, false);
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
    if (options.PixelSaturationValue >= 50 && options.PixelSaturationValue <= 255)
        SetSaturationValue(options.PixelSaturationValue);
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
