#include "filters/base_object.h"

namespace {
volatile LONG objectsActive = 0;
}

CBaseObject::CBaseObject(const wchar_t* name) : objectName_(name)
{
    InterlockedIncrement(&objectsActive);
}

CBaseObject::~CBaseObject()
{
    InterlockedDecrement(&objectsActive);
}

LONG CBaseObject::ObjectsActive()
{
    return objectsActive;
}

CUnknown::CUnknown(const wchar_t* name, IUnknown* owner)
    : CBaseObject(name),
      // Without an owner the object is its own: the public IUnknown then
      // reaches the non-delegating one.
      owner_(owner ? owner : reinterpret_cast<IUnknown*>(static_cast<INonDelegatingUnknown*>(this)))
{
}

HRESULT STDMETHODCALLTYPE CUnknown::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    if (iid == IID_IUnknown)
        return GetInterface(reinterpret_cast<IUnknown*>(static_cast<INonDelegatingUnknown*>(this)), object);
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG STDMETHODCALLTYPE CUnknown::NonDelegatingAddRef()
{
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

ULONG STDMETHODCALLTYPE CUnknown::NonDelegatingRelease()
{
    LONG count = InterlockedDecrement(&references_);
    if (count == 0) {
        // Guards against a destructor that adds and drops a reference.
        references_ = 1;
        delete this;
        return 0;
    }
    return static_cast<ULONG>(count);
}

HRESULT GetInterface(IUnknown* unknown, void** object)
{
    if (!object)
        return E_POINTER;
    *object = unknown;
    unknown->AddRef();
    return S_OK;
}
