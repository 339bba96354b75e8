// Holders that close a handle of the platform when they go out of scope, so
// that an early return can't leak one. Each kind of handle has its own
// closing call and its own value for "none".
#pragma once

#include <windows.h>

#include <utility>

template <class Traits>
class ScopedHandleOf {
public:
    ScopedHandleOf() = default;
    explicit ScopedHandleOf(HANDLE adopted) : handle_(adopted) {}
    ScopedHandleOf(const ScopedHandleOf&) = delete;
    ScopedHandleOf& operator=(const ScopedHandleOf&) = delete;
    ScopedHandleOf(ScopedHandleOf&& other) noexcept : handle_(std::exchange(other.handle_, Traits::None())) {}
    ScopedHandleOf& operator=(ScopedHandleOf&& other) noexcept
    {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, Traits::None());
        }
        return *this;
    }
    ~ScopedHandleOf() { Close(); }

    HANDLE Get() const { return handle_; }
    bool Valid() const { return handle_ != Traits::None(); }
    explicit operator bool() const { return Valid(); }
    void Close()
    {
        if (Valid())
            Traits::Close(std::exchange(handle_, Traits::None()));
    }

private:
    HANDLE handle_ = Traits::None();
};

// CreateFileW, OpenThread, OpenProcessToken: null when there is none.
struct KernelHandleTraits {
    static HANDLE None() { return nullptr; }
    static void Close(HANDLE handle) { CloseHandle(handle); }
};
// CreateToolhelp32Snapshot, and CreateFileW on a device: INVALID_HANDLE_VALUE
// when there is none.
struct FileHandleTraits {
    static HANDLE None() { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE handle) { CloseHandle(handle); }
};
// FindFirstFileW.
struct FindHandleTraits {
    static HANDLE None() { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE handle) { FindClose(handle); }
};

using ScopedHandle = ScopedHandleOf<KernelHandleTraits>;
using ScopedFileHandle = ScopedHandleOf<FileHandleTraits>;
using ScopedSnapshot = ScopedHandleOf<FileHandleTraits>;
using ScopedFindHandle = ScopedHandleOf<FindHandleTraits>;
