// The lowest level of the filter base layer: the critical section with its
// scoped lock, and the reference-counted object that every filter, pin and
// enumerator derives from. Pins and enumerators of one filter take their
// reference counts from an owner, so that the filter lives while any of its
// pins is referenced.
#pragma once

#include <windows.h>
#include <dshow.h>

class CCritSec {
public:
    CCritSec() { InitializeCriticalSection(&section_); }
    ~CCritSec() { DeleteCriticalSection(&section_); }
    CCritSec(const CCritSec&) = delete;
    CCritSec& operator=(const CCritSec&) = delete;
    void Lock() { EnterCriticalSection(&section_); }
    void Unlock() { LeaveCriticalSection(&section_); }

private:
    CRITICAL_SECTION section_;
};

class CAutoLock {
public:
    explicit CAutoLock(CCritSec* lock) : lock_(lock) { lock_->Lock(); }
    ~CAutoLock() { lock_->Unlock(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;

private:
    CCritSec* lock_;
};

// The inner IUnknown of an object that may be owned by another: its public
// IUnknown delegates to the owner, this one counts the object itself.
struct INonDelegatingUnknown {
    virtual HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE NonDelegatingAddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE NonDelegatingRelease() = 0;
};

class CBaseObject {
public:
    explicit CBaseObject(const wchar_t* name);
    virtual ~CBaseObject();
    CBaseObject(const CBaseObject&) = delete;
    CBaseObject& operator=(const CBaseObject&) = delete;

    // How many base-layer objects exist in this process: a test's count
    // before building a graph and after tearing it down must agree.
    static LONG ObjectsActive();

protected:
    const wchar_t* objectName_;
};

class CUnknown : public INonDelegatingUnknown, public CBaseObject {
public:
    CUnknown(const wchar_t* name, IUnknown* owner);

    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE NonDelegatingAddRef() override;
    ULONG STDMETHODCALLTYPE NonDelegatingRelease() override;

    IUnknown* GetOwner() const { return owner_; }

protected:
    volatile LONG references_ = 0;

private:
    IUnknown* owner_;
};

// Hands out an interface pointer with a reference added.
HRESULT GetInterface(IUnknown* unknown, void** object);

// Lets go of a held interface, if there is one, and forgets it.
template <class Interface>
void ReleaseInterface(Interface*& held)
{
    if (held) {
        held->Release();
        held = nullptr;
    }
}

// Holds another interface, or none, in place of the one held.
template <class Interface>
void ReplaceInterface(Interface*& held, Interface* replacement)
{
    if (replacement)
        replacement->AddRef();
    if (held)
        held->Release();
    held = replacement;
}

// Gives a caller the held interface, or none, with a reference of its own.
template <class Interface>
void HandOutInterface(Interface* held, Interface** out)
{
    *out = held;
    if (held)
        held->AddRef();
}

// The public IUnknown of a class deriving from CUnknown and COM interfaces.
#define DECLARE_IUNKNOWN                                                                   \
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override           \
    {                                                                                      \
        return GetOwner()->QueryInterface(iid, object);                                    \
    }                                                                                      \
    ULONG STDMETHODCALLTYPE AddRef() override { return GetOwner()->AddRef(); }             \
    ULONG STDMETHODCALLTYPE Release() override { return GetOwner()->Release(); }
