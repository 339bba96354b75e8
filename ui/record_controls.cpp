#include "ui/record_controls.h"

#include "app/recording_buttons.h"
#include "persistence/options.h"
#include "ui/app_icons.h"
#include "ui/dialog_common.h"
#include "ui/record_buttons.h"

namespace {

LRESULT CALLBACK RecordControlsProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // The close box is dead: this window lives with the program.
    if (IsCloseRequest(message, wParam))
        return 0;
    switch (message) {
    case WM_COMMAND: {
        HWND from = reinterpret_cast<HWND>(lParam);
        if (HIWORD(wParam) != BN_CLICKED)
            break;
        if (from == startButton)
            OnStartRecordingButton();
        else if (from == stopButton)
            OnStopRecordingButton();
        return 0;
    }
    case WM_MOVE:
        TrackWindowPosition(window, RecordControlsWindowKey);
        return 0;
    case WM_CTLCOLORSTATIC:
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
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
    bool spaced = options.RecordButtonsSpace != 0;
    int width = spaced ? 264 : 224;
    int height = spaced ? 164 : 144;
    int margin = spaced ? 20 : 0;

    recordControlsWindow = CreateToolWindow(instance, L"RecordControlsWindow", RecordControlsProc, L"Record",
                                            kPlainWindowStyle, width, height, -1);
    if (!recordControlsWindow)
        return false;
    startButton = CreateButton(recordControlsWindow, L"Start\r\nRecording", appIcons.record, margin + 3, margin + 3);
    stopButton = CreateButton(recordControlsWindow, L"Stop\r\nRecording", appIcons.stop, margin + 106, margin + 3);
    return startButton && stopButton;
}
