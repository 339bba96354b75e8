// Where windows stand: the main window fitted to the picture, windows kept on
// the desktop, first positions, and remembered positions.
#pragma once

#include <windows.h>

#include "base/flag.h"
#include "persistence/options.h"
#include "video/frame_size.h"

// Work area of the desktop, read once at start-up.
extern int32_t workLeft, workTop, workRight, workBottom;
// Main window's outer size less its client size; serves every window.
extern int32_t frameWidth, frameHeight;
// The frame size of the current format and the picture's size on screen
// are the engine's (video/frame_size.h).

extern Flag repositioning;    // KeepWindowOnScreen is moving a window
extern Flag useDeviceSize;    // layout takes the video size, not the window's
extern Flag magnifyChanging;
extern Flag magnifyClosing;
extern Flag layoutSettingSize;  // UpdateMainWindowLayout sizes the main window

// Reads the work area; on failure 1024 by 768 and an INFO line.
void ReadWorkArea();

// The position KeepWindowOnScreen moves a window to. Returns false when the
// window may stay (or is minimised).
bool KeepOnScreenPosition(const RECT& window, int32_t frameWidth, int32_t workRight, int32_t workBottom,
                          POINT& moved);
bool KeepWindowOnScreen(HWND window);

// A dialog's first position when nothing is saved or current.
POINT DefaultDialogPosition(SIZE dialog, const RECT& mainWindow, int32_t frameWidth, int32_t workRight,
                            int32_t workBottom);
// Places a dialog with a position record before it is shown; any other
// window is left alone.
void PlaceDialog(HWND window);

// Registers which dialog window belongs to which position record.
void SetDialogWindowKey(HWND window, int windowKey);

struct InitialPositions {
    POINT main;
    SIZE mainSize;
    POINT messages;
    POINT recordControls;
};
// First positions of main, User Messages and Record Controls windows from
// the saved positions, else from the desktop.
InitialPositions ComputeInitialPositions(SIZE messagesSize, SIZE recordControlsSize);
void PlaceInitialWindows(HWND main, HWND clipping, HWND messages, HWND richEdit, HWND recordControls);

struct MainLayoutInput {
    RECT window;  // the main window as it stands
    // Its remembered position, where a device or magnify change places it
    // (kNoPosition when there is none: the window's own then).
    int32_t currentLeft, currentTop;
    bool useDeviceSize;
    bool magnifyChanging;
    bool magnifyClosing;
};
struct MainLayout {
    int32_t left, top, width, height;
    int32_t pictureWidth, pictureHeight;
    bool fits;  // picture shown directly; else inside the scroll window
    int32_t roomWidth, roomHeight;
};
MainLayout ComputeMainLayout(const MainLayoutInput& input);
void UpdateMainWindowLayout();

// Copies every set current position to the saved one (not the hibernation
// window's, which has none) and the User Messages size.
void CopyCurrentToSavedPositions(Options& record);
// The Set Window Positions command: copy, then save the options file.
void SaveWindowPositions();
