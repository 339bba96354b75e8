// The program's one report channel. Every subsystem tells what happened
// through ReportUserMessage; the User Messages window shows the lines, and a
// program without that window (a test) supplies its own definition.
#pragma once

// A first line is asked for with a time stamp, continuation lines without.
// Callable from any thread, also before any window exists.
void ReportUserMessage(const wchar_t* text, bool withTimeStamp);
