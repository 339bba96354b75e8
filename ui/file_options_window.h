// The File Options window: the name prefixes and folders of video files and
// message logs, and the global prefix of event files.
#pragma once

#include <windows.h>

#include <string>

extern HWND fileOptionsWindow;

// The program's folder plus "VideoFiles\" and plus "LogFiles\", set at
// start-up; the folders that "Use Default" puts back.
extern std::wstring defaultVideoFolder;
extern std::wstring defaultLogFolder;

// Makes the window and its path pop-up, hidden, and sets fileOptionsWindow.
HWND CreateFileOptionsWindow(HINSTANCE instance);

// At start-up: the folders from the options, or the defaults, and the three
// prefixes where the options set them.
void FillFileOptions();

// The menu command "File...".
void OpenFileOptionsWindow();
