// The filter base classes: a filter (CBaseFilter) with its state, its
// reference clock, its place in a graph and the enumeration of its pins;
// and its pins: the connection handshake (CBasePin), the receiving side with
// its allocator (CBaseInputPin) and the delivering side that decides the
// allocator with the downstream pin (CBaseOutputPin). A filter and its pins
// call each other, so they are declared together; base_filter.cpp and
// base_pins.cpp implement them. Derived filters say how many pins they have
// and hand them out by number; pins count their references on their filter.
#pragma once

#include "filters/base_object.h"
#include "filters/media_type.h"

#include <strmif.h>
#include <amvideo.h>
#include <control.h>

class CBasePin;

class CBaseFilter : public CUnknown, public IBaseFilter, public IAMovieSetup {
public:
    CBaseFilter(const wchar_t* name, IUnknown* owner, CCritSec* lock, REFCLSID clsid);
    ~CBaseFilter() override;

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    // IPersist
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override;
    // IMediaFilter
    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE GetState(DWORD timeout, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override;
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override;
    // IBaseFilter
    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** pins) override;
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** pin) override;
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* info) override;
    // IAMovieSetup: these filters are never registered.
    HRESULT STDMETHODCALLTYPE Register() override;
    HRESULT STDMETHODCALLTYPE Unregister() override;

    // The time since Run's start by the reference clock, or VFW_E_NO_CLOCK.
    virtual HRESULT StreamTime(REFERENCE_TIME& time);
    virtual LONG GetPinVersion();
    virtual int GetPinCount() = 0;
    virtual CBasePin* GetPin(int n) = 0;
    virtual const void* GetSetupData() { return nullptr; }

    bool IsStopped() const { return state_ == State_Stopped; }
    bool IsActive() const { return state_ != State_Stopped; }
    FILTER_STATE State() const { return state_; }
    IFilterGraph* Graph() const { return graph_; }
    // Passes an event to the graph's event sink, if the filter is in a graph.
    HRESULT NotifyEvent(long code, LONG_PTR param1, LONG_PTR param2);

protected:
    void IncrementPinVersion() { InterlockedIncrement(&pinVersion_); }

    FILTER_STATE state_ = State_Stopped;
    IReferenceClock* clock_ = nullptr;
    // Guards the clock alone: streaming threads read the stream time while
    // a state change holds the filter lock and waits for them.
    CCritSec clockLock_;
    REFERENCE_TIME start_ = 0;
    CLSID clsid_;
    CCritSec* lock_;
    wchar_t name_[MAX_FILTER_NAME] = {};
    IFilterGraph* graph_ = nullptr;  // not counted: the graph owns the filter
    IMediaEventSink* eventSink_ = nullptr;  // not counted either
    volatile LONG pinVersion_ = 1;
};

class CBasePin : public CUnknown, public IPin, public IQualityControl {
public:
    CBasePin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result, const wchar_t* name,
             PIN_DIRECTION direction);
    ~CBasePin() override;

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE NonDelegatingAddRef() override;
    ULONG STDMETHODCALLTYPE NonDelegatingRelease() override;

    // IPin
    HRESULT STDMETHODCALLTYPE Connect(IPin* receivePin, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** pin) override;
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** types) override;
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin** pins, ULONG* count) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override = 0;
    HRESULT STDMETHODCALLTYPE EndFlush() override = 0;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) override;
    // IQualityControl
    HRESULT STDMETHODCALLTYPE Notify(IBaseFilter* sender, Quality quality) override;
    HRESULT STDMETHODCALLTYPE SetSink(IQualityControl* sink) override;

    // The pin's own rules.
    virtual HRESULT CheckMediaType(const CMediaType* type) = 0;
    virtual HRESULT SetMediaType(const CMediaType* type);
    virtual HRESULT CheckConnect(IPin* pin);
    virtual HRESULT BreakConnect();
    virtual HRESULT CompleteConnect(IPin* receivePin);
    // The types the pin offers, by position; VFW_S_NO_MORE_ITEMS past the end.
    virtual HRESULT GetMediaType(int position, CMediaType* type);
    virtual LONG GetMediaTypeVersion() { return typeVersion_; }
    void IncrementTypeVersion() { InterlockedIncrement(&typeVersion_); }

    // State changes of the filter, passed to each connected pin.
    virtual HRESULT Active() { return S_OK; }
    virtual HRESULT Inactive() { return S_OK; }
    virtual HRESULT Run(REFERENCE_TIME start) { return S_OK; }

    bool IsConnected() const { return connected_ != nullptr; }
    IPin* GetConnected() const { return connected_; }
    bool IsStopped() const { return filter_->IsStopped(); }
    const wchar_t* Name() const { return name_; }
    const CMediaType& CurrentMediaType() const { return mediaType_; }
    CBaseFilter* Filter() const { return filter_; }

