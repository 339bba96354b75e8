#include "support/temp_folder.h"

void RemoveTree(const std::wstring& folder)
{
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            std::wstring name = found.cFileName;
            if (name == L"." || name == L"..")
                continue;
            std::wstring path = folder + L"\\" + name;
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                RemoveTree(path);
            } else {
                SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
                DeleteFileW(path.c_str());
            }
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
}

TempFolder::TempFolder()
{
    wchar_t base[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, base);
    static LONG counter = 0;
    path_ = std::wstring(base) + L"mavu_test_" + std::to_wstring(GetCurrentProcessId()) + L"_" +
            std::to_wstring(InterlockedIncrement(&counter));
    RemoveTree(path_);
    CreateDirectoryW(path_.c_str(), nullptr);
    wchar_t current[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, current);
    previous_ = current;
    SetCurrentDirectoryW(path_.c_str());
}

TempFolder::~TempFolder()
{
    SetCurrentDirectoryW(previous_.c_str());
    RemoveTree(path_);
}
