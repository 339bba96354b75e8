#include "ui/picker_format.h"

#include <commctrl.h>

std::wstring FormatWithMonthText(const std::wstring& format, const std::wstring& monthName)
{
    std::wstring quoted = L"'";
    for (wchar_t c : monthName) {
        quoted += c;
        if (c == L'\'')
            quoted += L'\'';
    }
    quoted += L'\'';

    std::wstring result;
    bool inQuote = false;
    for (size_t i = 0; i < format.size();) {
        if (format[i] == L'\'') {
            inQuote = !inQuote;
            result += format[i++];
            continue;
        }
        size_t run = 0;
        while (!inQuote && i + run < format.size() && format[i + run] == L'M')
            ++run;
        if (run == 3) {
            result += quoted;
            i += run;
        } else if (run > 0) {
            result.append(format, i, run);
            i += run;
        } else {
            result += format[i++];
        }
    }
    return result;
}

namespace {

std::wstring ShownText(HWND picker)
{
    wchar_t text[128] = L"";
    GetWindowTextW(picker, text, 128);
    return text;
}

// The picker's format with its present month written out.
std::wstring WrittenOutFormat(const PickerFormat& format)
{
    SYSTEMTIME shown{};
    if (SendMessageW(format.picker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&shown)) != GDT_VALID ||
        shown.wMonth < 1 || shown.wMonth > 12)
        return format.format;
    wchar_t name[64] = L"";
    if (!GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SABBREVMONTHNAME1 + shown.wMonth - 1, name, 64))
        return format.format;
    return FormatWithMonthText(format.format, name);
}

}  // namespace

void ApplyPickerFormat(PickerFormat& format)
{
    format.monthAsText = false;
    const std::wstring writtenOut = WrittenOutFormat(format);
    SendMessageW(format.picker, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(format.format.c_str()));
    if (writtenOut == format.format)
        return;
    const std::wstring platformText = ShownText(format.picker);
    SendMessageW(format.picker, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(writtenOut.c_str()));
    format.monthAsText = ShownText(format.picker) != platformText;
    if (!format.monthAsText)
        SendMessageW(format.picker, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(format.format.c_str()));
}

void FollowPickerMonth(const PickerFormat& format)
{
    if (!format.monthAsText)
        return;
    const std::wstring writtenOut = WrittenOutFormat(format);
    SendMessageW(format.picker, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(writtenOut.c_str()));
}
