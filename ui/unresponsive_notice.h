// The "Stand by..." notice, shown while the user interface can't respond
// (the GPS port scan).
#pragma once

#include <windows.h>

HWND CreateUnresponsiveNotice(HINSTANCE instance);
