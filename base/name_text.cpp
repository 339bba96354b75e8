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
