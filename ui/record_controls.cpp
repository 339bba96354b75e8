#include "ui/record_controls.h"

#include "app/app_state.h"
#include "app/main_window.h"
#include "app/recording_control.h"
#include "persistence/options.h"
#include "ui/dialog_common.h"

namespace {

LRESULT CALLBACK RecordControlsProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND: {
        MainWindow& app = *mainWindowObject;
        HWND from = reinterpret_cast<HWND>(lParam);
        if (HIWORD(wParam) != BN_CLICKED)
            break;
        if (from == app.startButton)
            OnStartRecordingButton();
        else if (from == app.stopButton)
            OnStopRecordingButton();
        return 0;
    }
    case WM_MOVE:
        TrackWindowPosition(window, RecordControlsWindowKey);
        return 0;
    case WM_CTLCOLORSTATIC:
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
    case WM_SYSCOMMAND:
        // The close box is dead: this window lives with the program.
        if ((wParam & 0xFFF0) == SC_CLOSE)
            return 0;
        break;
    case WM_CLOSE:
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND CreateButton(HWND parent, const wchar_t* text, HICON icon, int left, int top)
{
    DWORD style = WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON | BS_MULTILINE | (icon ? BS_ICON : 0);
    HWND button = CreateWindowExW(0, L"BUTTON", text, style, left, top, 100, 100, parent, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    if (button && icon)
        SendMessageW(button, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
    return button;
}

}  // namespace

bool CreateRecordControls(HINSTANCE instance)
{
    MainWindow& app = *mainWindowObject;
    bool spaced = options.RecordButtonsSpace != 0;
    int width = spaced ? 264 : 224;
    int height = spaced ? 164 : 144;
    int margin = spaced ? 20 : 0;

    RegisterToolWindowClass(instance, L"RecordControlsWindow", RecordControlsProc);
    app.recordControlsWindow = CreateToolWindow(instance, L"RecordControlsWindow", L"Record", kPlainWindowStyle,
                                                width, height, -1);
    if (!app.recordControlsWindow)
        return false;
    app.startButton = CreateButton(app.recordControlsWindow, L"Start\r\nRecording", appIcons.record, margin + 3,
                                   margin + 3);
    app.stopButton = CreateButton(app.recordControlsWindow, L"Stop\r\nRecording", appIcons.stop, margin + 106,
                                  margin + 3);
    return app.startButton && app.stopButton;
}

void SetRecordButtons(bool startEnabled, bool stopEnabled)
{
    MainWindow& app = *mainWindowObject;
    EnableWindow(app.startButton, startEnabled);
    EnableWindow(app.stopButton, stopEnabled);
}
