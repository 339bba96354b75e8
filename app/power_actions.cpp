#include "app/power_actions.h"

#include <cstddef>

#include "base/report.h"

Flag hibernateSupported{1};
Flag hibernateAfterEvent{0};
Flag shutdownAfterEvent{0};
Flag powerActionCountdown{0};
Flag leaveMessageLoop{0};

BYTE HiberbootFlag(const SYSTEM_POWER_CAPABILITIES& capabilities)
{
    return reinterpret_cast<const BYTE*>(&capabilities)[offsetof(SYSTEM_POWER_CAPABILITIES, FastSystemS4) + 1];
}

void CheckPowerCapabilities()
{
    SYSTEM_POWER_CAPABILITIES capabilities{};
    GetPwrCapabilities(&capabilities);
    if (HiberbootFlag(capabilities) == 0) {
        hibernateSupported = 0;
        ReportUserMessage(L"Computer cannot be placed into hibernation\n", true);
    }
    // Only a test: the token is not used further and stays open.
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token))
        ReportUserMessage(L"No privilege to automatically shut down or hibernate after event recording\n", true);
}

namespace {
// Other users are logged on (winerror.h of newer SDKs).
constexpr DWORD kShutdownUsersLoggedOn = 1191;
}  // namespace

void PerformPowerAction()
{
    if (hibernateAfterEvent) {
        if (SetSuspendState(TRUE, TRUE, TRUE)) {
            if (IsSystemResumeAutomatic())
                ReportUserMessage(L"\r\nSystem resumed automatically rather than by user action\r\n", true);
        } else {
            ReportUserMessage(L"\r\nUnable to create hibernate the computer.  Check user privileges.\r\n", true);
        }
        return;
    }
    if (!shutdownAfterEvent)
        return;
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token)) {
        ReportUserMessage(L"Cannot adjust privilege to shut down computer", true);
        return;
    }
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    LookupPrivilegeValueW(nullptr, L"SeShutdownPrivilege", &privileges.Privileges[0].Luid);
    AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr);
    DWORD adjusted = GetLastError();
    CloseHandle(token);
    if (adjusted != 0) {
        ReportUserMessage(L"Cannot adjust privilege to shut down computer", true);
        return;
    }
    DWORD result = InitiateShutdownW(nullptr, nullptr, 15, SHUTDOWN_FORCE_SELF | SHUTDOWN_POWEROFF,
                                     SHTDN_REASON_FLAG_PLANNED);
    if (result == ERROR_SUCCESS)
        leaveMessageLoop = 1;
    else if (result == ERROR_ACCESS_DENIED)
        ReportUserMessage(L"Insufficient user privilege to programmatically shut down computer", true);
    else if (result == kShutdownUsersLoggedOn)
        ReportUserMessage(L"Cannot shut down computer - other users logged on", true);
}
