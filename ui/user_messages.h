// The report channel shown in the User Messages window. Every line that
// the program has to tell goes through ReportUserMessage.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "base/flag.h"
#include "base/report.h"

// ReportUserMessage (base/report.h) is defined here. Before the window is
// ready a line is queued and shown at the end of start-up, and its time
// stamp request is lost.

// The window and its rich edit control exist: lines go straight to it.
extern Flag userMessagesWindowReady;
// The control that shows the lines.
extern HWND richEdit;

// Writes one entry into the rich edit control.
void AppendUserMessage(const wchar_t* text, bool withTimeStamp);

// Keeps a copy of a line reported before the window exists.
void QueueUserMessage(const wchar_t* text);

// Shows the queued lines, the first with a time stamp, and empties the queue.
void FlushQueuedUserMessages();

// Takes the queued lines without showing them (for a process that never
// makes the window, such as a test).
std::vector<std::wstring> TakeQueuedUserMessages();

// "\r\n", then (time stamp " (UTC)\r\n" when a stamp is given), then the text.
std::wstring ComposeUserMessageEntry(const wchar_t* text, const wchar_t* timeStamp);

// Line feeds in an entry: the number of lines the control scrolls by.
int CountLineFeeds(const std::wstring& text);

// The control, as a child of the User Messages window; sets richEdit.
HWND CreateUserMessagesRichEdit(HWND parent);

// Whole text of the control with CR LF line ends.
std::wstring UserMessagesText();
void ClearUserMessages();
