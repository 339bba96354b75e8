// Loaded into the program under test to read its main menu: another process
// can't read a menu's state on this platform, but a thread of the program's
// own can. The harness starts ProbeMainMenuState as a remote thread; the
// thread's exit code is GetMenuState's answer for the command.
#include <windows.h>

namespace {

BOOL CALLBACK FindOwnMainWindow(HWND window, LPARAM found)
{
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    wchar_t className[64] = L"";
    GetClassNameW(window, className, 64);
    if (processId != GetCurrentProcessId() || lstrcmpW(className, L"MAVU_VideoCapture") != 0)
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

DWORD MainMenuState(void* item, UINT how)
{
    HWND main = nullptr;
    EnumWindows(FindOwnMainWindow, reinterpret_cast<LPARAM>(&main));
    HMENU menu = main ? GetMenu(main) : nullptr;
    if (!menu)
        return 0xFFFFFFFFu;
    return GetMenuState(menu, static_cast<UINT>(reinterpret_cast<UINT_PTR>(item)), how);
}

// The state of a main menu item by its command number, as GetMenuState gives
// it (0xFFFFFFFF when there is no such item or no main window).
extern "C" __declspec(dllexport) DWORD WINAPI ProbeMainMenuState(void* command)
{
    return MainMenuState(command, MF_BYCOMMAND);
}

// The same for a popup of the menu bar, by its position from 0 (File).
extern "C" __declspec(dllexport) DWORD WINAPI ProbeMenuBarState(void* position)
{
    return MainMenuState(position, MF_BYPOSITION);
}
