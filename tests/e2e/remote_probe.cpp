#include "e2e/remote_probe.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <string>

#include "e2e/harness.h"

namespace e2e {
namespace {

constexpr wchar_t kProbeName[] = L"program_probe.dll";
constexpr DWORD kThreadTimeoutMs = 10000;

// Runs a function in the process on a thread of its own; its exit code.
bool RunRemoteThread(HANDLE process, void* start, void* parameter, DWORD* exitCode)
{
    HANDLE thread =
        CreateRemoteThread(process, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(start), parameter, 0, nullptr);
    if (!thread)
        return false;
    bool done = WaitForSingleObject(thread, kThreadTimeoutMs) == WAIT_OBJECT_0 && GetExitCodeThread(thread, exitCode);
    CloseHandle(thread);
    return done;
}

// Loads the probe into the process (a second load only counts up).
bool LoadProbe(HANDLE process, const std::wstring& path)
{
    size_t bytes = (path.size() + 1) * sizeof(wchar_t);
    void* remotePath = VirtualAllocEx(process, nullptr, bytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    if (!remotePath)
        return false;
    DWORD loaded = 0;
    bool written = WriteProcessMemory(process, remotePath, path.c_str(), bytes, nullptr);
    void* loadLibrary = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW"));
    bool ran = written && RunRemoteThread(process, loadLibrary, remotePath, &loaded);
    VirtualFreeEx(process, remotePath, 0, MEM_RELEASE);
    return ran && loaded != 0;
}

BYTE* RemoteModuleBase(DWORD processId)
{
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, processId);
    if (snapshot == INVALID_HANDLE_VALUE)
        return nullptr;
    BYTE* base = nullptr;
    MODULEENTRY32W module{sizeof module};
    for (BOOL more = Module32FirstW(snapshot, &module); more && !base; more = Module32NextW(snapshot, &module))
        if (lstrcmpiW(module.szModule, kProbeName) == 0)
            base = module.modBaseAddr;
    CloseHandle(snapshot);
    return base;
}

}  // namespace

// Runs one export of the probe in the program with its argument.
static UINT RunProbe(DWORD processId, const char* exportName, unsigned argument)
{
    std::wstring path = BinFolder() + L"\\" + kProbeName;
    HMODULE local = LoadLibraryW(path.c_str());
    FARPROC probe = local ? GetProcAddress(local, exportName) : nullptr;
    HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId);
    DWORD state = 0xFFFFFFFFu;
    BYTE* remoteBase = probe && process && LoadProbe(process, path) ? RemoteModuleBase(processId) : nullptr;
    if (remoteBase) {
        void* start = remoteBase + (reinterpret_cast<BYTE*>(probe) - reinterpret_cast<BYTE*>(local));
        if (!RunRemoteThread(process, start, reinterpret_cast<void*>(static_cast<UINT_PTR>(argument)), &state))
            state = 0xFFFFFFFFu;
    }
    if (process)
        CloseHandle(process);
    return state;
}

// GetMenuState's answer has MF_GRAYED.
static bool Grey(UINT state)
{
    if (state == 0xFFFFFFFFu)
        ADD_FAILURE() << "the menu probe can't reach the program or its item";
    return state != 0xFFFFFFFFu && (state & MF_GRAYED) != 0;
}

bool IsMenuBarPopupGrey(DWORD processId, unsigned position)
{
    return Grey(RunProbe(processId, "ProbeMenuBarState", position));
}

bool IsMenuItemGrey(DWORD processId, unsigned command)
{
    return Grey(RunProbe(processId, "ProbeMainMenuState", command));
}

int ClippedTexts(DWORD processId, HWND window, std::wstring* report)
{
    const unsigned handle = static_cast<unsigned>(reinterpret_cast<UINT_PTR>(window));
    UINT clipped = RunProbe(processId, "ProbeClippedTexts", handle);
    wchar_t path[MAX_PATH + 64] = L"";
    DWORD folder = GetTempPathW(MAX_PATH, path);
    wsprintfW(path + folder, L"mavu-text-fit-%lu-%u.txt", processId, handle);
    if (report) {
        std::string bytes = ReadFileBytes(path);
        report->assign(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
    }
    DeleteFileW(path);
    return clipped == 0xFFFFFFFFu ? -1 : static_cast<int>(clipped);
}

}  // namespace e2e
