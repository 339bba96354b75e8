// The performance counter as nanoseconds, computed as whole seconds and
// remainder so that the product can't overflow.
#pragma once

#include <cstdint>

constexpr uint64_t CounterToNanoseconds(uint64_t count, uint64_t frequency)
{
    return (count / frequency) * 1000000000ull + (count % frequency) * 1000000000ull / frequency;
}

uint64_t SteadyNanoseconds();

// Yields the thread until the given number of nanoseconds has passed.
void YieldFor(uint64_t nanoseconds);
