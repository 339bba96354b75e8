#include "video/capture_settings.h"

Flag rendererChoice{0};
Flag displayOffWhileRecording{0};
Flag removeFiltersWhileRecording{0};

Flag brightnessContrastOn{0};
Flag pixelSaturationOn{0};
Flag frameIntegrationOn{0};
Flag magnifyOn{0};
Flag frameIntegrationCount{1};
Flag colorInCaptureFile{0};

void ClearRuntimeSwitches()
{
    brightnessContrastOn = 0;
    pixelSaturationOn = 0;
    frameIntegrationOn = 0;
    magnifyOn = 0;
    frameIntegrationCount = 1;
}
