// The User Messages window, which holds the rich edit control of the report
// channel and the menu that saves it as a log.
#pragma once

#include <windows.h>

extern HWND userMessagesWindow;

// Registers "User Messages Class" and makes the window, hidden, of the saved
// size; sets userMessagesWindow.
HWND CreateUserMessagesWindow(HINSTANCE instance, int width, int height);
