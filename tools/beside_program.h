// The path of a file in the folder of the running program: the test tools
// find their DLLs there.
#pragma once

#include <windows.h>

#include <string>

namespace testdll {

inline std::wstring FileBesideProgram(const wchar_t* name)
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder = path;
    size_t slash = folder.find_last_of(L"\\/");
    folder = slash == std::wstring::npos ? L"" : folder.substr(0, slash + 1);
    return folder + name;
}

}  // namespace testdll
