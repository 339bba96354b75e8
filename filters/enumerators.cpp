#include "filters/enumerators.h"

#include <new>

CEnumPins::CEnumPins(CBaseFilter* filter, const CEnumPins* copyFrom)
    : CSingleInterfaceObject(IID_IEnumPins), filter_(filter)
{
    filter_->AddRef();
    if (copyFrom) {
        position_ = copyFrom->position_;
        pinCount_ = copyFrom->pinCount_;
        version_ = copyFrom->version_;
    } else {
        pinCount_ = filter_->GetPinCount();
        version_ = filter_->GetPinVersion();
    }
}

CEnumPins::~CEnumPins()
{
    filter_->Release();
}

HRESULT STDMETHODCALLTYPE CEnumPins::Next(ULONG count, IPin** pins, ULONG* fetched)
{
    if (!pins)
        return E_POINTER;
    if (count > 1 && !fetched)
        return E_INVALIDARG;
    if (fetched)
        *fetched = 0;
    if (AreWeOutOfSync())
        return VFW_E_ENUM_OUT_OF_SYNC;
    ULONG given = 0;
    while (given < count && position_ < pinCount_) {
        CBasePin* pin = filter_->GetPin(position_++);
        if (!pin)
            break;
        pins[given] = pin;
        pin->AddRef();
        ++given;
    }
    if (fetched)
        *fetched = given;
    return given == count ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE CEnumPins::Skip(ULONG count)
{
    if (AreWeOutOfSync())
        return VFW_E_ENUM_OUT_OF_SYNC;
    if (count > static_cast<ULONG>(pinCount_ - position_)) {
        position_ = pinCount_;
        return S_FALSE;
    }
    position_ += static_cast<int>(count);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CEnumPins::Reset()
{
    position_ = 0;
    pinCount_ = filter_->GetPinCount();
    version_ = filter_->GetPinVersion();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CEnumPins::Clone(IEnumPins** clone)
{
    if (!clone)
        return E_POINTER;
    if (AreWeOutOfSync()) {
        *clone = nullptr;
        return VFW_E_ENUM_OUT_OF_SYNC;
    }
    *clone = new (std::nothrow) CEnumPins(filter_, this);
    return *clone ? S_OK : E_OUTOFMEMORY;
}

CEnumMediaTypes::CEnumMediaTypes(CBasePin* pin, const CEnumMediaTypes* copyFrom)
    : CSingleInterfaceObject(IID_IEnumMediaTypes), pin_(pin)
{
    pin_->AddRef();
    if (copyFrom) {
        position_ = copyFrom->position_;
        version_ = copyFrom->version_;
    } else {
        version_ = pin_->GetMediaTypeVersion();
    }
}

CEnumMediaTypes::~CEnumMediaTypes()
{
    pin_->Release();
}

HRESULT STDMETHODCALLTYPE CEnumMediaTypes::Next(ULONG count, AM_MEDIA_TYPE** types, ULONG* fetched)
{
    if (!types)
        return E_POINTER;
    if (count > 1 && !fetched)
        return E_INVALIDARG;
    if (fetched)
        *fetched = 0;
    if (AreWeOutOfSync())
        return VFW_E_ENUM_OUT_OF_SYNC;
    ULONG given = 0;
    while (given < count) {
        CMediaType type;
        if (pin_->GetMediaType(position_, &type) != S_OK)
            break;
        ++position_;
        types[given] = CreateMediaType(&type);
        if (!types[given])
            break;
        ++given;
    }
    if (fetched)
        *fetched = given;
    return given == count ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE CEnumMediaTypes::Skip(ULONG count)
{
    if (AreWeOutOfSync())
        return VFW_E_ENUM_OUT_OF_SYNC;
    while (count > 0) {
        CMediaType type;
        if (pin_->GetMediaType(position_, &type) != S_OK)
            return S_FALSE;
        ++position_;
        --count;
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CEnumMediaTypes::Reset()
{
    position_ = 0;
    version_ = pin_->GetMediaTypeVersion();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CEnumMediaTypes::Clone(IEnumMediaTypes** clone)
{
    if (!clone)
        return E_POINTER;
    if (AreWeOutOfSync()) {
        *clone = nullptr;
        return VFW_E_ENUM_OUT_OF_SYNC;
    }
    *clone = new (std::nothrow) CEnumMediaTypes(pin_, this);
    return *clone ? S_OK : E_OUTOFMEMORY;
}
