// The Schedule Event window: the predicted moment in UTC, the duration,
// optional names and comment, and the power request of one event, written
// as a file into "Events" for the queue to take up. The same window edits
// an existing event.
#pragma once

#include <windows.h>

#include <string>

// Makes the window, hidden, and sets scheduleEventWindow.
HWND CreateScheduleWindow(HINSTANCE instance);

// The menu command "Schedule...": a new event at the present UTC.
void OpenScheduleWindow();

// "Edit Selected Event" of the event list: the window takes the event of
// that file in "Events" and shows where it stands.
void OpenScheduleWindowForEdit(const std::wstring& fileName);
