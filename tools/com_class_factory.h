// The class factory of an in-process COM server for the test DLLs: one
// static object per class, handing out objects made by a create function,
// and the count of server locks that the DLL's unloading looks at.
#pragma once

#include "filters/base_object.h"

#include <windows.h>
#include <unknwn.h>

#include <new>

namespace testdll {

// Counts LockServer calls; DllCanUnloadNow asks it and the live objects.
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

// DllGetClassObject for a server of one filter class.
template <class Filter>
HRESULT GetClassObject(REFCLSID wanted, REFCLSID served, REFIID iid, void** object)
{
    static StaticClassFactory factory(CreateFilterObject<Filter>);
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (wanted != served)
        return CLASS_E_CLASSNOTAVAILABLE;
    return factory.QueryInterface(iid, object);
}

inline HRESULT CanUnloadNow()
{
    return serverLocks == 0 && CBaseObject::ObjectsActive() == 0 ? S_OK : S_FALSE;
}

}  // namespace testdll
