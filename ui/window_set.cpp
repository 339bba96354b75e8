#include "ui/window_set.h"

HWND mainWindow = nullptr;
