// The User Messages window: where it stands and how big it is, and the two
// commands of its File menu.
#include "ui/user_messages_window.h"

#include "app/startup_state.h"
#include "persistence/options.h"
#include "ui/commands.h"
#include "ui/message_log.h"
#include "ui/user_messages.h"
#include "ui/window_layout.h"

HWND userMessagesWindow = nullptr;

namespace {

LRESULT CALLBACK UserMessagesWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MOVE: {
        if (startingUp || repositioning)
            break;
        KeepWindowOnScreen(window);
        RECT rect;
        GetWindowRect(window, &rect);
        if (rect.left >= -10000 && rect.top >= -10000) {
            options.windows[MessageWindowKey].currentLeft = rect.left;
            options.windows[MessageWindowKey].currentTop = rect.top;
        }
        break;
    }
    case WM_SIZE: {
        if (startingUp)
            break;
        RECT rect;
        GetWindowRect(window, &rect);
        if (rect.left < -10000 || rect.top < -10000)
            break;
        int width = rect.right - rect.left;
        int height = rect.bottom - rect.top;
        options.messageWindowWidth = width;
        options.messageWindowHeight = height;
        // Sized by the main window's frame, not this window's: that is how
        // the control has always sat in it.
        if (richEdit)
            SetWindowPos(richEdit, nullptr, 0, 0, width - frameWidth, height - frameHeight,
                         SWP_NOZORDER | SWP_NOMOVE | SWP_NOACTIVATE);
        break;
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDM_SAVE_MESSAGES:
            SaveUserMessages(false);
            return 0;
        case IDM_SAVE_MESSAGES_AND_CLEAR:
            SaveUserMessages(true);
            return 0;
        }
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreateUserMessagesWindow(HINSTANCE instance, int width, int height)
{
    WNDCLASSEXW windowClass{sizeof windowClass};
    windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_NOCLOSE;
    windowClass.lpfnWndProc = UserMessagesWindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    windowClass.lpszClassName = L"User Messages Class";
    RegisterClassExW(&windowClass);
    userMessagesWindow = CreateWindowExW(0, L"User Messages Class", L"User Messages", 0xCE0000, 0, 0, width, height,
                                         nullptr, nullptr, instance, nullptr);
    return userMessagesWindow;
}
