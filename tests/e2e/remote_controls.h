// Common controls of the program, driven from the test process: date-time
// pickers and list views keep their data in the program's memory, so their
// messages go through a buffer allocated in that process.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace e2e {

// Sets a picker's time (no change notification follows, as on Windows).
bool SetPickerTime(HWND picker, const SYSTEMTIME& time);
// The picker's time; false when it holds none.
bool PickerTime(HWND picker, SYSTEMTIME* time);
// Raises one field of a picker by one step as a user would, with a click
// and keys (field 0 is the first, e.g. the month of "MMM d',' yyyy
// HH':'mm':'ss", 5 its seconds), so that the program is told of the change.
void StepPickerFieldUp(HWND picker, int field);

int ListViewRowCount(HWND list);
std::wstring ListViewText(HWND list, int row, int column);
// Every row's cells, columns 0 to `columns` - 1.
std::vector<std::vector<std::wstring>> ListViewRows(HWND list, int columns);
// A click on a row, as a user's (with Ctrl to add it to the selection).
void ClickListViewRow(HWND list, int row, bool addToSelection = false);
int ListViewSelectedCount(HWND list);

// The text of a message box.
std::wstring MessageBoxText(HWND box);
// Answers a message box by its button (IDYES, IDNO, ...).
void AnswerMessageBox(HWND box, int button);

}  // namespace e2e
