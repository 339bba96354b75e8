#include "app/power_actions.h"

#include <cstddef>

#include "app/app_state.h"
#include "ui/user_messages.h"

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
