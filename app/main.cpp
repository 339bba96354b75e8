// The entry: one instance, high priority, COM, the rich edit library, the
// icons, the MainWindow, the message loop, and the way out.
#include <windows.h>
#include <tlhelp32.h>

#include <new>
#include <vector>

#include "app/main_window.h"
#include "app/power_actions.h"
#include "app/recording_control.h"
#include "app/startup_state.h"
#include "base/report.h"
#include "base/scoped_handles.h"
#include "base/steady_clock.h"
#include "events/event_dialogs.h"
#include "ui/app_icons.h"
#include "ui/user_messages.h"
#include "ui/window_set.h"
#include "video/capture_settings.h"
#include "video/frame_size.h"

namespace {

constexpr int kAnotherInstanceOrFailure = static_cast<int>(0x80004004u);
constexpr int kOutOfMemory = static_cast<int>(0x8007000Eu);

// Threads to be lowered below the video streaming threads after start-up.
// Nothing adds to it: telling streaming threads from the others is open, so
// the walk below lowers nothing.
std::vector<DWORD> nonVideoThreadIds;

// Lowers the threads of nonVideoThreadIds below the streaming threads.
void LowerNonVideoThreads()
{
    ScopedSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    if (!snapshot)
        return;
    DWORD process = GetCurrentProcessId();
    THREADENTRY32 entry{sizeof entry};
    for (BOOL more = Thread32First(snapshot.Get(), &entry); more; more = Thread32Next(snapshot.Get(), &entry)) {
        if (entry.th32OwnerProcessID != process)
            continue;
        for (DWORD id : nonVideoThreadIds) {
            if (id != entry.th32ThreadID)
                continue;
            ScopedHandle thread(OpenThread(THREAD_SET_INFORMATION, FALSE, id));
            if (thread && !SetThreadPriority(thread.Get(), THREAD_PRIORITY_BELOW_NORMAL))
                ReportUserMessage(L"Unable to lower thread priority of non video streaming thread\r\n", true);
        }
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int)
{
    // One instance: the running one is left as it is.
    if (FindWindowW(kMainWindowClass, nullptr))
        return kAnotherInstanceOrFailure;

    HANDLE process = GetCurrentProcess();
    if (GetPriorityClass(process) != HIGH_PRIORITY_CLASS)
        SetPriorityClass(process, HIGH_PRIORITY_CLASS);

    HWND splash = CreateWindowExW(0, L"STATIC", L"MAVU Video Capture Initialization...", 0x90C00201, 200, 200, 300,
                                  100, nullptr, nullptr, instance, nullptr);

    // The timer-queue threads drive the same DirectShow objects as the
    // user-interface thread.
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
        return kAnotherInstanceOrFailure;

    // A missing library shows up when the User Messages window is made.
    LoadLibraryW(L"Msftedit.dll");

    ClearRuntimeSwitches();
    LoadAppIcons();
    videoWidth = videoHeight = displayedWidth = displayedHeight = 0;

    MainWindow* app = new (std::nothrow) MainWindow(instance);
    if (!app)
        return kOutOfMemory;
    if (fatalStartupError) {
        // Time to read User Messages; the process doesn't respond meanwhile.
        if (userMessagesWindowReady)
            Sleep(30000);
        return kAnotherInstanceOrFailure;
    }

    if (splash)
        DestroyWindow(splash);
    LowerNonVideoThreads();

    // The Schedule Event window is the one window with dialog-style
    // keyboard handling.
    HWND dialog = scheduleEventWindow;
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

    StopVideo();
    CoUninitialize();
    YieldFor(3500000);
    return static_cast<int>(message.wParam);
}
