#include "ui/performance_window.h"

#include "app/recording_control.h"
#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "video/capture_settings.h"

HWND performanceWindow = nullptr;

namespace {

HWND displayOffBox = nullptr;
HWND filtersOffBox = nullptr;
HWND evrRadio = nullptr;
HWND vmr9Radio = nullptr;
HWND vmr7Radio = nullptr;

// Save and OK both put the choices into force and restart the camera, as a
// renderer choice needs a new graph; Save alone writes them.
void Apply(bool save)
{
    int32_t renderer = IsButtonChecked(evrRadio) ? RendererEvr : IsButtonChecked(vmr9Radio) ? RendererVmr9 : RendererVmr7;
    options.DisplayOffWhileRecording = IsButtonChecked(displayOffBox);
    options.RemoveFiltersWhileRecording = IsButtonChecked(filtersOffBox);
    options.DefaultRenderer = renderer;
    displayOffWhileRecording = options.DisplayOffWhileRecording;
    removeFiltersWhileRecording = options.RemoveFiltersWhileRecording;
    rendererChoice = renderer;
    if (save) {
        ReportUserMessage(L"Performance Options saved in options file\r\n", true);
        SaveOptionsOrWarn();
    }
    ShowWindow(performanceWindow, SW_HIDE);
    RestartVideo();
}

LRESULT CALLBACK PerformanceWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED)
            return 0;
        switch (LOWORD(wParam)) {
        case kPerformanceSaveButton:
            Apply(true);
            break;
        case kPerformanceOkButton:
            Apply(false);
            break;
        case kPerformanceCancelButton:
            ShowWindow(window, SW_HIDE);
            break;
        }
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, PerformanceOptionsWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

HWND CreatePerformanceWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"Performance", PerformanceWindowProc, L"Performance Options",
                                   kPlainWindowStyle, 350, 310, PerformanceOptionsWindowKey);
    if (!window)
        return nullptr;
    displayOffBox = CreateCheckBox(window, L"Turn off display while recording", 25, 15, 300, kPerformanceDisplayOffBox);
    filtersOffBox =
        CreateCheckBox(window, L"Remove display filters while recording", 25, 45, 300, kPerformanceFiltersOffBox);
    evrRadio = CreateRadioButton(window, L"Enhanced Video Renderer", 25, 95, 300, kPerformanceEvrRadio, true);
    vmr9Radio = CreateRadioButton(window, L"VMR9", 25, 125, 300, kPerformanceVmr9Radio, false);
    vmr7Radio = CreateRadioButton(window, L"VMR7", 25, 155, 300, kPerformanceVmr7Radio, false);
    CreatePushButton(window, L"Save", 20, 210, 90, 30, kPerformanceSaveButton);
    CreatePushButton(window, L"OK", 125, 210, 90, 30, kPerformanceOkButton);
    CreatePushButton(window, L"Cancel", 230, 210, 90, 30, kPerformanceCancelButton);
    performanceWindow = window;
    return window;
}

void OpenPerformanceWindow()
{
    if (!performanceWindow)
        return;
    SetButtonChecked(displayOffBox, displayOffWhileRecording != 0);
    SetButtonChecked(filtersOffBox, removeFiltersWhileRecording != 0);
    // Any number but EVR's and VMR9's shows as VMR7.
    SetButtonChecked(evrRadio, rendererChoice == RendererEvr);
    SetButtonChecked(vmr9Radio, rendererChoice == RendererVmr9);
    SetButtonChecked(vmr7Radio, rendererChoice != RendererEvr && rendererChoice != RendererVmr9);
    ShowPlacedDialog(performanceWindow);
}
