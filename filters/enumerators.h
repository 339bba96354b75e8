// The enumerators of a filter's pins and of a pin's media types. Each holds
// a reference on what it walks and notices when the set changed under it
// (VFW_E_ENUM_OUT_OF_SYNC until Reset).
#pragma once

#include "filters/base_pins.h"

class CEnumPins : public IEnumPins {
public:
    CEnumPins(CBaseFilter* filter, const CEnumPins* copyFrom);
    virtual ~CEnumPins();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE Next(ULONG count, IPin** pins, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumPins** clone) override;

private:
    bool AreWeOutOfSync() const { return filter_->GetPinVersion() != version_; }

    volatile LONG references_ = 1;
    CBaseFilter* filter_;
    int position_ = 0;
    int pinCount_ = 0;
    LONG version_ = 0;
};

class CEnumMediaTypes : public IEnumMediaTypes {
public:
    CEnumMediaTypes(CBasePin* pin, const CEnumMediaTypes* copyFrom);
    virtual ~CEnumMediaTypes();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE Next(ULONG count, AM_MEDIA_TYPE** types, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumMediaTypes** clone) override;

private:
    bool AreWeOutOfSync() const { return pin_->GetMediaTypeVersion() != version_; }

    volatile LONG references_ = 1;
    CBasePin* pin_;
    int position_ = 0;
    LONG version_ = 0;
};
