#include "base/time_text.h"

#include <cwchar>

std::wstring FormatTimeOfDay(const SYSTEMTIME& time)
{
    wchar_t text[32] = L"";
    GetTimeFormatEx(nullptr, TIME_NOTIMEMARKER | TIME_FORCE24HOURFORMAT, &time, L"HH':'mm':'ss", text, 32);
    return text;
}

std::wstring UtcClockText()
{
    SYSTEMTIME now;
    GetSystemTime(&now);
    return FormatTimeOfDay(now);
}

std::wstring TimeFileName(const SYSTEMTIME& time, const wchar_t* extension)
{
    wchar_t text[64];
    swprintf(text, 64, L"%2.2hu_%2.2hu_%4.4hu_%2.2hu_%2.2hu_%2.2hu%ls", time.wMonth, time.wDay, time.wYear, time.wHour,
             time.wMinute, time.wSecond, extension);
    return text;
}
