#include "app/program_folder.h"

#include <windows.h>
#include <shlwapi.h>

#include "ui/file_options_window.h"
#include "ui/menus.h"
#include "ui/user_messages.h"


std::wstring ProgramFolderFromModulePath(const std::wstring& modulePath)
{
    std::wstring folder = modulePath;
    for (long i = static_cast<long>(folder.size()) - 10; i >= 1; --i) {
        if (folder.compare(static_cast<size_t>(i), 4, L"MAVU") == 0) {
            folder.resize(static_cast<size_t>(i));
            break;
        }
    }
    if (folder.empty() || folder.back() != L'\\')
        folder += L'\\';
    return folder;
}

void CreateDefaultFolders()
{
    wchar_t modulePath[511] = L"";
    GetModuleFileNameW(nullptr, modulePath, 511);
    std::wstring folder = ProgramFolderFromModulePath(modulePath);
    defaultVideoFolder = folder + L"VideoFiles\\";
    defaultLogFolder = folder + L"LogFiles\\";

    struct Wanted {
        const std::wstring& path;
        const wchar_t* failure;
    };
    const Wanted wanted[] = {
        {defaultVideoFolder,
         L"\r\nUnable to create \"VideoFiles\" directory under the process directory.  Check security settings.\r\n"},
        {defaultLogFolder,
         L"\r\nUnable to create \"LogFiles\" directory under the process directory.  Check security settings.\r\n"},
    };
    for (const Wanted& each : wanted) {
        if (PathFileExistsW(each.path.c_str()))
            continue;
        if (!CreateDirectoryW(each.path.c_str(), nullptr)) {
            ReportUserMessage(each.failure, true);
            SetRecordingMenuGreying(true);
        }
    }
}
