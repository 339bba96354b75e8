// The View, Edit, Delete Events window: the event files of the folder in a
// sortable list, from which one can be edited or several deleted.
#pragma once

#include <windows.h>

extern HWND viewEventsWindow;

// Makes the window, hidden, and sets viewEventsWindow.
HWND CreateEventListWindow(HINSTANCE instance);

// The menu command "Edit and Delete...".
void OpenEventListWindow();
