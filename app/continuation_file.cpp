#include "app/continuation_file.h"

#include <cwchar>
#include <string>

bool ContinuationFilePath(const wchar_t* firstPath, uint32_t count, wchar_t* out, size_t capacity)
{
    static constexpr wchar_t kExtension[] = L".avi";
    constexpr size_t kExtensionLength = 4;
    size_t length = wcslen(firstPath);
    if (length < kExtensionLength || wcscmp(firstPath + length - kExtensionLength, kExtension) != 0)
        return false;
    std::wstring path(firstPath, length - kExtensionLength);
    path += L"_" + std::to_wstring(count) + kExtension;
    if (capacity == 0)
        return true;
    size_t kept = path.size() < capacity ? path.size() : capacity - 1;
    wmemcpy(out, path.c_str(), kept);
    out[kept] = 0;
    return true;
}
