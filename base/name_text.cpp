#include "base/name_text.h"

#include <cwchar>

namespace {

bool IsAllowed(wchar_t c, bool allowComment)
{
    if ((c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9'))
        return true;
    if (c == L'-' || c == L' ' || c == L'_')
        return true;
    return allowComment && c != 0 && std::wcschr(L"{}()[].:+#*", c) != nullptr;
}

}  // namespace

int FilterNameCharacters(wchar_t* text, bool allowComment)
{
    if (!text)
        return 0;
    wchar_t* kept = text;
    for (const wchar_t* read = text; *read; ++read)
        if (IsAllowed(*read, allowComment))
            *kept++ = *read;
    bool removed = *kept != 0;
    *kept = 0;
    return removed ? 1 : 0;
}

std::wstring HostNamePrefix(const wchar_t* computerName, bool* removed)
{
    std::wstring name = computerName ? computerName : L"";
    name.push_back(L'\0');
    *removed = FilterNameCharacters(name.data(), false) != 0;
    name.resize(std::wcslen(name.c_str()));
    for (wchar_t& c : name)
        if (c >= L'A' && c <= L'Z')
            c = static_cast<wchar_t>(c - L'A' + L'a');
    if (name.size() > 12)
        name.resize(12);
    return name;
}

std::wstring NamePattern(const wchar_t* prefix, const wchar_t* extension)
{
    return JoinNamePrefixes(L"", {prefix}) + L"mm_dd_yyyy_hh_mm_ss" + extension;
}

std::wstring JoinNamePrefixes(const std::wstring& folder, std::initializer_list<const wchar_t*> prefixes)
{
    std::wstring joined = folder;
    for (const wchar_t* prefix : prefixes) {
        if (prefix && prefix[0]) {
            joined += prefix;
            joined += L'_';
        }
    }
    return joined;
}
