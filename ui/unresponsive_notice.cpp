#include "ui/unresponsive_notice.h"

#include "ui/dialog_common.h"
#include "ui/fonts.h"

HWND unresponsiveWindow = nullptr;

namespace {

LRESULT CALLBACK UnresponsiveProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CTLCOLORSTATIC)
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateUnresponsiveNotice(HINSTANCE instance)
{
    RegisterToolWindowClass(instance, L"AppUnresponsive", UnresponsiveProc);
    HWND window = CreateWindowExW(WS_EX_NOPARENTNOTIFY, L"AppUnresponsive", L"Stand by...", 0x90C00000, 300, 500, 350,
                                  150, nullptr, nullptr, instance, nullptr);
    if (!window)
        return nullptr;
    ShowWindow(window, SW_HIDE);
    HWND text = CreateWindowExW(0, L"STATIC",
                                L"MAVU Video Capture is unresponsive\r\nduring this operation.\r\n\r\n"
                                L"Stand by for completion...",
                                WS_CHILD | WS_VISIBLE, 20, 20, 300, 100, window, nullptr, instance, nullptr);
    SetControlFont(text, appFonts[EventListFont]);
    unresponsiveWindow = window;
    return window;
}

void ShowUnresponsiveNotice(bool show)
{
    if (!unresponsiveWindow)
        return;
    ShowWindow(unresponsiveWindow, show ? SW_SHOW : SW_HIDE);
    if (show)
        RedrawWindow(unresponsiveWindow, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}
