#include "base/steady_clock.h"

#include <windows.h>

uint64_t SteadyNanoseconds()
{
    LARGE_INTEGER count{}, frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return CounterToNanoseconds(static_cast<uint64_t>(count.QuadPart), static_cast<uint64_t>(frequency.QuadPart));
}

void YieldFor(uint64_t nanoseconds)
{
    uint64_t deadline = SteadyNanoseconds() + nanoseconds;
    while (SteadyNanoseconds() < deadline)
        SwitchToThread();
}
