// Device names as the program compares them.
#pragma once

// True when a name holds a character outside 32 to 126.
bool NeedsCleaning(const wchar_t* name);

// Removes characters outside 32 to 126, in place, in one pass whose length is
// taken at the start. After a removal the scan moves on past the character
// that slid into the gap, so of two adjacent bad characters the second stays.
// Saved names went through the same pass: both sides must agree.
void CleanDeviceName(wchar_t* name);
