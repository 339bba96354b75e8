// The DLL's COM entry: a class factory for the synthetic camera.
#include "tools/synthcam/source_filter.h"

#include <new>

namespace {

volatile LONG serverLocks = 0;

class Factory : public IClassFactory {
public:
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
        if (outer)
            return CLASS_E_NOAGGREGATION;
        auto* filter = new (std::nothrow) synthcam::SynthCamFilter(nullptr);
        if (!filter)
            return E_OUTOFMEMORY;
        filter->NonDelegatingAddRef();
        HRESULT hr = filter->NonDelegatingQueryInterface(iid, object);
        filter->NonDelegatingRelease();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override
    {
        if (lock)
            InterlockedIncrement(&serverLocks);
        else
            InterlockedDecrement(&serverLocks);
        return S_OK;
    }
};

Factory factory;

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (clsid != synthcam::CLSID_SynthCam)
        return CLASS_E_CLASSNOTAVAILABLE;
    return factory.QueryInterface(iid, object);
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    return serverLocks == 0 && CBaseObject::ObjectsActive() == 0 ? S_OK : S_FALSE;
}
