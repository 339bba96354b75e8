// The enumerators of a filter's pins and of a pin's media types. Each holds
// a reference on what it walks and notices when the set changed under it
// (VFW_E_ENUM_OUT_OF_SYNC until Reset).
#pragma once

#include "filters/base_pins.h"

// The IUnknown of a free-standing COM object with one interface.
template <class Interface>
class CSingleInterfaceObject : public Interface {
public:
    explicit CSingleInterfaceObject(REFIID iid) : iid_(iid) {}
    virtual ~CSingleInterfaceObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        if (iid == IID_IUnknown || iid == iid_) {
            *object = static_cast<Interface*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        LONG count = InterlockedDecrement(&references_);
        if (count == 0)
            delete this;
        return static_cast<ULONG>(count);
    }

private:
    const IID& iid_;
    volatile LONG references_ = 1;
};

class CEnumPins : public CSingleInterfaceObject<IEnumPins> {
public:
    CEnumPins(CBaseFilter* filter, const CEnumPins* copyFrom);
    ~CEnumPins() override;

    HRESULT STDMETHODCALLTYPE Next(ULONG count, IPin** pins, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumPins** clone) override;

private:
    bool AreWeOutOfSync() const { return filter_->GetPinVersion() != version_; }

    CBaseFilter* filter_;
    int position_ = 0;
    int pinCount_ = 0;
    LONG version_ = 0;
};

class CEnumMediaTypes : public CSingleInterfaceObject<IEnumMediaTypes> {
public:
    CEnumMediaTypes(CBasePin* pin, const CEnumMediaTypes* copyFrom);
    ~CEnumMediaTypes() override;

    HRESULT STDMETHODCALLTYPE Next(ULONG count, AM_MEDIA_TYPE** types, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumMediaTypes** clone) override;

private:
    bool AreWeOutOfSync() const { return pin_->GetMediaTypeVersion() != version_; }

    CBasePin* pin_;
    int position_ = 0;
    LONG version_ = 0;
};
