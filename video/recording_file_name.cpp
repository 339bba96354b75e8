#include "video/recording_file_name.h"

#include <cstddef>

namespace {

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

int TwoDigits(const std::wstring& text, size_t at)
{
    return (text[at] - L'0') * 10 + (text[at + 1] - L'0');
}

// "MM_DD_YYYY_HH_MM_SS" exactly, with values a clock can show: a name with
// month 13 was never written by TimeFileName.
bool IsTimeStamp(const std::wstring& text, size_t at)
{
    static const wchar_t kShape[] = L"99_99_9999_99_99_99";
    const size_t length = sizeof(kShape) / sizeof(kShape[0]) - 1;
    if (text.size() < at + length)
        return false;
    for (size_t i = 0; i < length; ++i) {
        wchar_t c = text[at + i];
        if (kShape[i] == L'9' ? !IsDigit(c) : c != kShape[i])
            return false;
    }
    int month = TwoDigits(text, at);
    int day = TwoDigits(text, at + 3);
    int hour = TwoDigits(text, at + 11);
    int minute = TwoDigits(text, at + 14);
    int second = TwoDigits(text, at + 17);
    return month >= 1 && month <= 12 && day >= 1 && day <= 31 && hour <= 23 && minute <= 59 && second <= 59;
}

// The time stamp ends the stem and either starts it or follows a "_" that
// closes a prefix.
bool EndsWithTimeStamp(const std::wstring& stem)
{
    const size_t length = 19;
    if (stem.size() < length)
        return false;
    size_t at = stem.size() - length;
    if (at > 0 && stem[at - 1] != L'_')
        return false;
    return IsTimeStamp(stem, at);
}

}  // namespace

bool IsRecordingFileName(const std::wstring& fileName)
{
    size_t slash = fileName.find_last_of(L"\\/");
    std::wstring name = slash == std::wstring::npos ? fileName : fileName.substr(slash + 1);

    static const std::wstring kExtension = L".avi";
    if (name.size() < kExtension.size() ||
        name.compare(name.size() - kExtension.size(), kExtension.size(), kExtension) != 0)
        return false;
    std::wstring stem = name.substr(0, name.size() - kExtension.size());
    if (EndsWithTimeStamp(stem))
        return true;

    // A continuation: "_N" after the time stamp, N counted from 1.
    size_t underscore = stem.find_last_of(L'_');
    if (underscore == std::wstring::npos || underscore + 1 >= stem.size() || stem[underscore + 1] == L'0')
        return false;
    for (size_t i = underscore + 1; i < stem.size(); ++i) {
        if (!IsDigit(stem[i]))
            return false;
    }
    return EndsWithTimeStamp(stem.substr(0, underscore));
}
