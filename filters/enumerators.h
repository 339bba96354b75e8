// The enumerators of a filter's pins and of a pin's media types. Each holds
// a reference on what it walks and notices when the set changed under it
// (VFW_E_ENUM_OUT_OF_SYNC until Reset).
#pragma once

#include "filters/base_classes.h"

#include <new>

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

// A position in the numbered items of an owner, with Next, Skip, Reset and
// Clone as every IEnumXxx has them. The Walk says what is walked:
//   Interface, Owner, Item     the enumerator interface, what holds the
//                              items (AddRef/Release) and what Next hands out
//   Iid()                      the interface's id
//   Version(owner)             changes whenever the set of items changes
//   Count(owner)               how many items there are, taken at the start
//                              and at Reset
//   Exists(owner, position)    whether an item stands at a position below
//                              the count
//   Fetch(owner, position, item)  hands out the item at the position,
//                              counted for the receiver, and moves the
//                              position past what it read; false where
//                              nothing was handed out
template <class Walk>
class CEnumerator : public CSingleInterfaceObject<typename Walk::Interface> {
public:
    using Interface = typename Walk::Interface;
    using Owner = typename Walk::Owner;
    using Item = typename Walk::Item;

    // A fresh walk from the first item, or a copy of another at its place.
    CEnumerator(Owner* owner, const CEnumerator* copyFrom)
        : CSingleInterfaceObject<Interface>(Walk::Iid()), owner_(owner)
    {
        owner_->AddRef();
        if (copyFrom) {
            position_ = copyFrom->position_;
            count_ = copyFrom->count_;
            version_ = copyFrom->version_;
        } else {
            count_ = Walk::Count(owner_);
            version_ = Walk::Version(owner_);
        }
    }
    ~CEnumerator() override { owner_->Release(); }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* items, ULONG* fetched) override
    {
        if (!items)
            return E_POINTER;
        if (count > 1 && !fetched)
            return E_INVALIDARG;
        if (fetched)
            *fetched = 0;
        if (OutOfSync())
            return VFW_E_ENUM_OUT_OF_SYNC;
        ULONG given = 0;
        while (given < count && position_ < count_) {
            if (!Walk::Fetch(owner_, position_, &items[given]))
                break;
            ++given;
        }
        if (fetched)
            *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override
    {
        if (OutOfSync())
            return VFW_E_ENUM_OUT_OF_SYNC;
        for (; count > 0; --count) {
            if (position_ >= count_ || !Walk::Exists(owner_, position_))
                return S_FALSE;
            ++position_;
        }
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Reset() override
    {
        position_ = 0;
        count_ = Walk::Count(owner_);
        version_ = Walk::Version(owner_);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Clone(Interface** clone) override
    {
        if (!clone)
            return E_POINTER;
        if (OutOfSync()) {
            *clone = nullptr;
            return VFW_E_ENUM_OUT_OF_SYNC;
        }
        *clone = new (std::nothrow) CEnumerator(owner_, this);
        return *clone ? S_OK : E_OUTOFMEMORY;
    }

private:
    bool OutOfSync() const { return Walk::Version(owner_) != version_; }

    Owner* owner_;
    int position_ = 0;
    int count_ = 0;
    LONG version_ = 0;
};

// A filter's pins, by the count the filter gave when the walk began.
struct PinWalk {
    using Interface = IEnumPins;
    using Owner = CBaseFilter;
    using Item = IPin*;
    static const IID& Iid() { return IID_IEnumPins; }
    static LONG Version(CBaseFilter* filter) { return filter->GetPinVersion(); }
    static int Count(CBaseFilter* filter) { return filter->GetPinCount(); }
    static bool Exists(CBaseFilter*, int) { return true; }
    static bool Fetch(CBaseFilter* filter, int& position, IPin** pin);
};

// A pin's media types. The pin gives no count ahead: its list ends where
// GetMediaType stops answering S_OK.
struct MediaTypeWalk {
    using Interface = IEnumMediaTypes;
    using Owner = CBasePin;
    using Item = AM_MEDIA_TYPE*;
    static const IID& Iid() { return IID_IEnumMediaTypes; }
    static LONG Version(CBasePin* pin) { return pin->GetMediaTypeVersion(); }
    static int Count(CBasePin*);
    static bool Exists(CBasePin* pin, int position);
    static bool Fetch(CBasePin* pin, int& position, AM_MEDIA_TYPE** type);
};

using CEnumPins = CEnumerator<PinWalk>;
using CEnumMediaTypes = CEnumerator<MediaTypeWalk>;
