#include "ui/gps_window.h"

#include "base/report.h"
#include "gps/gps_link.h"
#include "gps/gps_reader.h"
#include "gps/gps_refresh_timer.h"
#include "persistence/options.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"

HWND gpsWindow = nullptr;

namespace {

// The command the tick sends the window, and its parameter.
constexpr WPARAM kTickCommand = 1024;
constexpr LPARAM kTickParameter = 32779;

HWND latitudeField = nullptr;
HWND longitudeField = nullptr;
HWND altitudeField = nullptr;
HWND satellitesField = nullptr;

// Close and the close box: the link ends with the window.
void CloseGpsWindow(HWND window)
{
    ShowWindow(window, SW_HIDE);
    CloseGps();
    ReportUserMessage(L"GPS connection is closed\r\n", true);
    StopGpsRefreshTimer();
}

LRESULT CALLBACK GpsWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (IsCloseRequest(message, wParam)) {
        CloseGpsWindow(window);
        return 0;
    }
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == kGpsCloseButtonId && HIWORD(wParam) == BN_CLICKED)
            CloseGpsWindow(window);
        return 0;
    case WM_MOVE:
        TrackWindowPosition(window, GpsWindowKey);
        break;
    case WM_CTLCOLORSTATIC:
        return StaticTextColour(reinterpret_cast<HDC>(wParam));
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// A text the reading holds: into the last reading without its blank, into
// the window with it. An empty text changes neither.
void ShowValue(const wchar_t* text, wchar_t* lastValue, int lastCapacity, HWND control)
{
    if (!text[0])
        return;
    lstrcpynW(lastValue, GpsReadingValue(text), lastCapacity);
    SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    UpdateWindow(control);
}

}  // namespace

HWND CreateGpsWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"GPSDevice", GpsWindowProc, L"USB GPS Receiver", kPlainWindowStyle, 290,
                                   355, GpsWindowKey);
    if (!window)
        return nullptr;
    HFONT label = appFonts[DialogStaticFont];
    HFONT value = appFonts[ListFont];
    HFONT button = appFonts[DialogButtonFont];
    CreateControl(window, L"STATIC", L"Latitude:", SS_LEFT, 15, 22, 90, 22, 0, label);
    latitudeField = CreateControl(window, L"EDIT", L"", ES_LEFT | ES_READONLY | WS_BORDER | ES_AUTOHSCROLL, 105, 20,
                                  160, 26, 0, value);
    CreateControl(window, L"STATIC", L"Longitude:", SS_LEFT, 15, 60, 90, 22, 0, label);
    longitudeField = CreateControl(window, L"EDIT", L"", ES_LEFT | ES_READONLY | WS_BORDER | ES_AUTOHSCROLL, 105, 58,
                                   160, 26, 0, value);
    CreateControl(window, L"STATIC", L"Altitude:", SS_LEFT, 15, 98, 90, 22, 0, label);
    altitudeField = CreateControl(window, L"STATIC", L"", SS_LEFT, 105, 98, 160, 22, 0, value);
    CreateControl(window, L"STATIC", L"Satellites:", SS_LEFT, 15, 132, 90, 22, 0, label);
    satellitesField = CreateControl(window, L"STATIC", L"", SS_LEFT, 105, 132, 160, 22, 0, value);
    // Present but never enabled: no position is captured and no difference
    // between computer and GPS time is worked out anywhere.
    HWND capture = CreateControl(window, L"BUTTON", L"Capture Position", BS_PUSHBUTTON, 45, 175, 190, 30,
                                 kGpsCapturePositionButtonId, button);
    EnableWindow(capture, FALSE);
    HWND timeDifference = CreateControl(window, L"BUTTON", L"Set Time Difference", BS_PUSHBUTTON, 45, 215, 190, 30,
                                        kGpsSetTimeDifferenceButtonId, button);
    EnableWindow(timeDifference, FALSE);
    CreateControl(window, L"BUTTON", L"Close", BS_DEFPUSHBUTTON, 90, 270, 100, 30, kGpsCloseButtonId, button);
    gpsWindow = window;
    return window;
}

int RefreshGpsWindow(GpsSnapshot& lastReading)
{
    if (!GpsLinkOpen()) {
        ReportUserMessage(L"GPS receiver is not connected\r\n\r\n", true);
        return 0;
    }
    GpsReading reading;
    if (!ReadGpsWithRetry(reading)) {
        ReportUserMessage(L"GPS information is not valid\r\n", true);
        return 0;
    }
    ShowValue(reading.latitudeText, lastReading.latitude, kGpsSnapshotTextCapacity, latitudeField);
    ShowValue(reading.longitudeText, lastReading.longitude, kGpsSnapshotTextCapacity, longitudeField);
    ShowValue(reading.satellitesText, lastReading.satellites, kGpsSnapshotTextCapacity, satellitesField);
    ShowValue(reading.altitudeText, lastReading.altitude, kGpsSnapshotTextCapacity, altitudeField);
    return 1;
}

void ShowGpsWindowAtTick()
{
    ShowWindow(gpsWindow, SW_SHOW);
    UpdateWindow(gpsWindow);
    SendMessageW(gpsWindow, WM_COMMAND, kTickCommand, kTickParameter);
}
