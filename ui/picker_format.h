// Date-time picker formats that name the month. A picker shows "MMM" as the
// locale's abbreviated month name; where the platform's picker shows
// something else there, the month goes into the format as quoted text and
// is rewritten whenever the picker's date moves to another month, so the
// picker shows the same text either way.
#pragma once

#include <windows.h>

#include <string>

// The format with each unquoted "MMM" (three M's, no more) replaced by the
// month name as quoted text; quotes within the name are doubled.
std::wstring FormatWithMonthText(const std::wstring& format, const std::wstring& monthName);

struct PickerFormat {
    HWND picker = nullptr;
    std::wstring format;
    bool monthAsText = false;  // the platform's "MMM" shows something else
};

// Gives the picker its format, and finds whether "MMM" must be written out:
// the text the picker shows is compared with the text of the written-out
// format.
void ApplyPickerFormat(PickerFormat& format);
// After the picker's date changed: the written-out month follows it.
void FollowPickerMonth(const PickerFormat& format);
