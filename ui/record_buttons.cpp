#include "ui/record_buttons.h"

HWND recordControlsWindow = nullptr;
HWND startButton = nullptr;
HWND stopButton = nullptr;

void SetRecordButtons(bool startEnabled, bool stopEnabled)
{
    EnableWindow(startButton, startEnabled);
    EnableWindow(stopButton, stopEnabled);
}
