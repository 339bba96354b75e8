// A fresh folder for one test, made the current directory while it lives
// (the program's relative paths resolve there), removed afterwards.
#pragma once

#include <windows.h>

#include "support/file_bytes.h"

#include <string>

// Removes a folder with everything in it, read-only files too.
void RemoveTree(const std::wstring& folder);

class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::wstring File(const std::wstring& name) const { return path_ + L"\\" + name; }

private:
    std::wstring path_;
    std::wstring previous_;
};
