#include "ui/video_windows.h"

#include <algorithm>

#include "base/report.h"
#include "ui/window_class.h"
#include "video/frame_size.h"

HWND clippingWindow = nullptr;
HWND scrollWindow = nullptr;

namespace {

int scrollX = 0;
int scrollY = 0;
int maximumX = 0;
int maximumY = 0;

LRESULT CALLBACK ClippingWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcW(window, message, wParam, lParam);
}

void SetBar(HWND window, int bar, int range, int page)
{
    SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS};
    info.nMin = 0;
    info.nMax = range;
    info.nPage = static_cast<UINT>(page);
    info.nPos = 0;
    SetScrollInfo(window, bar, &info, TRUE);
}

void Scroll(HWND window, int bar, int code, int thumb)
{
    bool horizontal = bar == SB_HORZ;
    int& position = horizontal ? scrollX : scrollY;
    int target = ScrollTarget(code, position, thumb, horizontal ? maximumX : maximumY);
    if (target < 0 || target == position)
        return;
    int delta = position - target;
    ScrollWindowEx(window, horizontal ? delta : 0, horizontal ? 0 : delta, nullptr, nullptr, nullptr, nullptr,
                   SW_INVALIDATE);
    UpdateWindow(window);
    position = target;
    SetScrollPos(window, bar, position, TRUE);
    SetWindowPos(clippingWindow, nullptr, -scrollX, -scrollY, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT CALLBACK ScrollWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE: {
        int width = LOWORD(lParam);
        int height = HIWORD(lParam);
        maximumX = std::max(0, displayedWidth - width);
        maximumY = std::max(0, displayedHeight - height);
        // The stored positions are only cut down, not reset with the bars:
        // the next scroll goes on from where the picture was.
        scrollX = std::min(scrollX, maximumX);
        scrollY = std::min(scrollY, maximumY);
        SetBar(window, SB_HORZ, displayedWidth, width);
        SetBar(window, SB_VERT, displayedHeight, height);
        return 0;
    }
    case WM_HSCROLL:
        Scroll(window, SB_HORZ, LOWORD(wParam), static_cast<short>(HIWORD(wParam)));
        return 0;
    case WM_VSCROLL:
        Scroll(window, SB_VERT, LOWORD(wParam), static_cast<short>(HIWORD(wParam)));
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}


}  // namespace

int ScrollTarget(int code, int position, int thumbPosition, int maximum)
{
    int target;
    switch (code) {
    case SB_LINEUP: target = position - 5; break;
    case SB_LINEDOWN: target = position + 5; break;
    case SB_PAGEUP: target = position - 50; break;
    case SB_PAGEDOWN: target = position + 50; break;
    case SB_THUMBPOSITION: target = thumbPosition; break;
    default: return -1;
    }
    return std::clamp(target, 0, std::max(0, maximum));
}

HWND CreateClippingWindow(HINSTANCE instance, HWND parent)
{
    RegisterWindowClass(instance, L"MavuVideoRecordWindow", ClippingWindowProc, GRAY_BRUSH, false);
    HWND window = CreateWindowExW(0, L"MavuVideoRecordWindow", nullptr, WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 640, 480,
                                  parent, nullptr, instance, nullptr);
    if (!window)
        return nullptr;
    // Renderers draw into the client area as if it were the whole window.
    RECT outer{}, inner{};
    GetWindowRect(window, &outer);
    GetClientRect(window, &inner);
    if (outer.right - outer.left != inner.right || outer.bottom - outer.top != inner.bottom)
        ReportUserMessage(L"WARNING: clipping window borders have non-zero thickness, please report this message",
                          true);
    clippingWindow = window;
    return window;
}

HWND CreateScrollWindow(HINSTANCE instance, HWND parent)
{
    RegisterWindowClass(instance, L"MavuVideoScrollWindow", ScrollWindowProc, GRAY_BRUSH, false);
    scrollWindow =
        CreateWindowExW(0, L"MavuVideoScrollWindow", nullptr, WS_CHILD | WS_HSCROLL | WS_VSCROLL | WS_CLIPCHILDREN, 0,
                        0, 400, 300, parent, nullptr, instance, nullptr);
    return scrollWindow;
}
