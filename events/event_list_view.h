// The list of event files in the View, Edit, Delete Events window: its list
// view control, filled from the folder "Events".
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// The list view control; null until the window is made.
extern HWND eventListView;

// Adds the eight columns to a new list view control and keeps its handle.
void SetUpEventListView(HWND listView);

// Rebuilds the rows from the files of "Events\": expired events only with
// "Show expired events", sorted by start, the latest first unless
// "Ascending times".
void FillEventList();

// The hidden file names of the selected rows, in row order.
std::vector<std::wstring> SelectedEventFileNames();
// The hidden file name of a row.
std::wstring EventFileNameOfRow(int row);
