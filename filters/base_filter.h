// A filter: its state, its reference clock, its place in a graph and the
// enumeration of its pins. Derived filters say how many pins they have and
// hand them out by number.
#pragma once

#include "filters/base_object.h"

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
