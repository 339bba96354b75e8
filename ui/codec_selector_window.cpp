#include "ui/codec_selector_window.h"

bool CreateCodecSelectorWindow(HINSTANCE)
{
    return true;
}

void OpenCodecSelectorWindow() {}
