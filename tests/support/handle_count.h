// The number of handles a process holds, counted in the system handle table
// (GetProcessHandleCount gives 0 under Wine).
#pragma once

#include <windows.h>

namespace testsupport {

// -1 when the table can't be read.
long ProcessHandleCount(DWORD processId);

// The threads of a process, by the platform's thread walk; -1 when it
// can't be taken.
long ProcessThreadCount(DWORD processId);

}  // namespace testsupport
