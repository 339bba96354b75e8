// Test programs end at once on a crash instead of waiting in a debugger.
#include <windows.h>

#include <cstdio>

namespace {

LONG WINAPI ExitOnCrash(EXCEPTION_POINTERS* info)
{
    std::fprintf(stderr, "test program crashed: exception 0x%08lx at %p\n",
                 info->ExceptionRecord->ExceptionCode, info->ExceptionRecord->ExceptionAddress);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 3);
    return EXCEPTION_EXECUTE_HANDLER;
}

const bool installed = [] {
    SetUnhandledExceptionFilter(ExitOnCrash);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    return true;
}();

}  // namespace
