// The User Messages window: the program's one report channel. Every line that
// the program has to tell goes through ReportUserMessage.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// The one report operation. Callable from any thread, also before the window
// exists: then the line is queued and shown at the end of start-up, and its
// time stamp request is lost.
void ReportUserMessage(const wchar_t* text, bool withTimeStamp);

// Writes one entry into the rich edit control.
void AppendUserMessage(const wchar_t* text, bool withTimeStamp);

// Keeps a copy of a line reported before the window exists.
void QueueUserMessage(const wchar_t* text);

// Shows the queued lines, the first with a time stamp, and empties the queue.
void FlushQueuedUserMessages();

// Takes the queued lines without showing them (for a process that never
// makes the window, such as a test).
std::vector<std::wstring> TakeQueuedUserMessages();

// One queued line as it is to be shown.
struct QueuedEntry {
    std::wstring text;
    bool withTimeStamp;
};

// The flush order: queued order, only the first stamped.
std::vector<QueuedEntry> QueuedEntriesInFlushOrder(const std::vector<std::wstring>& queue);

// "\r\n", then (time stamp " (UTC)\r\n" when a stamp is given), then the text.
std::wstring ComposeUserMessageEntry(const wchar_t* text, const wchar_t* timeStamp);

// "HH:mm:ss" of the given time, 24-hour clock, no time marker.
std::wstring FormatTimeOfDay(const SYSTEMTIME& time);

// Line feeds in an entry: the number of lines the control scrolls by.
int CountLineFeeds(const std::wstring& text);

// The window and its control. The control's handle is kept here for the
// report path and handed to the MainWindow.
HWND CreateUserMessagesWindow(HINSTANCE instance, int width, int height);
HWND CreateUserMessagesRichEdit(HWND parent);
HWND UserMessagesRichEdit();

// Whole text of the control with CR LF line ends.
std::wstring UserMessagesText();
void ClearUserMessages();
