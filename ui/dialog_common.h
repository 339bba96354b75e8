// What the program's tool and option windows share: their class, their
// colours, and the way they remember where they stand.
#pragma once

#include <windows.h>

// "Plain": title, system menu, minimise box, fixed size, close button.
constexpr DWORD kPlainWindowStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

// Registers a window class with the light grey background, arrow cursor and
// the program's icons.
bool RegisterToolWindowClass(HINSTANCE instance, const wchar_t* className, WNDPROC procedure);

// A click on the close box, or WM_CLOSE: the windows that live as long as
// the program swallow it.
bool IsCloseRequest(UINT message, WPARAM wParam);

// Registers such a class and creates a hidden top-level window of it,
// gives it the program's icons, and ties it to its position record (a
// WindowKey, or -1 for none). Null when either step fails.
HWND CreateToolWindow(HINSTANCE instance, const wchar_t* className, WNDPROC procedure, const wchar_t* title,
                      DWORD style, int width, int height, int windowKey);

// Places a dialog by its position record, shows it, and brings it to the top.
void ShowPlacedDialog(HWND window);

// Black text on the light grey of the windows, for WM_CTLCOLORSTATIC.
LRESULT StaticTextColour(HDC deviceContext);

// What every option and tool window does alike: the close box hides it, a
// move keeps it on the desktop and remembers where it stands, and static
// text gets the windows' colours. True, with the result, when the message
// needs nothing more; a move goes on to the default handling.
bool HandleCommonDialogMessage(HWND window, UINT message, WPARAM wParam, int windowKey, LRESULT* result);

// The move handling of a window with a position record: keep it on the
// desktop, then remember where it stands unless it is minimised.
void TrackWindowPosition(HWND window, int windowKey);

// Gives a window the program's big and small icons where they loaded.
void SetWindowIcons(HWND window);

// Sets a control's font when the font exists.
void SetControlFont(HWND control, HFONT font);

// A child control with an identifier (0 for none), shown, in the given font
// when that font exists.
HWND CreateControl(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, int x, int y, int width,
                   int height, int id, HFONT font);

// The option and tool windows' usual controls in their usual fonts:
// static text and check boxes in the dialog static font, push buttons in
// the dialog button font.
HWND CreateLabel(HWND parent, const wchar_t* text, int x, int y, int width, int height = 20, int id = 0);
HWND CreatePushButton(HWND parent, const wchar_t* text, int x, int y, int width, int height, int id);
HWND CreateCheckBox(HWND parent, const wchar_t* text, int x, int y, int width, int id);
// The first radio button of a group starts the group.
HWND CreateRadioButton(HWND parent, const wchar_t* text, int x, int y, int width, int id, bool firstOfGroup);

// The position of a slider that sent WM_HSCROLL with `wParam`, for the line,
// page and thumb-track codes: the thumb-track code carries it, the others
// read it from the slider. False for any other code, the end of a thumb
// drag among them.
bool SliderMovedTo(HWND slider, WPARAM wParam, int* position);

bool IsButtonChecked(HWND button);
void SetButtonChecked(HWND button, bool checked);
