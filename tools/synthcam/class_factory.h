// The class factory of a test DLL: one static object per class, handing
// out objects made by a create function, and the count of server locks
// that the DLL's unloading looks at.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <new>

namespace synthcam {

inline volatile LONG serverLocks = 0;

class StaticClassFactory : public IClassFactory {
public:
    using Create = HRESULT (*)(IUnknown* outer, REFIID iid, void** object);
    explicit StaticClassFactory(Create create) : create_(create) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        if (iid == IID_IUnknown || iid == IID_IClassFactory) {
            *object = static_cast<IClassFactory*>(this);
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    // A static object: counting changes nothing.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        return create_(outer, iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override
    {
        if (lock)
            InterlockedIncrement(&serverLocks);
        else
            InterlockedDecrement(&serverLocks);
        return S_OK;
    }

private:
    Create create_;
};

// A create function for a filter of the base layer that can't be
// aggregated: made with no owner, asked for the interface.
template <class Filter>
HRESULT CreateFilterObject(IUnknown* outer, REFIID iid, void** object)
{
    if (outer)
        return CLASS_E_NOAGGREGATION;
    auto* filter = new (std::nothrow) Filter(nullptr);
    if (!filter)
        return E_OUTOFMEMORY;
    filter->NonDelegatingAddRef();
    HRESULT hr = filter->NonDelegatingQueryInterface(iid, object);
    filter->NonDelegatingRelease();
    return hr;
}

}  // namespace synthcam