protected:
    // Only a free pin of a stopped filter may be connected.
    HRESULT CanConnect() const;
    // The pin's own tests of a peer and a type; where either refuses, what
    // CheckConnect prepared is undone.
    HRESULT CheckConnection(IPin* pin, const CMediaType* type);
    HRESULT AgreeMediaType(IPin* receivePin, const CMediaType* type);
    HRESULT TryMediaTypes(IPin* receivePin, const CMediaType* partial, IEnumMediaTypes* types);
    HRESULT AttemptConnection(IPin* receivePin, const CMediaType* type);
    HRESULT DisconnectInternal();

    wchar_t* name_ = nullptr;
    IPin* connected_ = nullptr;
    PIN_DIRECTION direction_;
    CCritSec* lock_;
    bool runTimeError_ = false;
    // Offer our own types before the receiving pin's when agreeing a type.
    bool tryMyTypesFirst_ = false;
    CBaseFilter* filter_;
    IQualityControl* qualitySink_ = nullptr;
    volatile LONG typeVersion_ = 1;
    CMediaType mediaType_;
    REFERENCE_TIME segmentStart_ = 0;
    REFERENCE_TIME segmentStop_ = 0;
    double segmentRate_ = 1.0;
};

class CBaseInputPin : public CBasePin, public IMemInputPin {
public:
    CBaseInputPin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result, const wchar_t* name);
    ~CBaseInputPin() override;

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    // IMemInputPin
    HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** allocator) override;
    HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) override;
    HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES* properties) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE ReceiveMultiple(IMediaSample** samples, long count, long* processed) override;
    HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override;

    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;

    HRESULT BreakConnect() override;
    HRESULT Inactive() override;
    // Whether samples may be received now: S_OK, S_FALSE while flushing, or
    // the error that refuses them.
    virtual HRESULT CheckStreaming();
    bool IsFlushing() const { return flushing_; }
    bool IsReadOnly() const { return readOnly_; }

protected:
    IMemAllocator* allocator_ = nullptr;
    bool readOnly_ = false;
    bool flushing_ = false;
};

class CBaseOutputPin : public CBasePin {
public:
    CBaseOutputPin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result, const wchar_t* name);
    ~CBaseOutputPin() override;

    HRESULT CheckConnect(IPin* pin) override;
    HRESULT CompleteConnect(IPin* receivePin) override;
    HRESULT BreakConnect() override;
    HRESULT Active() override;
    HRESULT Inactive() override;

    // Output pins receive none of these.
    HRESULT STDMETHODCALLTYPE EndOfStream() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE BeginFlush() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE EndFlush() override { return E_UNEXPECTED; }

    // The downstream pin's allocator first, the platform's memory allocator
    // second; the derived pin sets the buffer sizes.
    virtual HRESULT DecideAllocator(IMemInputPin* pin, IMemAllocator** allocator);
    virtual HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) = 0;
    virtual HRESULT InitAllocator(IMemAllocator** allocator);

    virtual HRESULT GetDeliveryBuffer(IMediaSample** sample, REFERENCE_TIME* start, REFERENCE_TIME* stop, DWORD flags);
    virtual HRESULT Deliver(IMediaSample* sample);
    virtual HRESULT DeliverEndOfStream();
    virtual HRESULT DeliverBeginFlush();
    virtual HRESULT DeliverEndFlush();
    virtual HRESULT DeliverNewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate);

    IMemAllocator* Allocator() const { return allocator_; }

protected:
    // Sizes the buffers of the allocator on offer and tells the downstream
    // pin that it is the one; where either fails, the allocator is let go.
    HRESULT SettleAllocator(IMemInputPin* pin, IMemAllocator** allocator, ALLOCATOR_PROPERTIES* properties);

    IMemAllocator* allocator_ = nullptr;
    IMemInputPin* inputPin_ = nullptr;
};
