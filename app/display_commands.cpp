#include "app/display_commands.h"

#include "app/recording_control.h"
#include "ui/commands.h"
#include "ui/display_tools.h"
#include "video/capture_settings.h"

void OnDisplayCommand(unsigned command)
{
    // Each item toggles its tool's flag, not its check mark: after a rebuild
    // of the menus a tool can be on without its mark, and the item then
    // turns it off.
    switch (command) {
    case IDM_BRIGHTNESS_CONTRAST:
        if (brightnessContrastOn)
            CloseBrightnessContrast();
        else
            TurnOnBrightnessContrast();
        RestartVideo();
        break;
    case IDM_PIXEL_SATURATION:
        if (pixelSaturationOn)
            ClosePixelSaturation();
        else
            TurnOnPixelSaturation();
        RestartVideo();
        break;
    case IDM_FRAME_INTEGRATION:
        if (frameIntegrationOn)
            CloseFrameIntegration();
        else
            TurnOnFrameIntegration();
        RestartVideo();
        break;
    case IDM_MAGNIFY:
        if (magnifyOn)
            CloseMagnify();
        else
            TurnOnMagnify();
        break;
    }
}
