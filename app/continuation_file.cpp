#include "app/continuation_file.h"

#include <windows.h>

#include <cwchar>
#include <string>
#include <vector>

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

bool NextFreeContinuation(const wchar_t* firstPath, uint32_t& count,
                          const std::function<bool(const wchar_t*)>& holdsData, wchar_t* out, size_t capacity)
{
    constexpr uint32_t kMostTried = 10000;
    std::vector<wchar_t> path(capacity > 0 ? capacity : 1);
    for (uint32_t next = count + 1; next <= count + kMostTried; ++next) {
        if (!ContinuationFilePath(firstPath, next, path.data(), path.size()))
            return false;
        if (!holdsData(path.data())) {
            if (capacity > 0)
                wmemcpy(out, path.data(), path.size());
            count = next;
            return true;
        }
    }
    return false;
}

bool FileHoldsData(const wchar_t* path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &data))
        return false;
    return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 || data.nFileSizeHigh != 0 ||
        data.nFileSizeLow != 0;
}
