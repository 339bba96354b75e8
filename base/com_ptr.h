// A COM reference that is released when it goes out of scope. Taking its
// address for an out-parameter releases what it held first, so a reused
// holder can't leak.
#pragma once

#include <unknwn.h>

#include <utility>

template <class T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    // Adopts a reference the caller already owns.
    explicit ComPtr(T* adopted) : pointer_(adopted) {}
    ComPtr(const ComPtr& other) : pointer_(other.pointer_)
    {
        if (pointer_)
            pointer_->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ~ComPtr() { Reset(); }

    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(pointer_, other.pointer_);
        return *this;
    }

    void Reset()
    {
        if (T* held = std::exchange(pointer_, nullptr))
            held->Release();
    }
    T* Get() const { return pointer_; }
    T* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    bool operator==(std::nullptr_t) const { return pointer_ == nullptr; }
    // Releases what is held and hands out the slot for an out-parameter.
    T** Put()
    {
        Reset();
        return &pointer_;
    }
    void** PutVoid() { return reinterpret_cast<void**>(Put()); }
    // Hands the reference over to the caller.
    T* Detach() { return std::exchange(pointer_, nullptr); }

private:
    T* pointer_ = nullptr;
};
