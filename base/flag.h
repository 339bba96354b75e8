// A flag or small count shared between the user-interface thread, the timer
// threads and the streaming threads. A plain 32-bit atomic: a store on one
// thread is seen by a load on another, and no lock is taken anywhere.
#pragma once

#include <atomic>
#include <cstdint>

using Flag = std::atomic<int32_t>;
