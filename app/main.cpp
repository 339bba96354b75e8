// The entry: one instance, high priority, COM, the rich edit library, the
// icons, the MainWindow, the message loop, and the way out.
#include <windows.h>
#include <tlhelp32.h>

#include <new>

#include "app/app_state.h"
#include "app/main_window.h"
#include "app/recording_control.h"
#include "app/steady_clock.h"
#include "ui/user_messages.h"
#include "ui/window_layout.h"

namespace {

constexpr int kAnotherInstanceOrFailure = static_cast<int>(0x80004004u);
constexpr int kOutOfMemory = static_cast<int>(0x8007000Eu);

// Lowers the threads of nonVideoThreadIds below the streaming threads.
void LowerNonVideoThreads()
{
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return;
    DWORD process = GetCurrentProcessId();
    THREADENTRY32 entry{sizeof entry};
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID != process)
            continue;
        for (DWORD id : nonVideoThreadIds) {
            if (id != entry.th32ThreadID)
                continue;
            HANDLE thread = OpenThread(THREAD_SET_INFORMATION, FALSE, id);
            if (!thread)
                continue;
            if (!SetThreadPriority(thread, THREAD_PRIORITY_BELOW_NORMAL))
                ReportUserMessage(L"Unable to lower thread priority of non video streaming thread\r\n", true);
            CloseHandle(thread);
        }
    }
    CloseHandle(snapshot);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int)
{
    // E1: the running instance is left as it is.
    if (FindWindowW(kMainWindowClass, nullptr))
        return kAnotherInstanceOrFailure;

    // E2
    HANDLE process = GetCurrentProcess();
    if (GetPriorityClass(process) != HIGH_PRIORITY_CLASS)
        SetPriorityClass(process, HIGH_PRIORITY_CLASS);

    // E3
    HWND splash = CreateWindowExW(0, L"STATIC", L"MAVU Video Capture Initialization...", 0x90C00201, 200, 200, 300,
                                  100, nullptr, nullptr, instance, nullptr);

    // E4: the timer-queue threads drive the same DirectShow objects as the
    // user-interface thread.
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
        return kAnotherInstanceOrFailure;

    // E5: a missing library shows up when the User Messages window is made.
    LoadLibraryW(L"Msftedit.dll");

    // E6
    ClearRuntimeSwitches();
    LoadAppIcons();
    videoWidth = videoHeight = displayedWidth = displayedHeight = 0;

    // E7
    MainWindow* app = new (std::nothrow) MainWindow(instance);
    if (!app)
        return kOutOfMemory;
    if (fatalStartupError) {
        // Time to read User Messages; the process doesn't respond meanwhile.
        if (userMessagesWindowReady)
            Sleep(30000);
        return kAnotherInstanceOrFailure;
    }

    // E8
    if (splash)
        DestroyWindow(splash);
    LowerNonVideoThreads();

    // E9
    HWND dialog = app->scheduleEventWindow;
    MSG message{};
    for (;;) {
        BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == 0 || leaveMessageLoop)
            break;
        if (dialog && IsDialogMessageW(dialog, &message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }

    // E10
    StopVideo();
    CoUninitialize();
    YieldFor(3500000);
    return static_cast<int>(message.wParam);
}
