// A buffer placed flush against a page that can't be touched, in front of it
// or behind it, so that a single read outside the buffer faults at once.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

class GuardedBuffer {
public:
    GuardedBuffer(size_t size, bool guardBehind)
    {
        SYSTEM_INFO system{};
        GetSystemInfo(&system);
        size_t page = system.dwPageSize;
        size_t pages = (size + page - 1) / page * page;
        base_ =
            static_cast<uint8_t*>(VirtualAlloc(nullptr, pages + 2 * page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        if (!base_)
            return;
        DWORD old = 0;
        VirtualProtect(base_, page, PAGE_NOACCESS, &old);
        VirtualProtect(base_ + page + pages, page, PAGE_NOACCESS, &old);
        data_ = guardBehind ? base_ + page + pages - size : base_ + page;
    }
    ~GuardedBuffer()
    {
        if (base_)
            VirtualFree(base_, 0, MEM_RELEASE);
    }
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    uint8_t* data() const { return data_; }

private:
    uint8_t* base_ = nullptr;
    uint8_t* data_ = nullptr;
};
