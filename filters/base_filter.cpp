#include "filters/base_classes.h"

#include "filters/enumerators.h"

#include <new>

#include <cwchar>

CBaseFilter::CBaseFilter(const wchar_t* name, IUnknown* owner, CCritSec* lock, REFCLSID clsid)
    : CUnknown(name, owner), clsid_(clsid), lock_(lock)
{
}

CBaseFilter::~CBaseFilter()
{
    ReleaseInterface(clock_);
}

HRESULT STDMETHODCALLTYPE CBaseFilter::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    if (iid == IID_IBaseFilter || iid == IID_IMediaFilter || iid == IID_IPersist)
        return GetInterface(static_cast<IBaseFilter*>(this), object);
    if (iid == IID_IAMovieSetup)
        return GetInterface(static_cast<IAMovieSetup*>(this), object);
    return CUnknown::NonDelegatingQueryInterface(iid, object);
}

HRESULT STDMETHODCALLTYPE CBaseFilter::GetClassID(CLSID* clsid)
{
    if (!clsid)
        return E_POINTER;
    *clsid = clsid_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Stop()
{
    CAutoLock lock(lock_);
    HRESULT result = S_OK;
    if (state_ != State_Stopped) {
        for (int i = 0; i < GetPinCount(); ++i) {
            CBasePin* pin = GetPin(i);
            if (pin && pin->IsConnected()) {
                HRESULT hr = pin->Inactive();
                if (FAILED(hr) && SUCCEEDED(result))
                    result = hr;
            }
        }
    }
    state_ = State_Stopped;
    return result;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Pause()
{
    CAutoLock lock(lock_);
    if (state_ == State_Stopped) {
        for (int i = 0; i < GetPinCount(); ++i) {
            CBasePin* pin = GetPin(i);
            if (pin && pin->IsConnected()) {
                HRESULT hr = pin->Active();
                if (FAILED(hr))
                    return hr;
            }
        }
    }
    state_ = State_Paused;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Run(REFERENCE_TIME start)
{
    CAutoLock lock(lock_);
    {
        CAutoLock clockLock(&clockLock_);
        start_ = start;
    }
    if (state_ == State_Stopped) {
        HRESULT hr = Pause();
        if (FAILED(hr))
            return hr;
    }
    if (state_ != State_Running) {
        for (int i = 0; i < GetPinCount(); ++i) {
            CBasePin* pin = GetPin(i);
            if (pin && pin->IsConnected()) {
                HRESULT hr = pin->Run(start);
                if (FAILED(hr))
                    return hr;
            }
        }
    }
    state_ = State_Running;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::GetState(DWORD timeout, FILTER_STATE* state)
{
    if (!state)
        return E_POINTER;
    *state = state_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::SetSyncSource(IReferenceClock* clock)
{
    CAutoLock lock(lock_);
    CAutoLock clockLock(&clockLock_);
    ReplaceInterface(clock_, clock);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::GetSyncSource(IReferenceClock** clock)
{
    if (!clock)
        return E_POINTER;
    CAutoLock lock(&clockLock_);
    HandOutInterface(clock_, clock);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::EnumPins(IEnumPins** pins)
{
    if (!pins)
        return E_POINTER;
    *pins = new (std::nothrow) CEnumPins(this, nullptr);
    return *pins ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::FindPin(LPCWSTR id, IPin** found)
{
    if (!id || !found)
        return E_POINTER;
    CAutoLock lock(lock_);
    for (int i = 0; i < GetPinCount(); ++i) {
        CBasePin* pin = GetPin(i);
        if (pin && std::wcscmp(pin->Name(), id) == 0) {
            *found = pin;
            pin->AddRef();
            return S_OK;
        }
    }
    *found = nullptr;
    return VFW_E_NOT_FOUND;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::QueryFilterInfo(FILTER_INFO* info)
{
    if (!info)
        return E_POINTER;
    std::wcsncpy(info->achName, name_, MAX_FILTER_NAME - 1);
    info->achName[MAX_FILTER_NAME - 1] = L'\0';
    HandOutInterface(graph_, &info->pGraph);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name)
{
    CAutoLock lock(lock_);
    graph_ = graph;
    eventSink_ = nullptr;
    if (graph) {
        // The graph holds the filter; holding the graph back would make a
        // cycle, so the sink's reference is dropped at once and the pointer
        // kept for as long as the filter is in the graph.
        if (SUCCEEDED(graph->QueryInterface(IID_IMediaEventSink, reinterpret_cast<void**>(&eventSink_))))
            eventSink_->Release();
        else
            eventSink_ = nullptr;
    }
    name_[0] = L'\0';
    if (name) {
        std::wcsncpy(name_, name, MAX_FILTER_NAME - 1);
        name_[MAX_FILTER_NAME - 1] = L'\0';
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::QueryVendorInfo(LPWSTR* info)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Register()
{
    return GetSetupData() ? E_NOTIMPL : S_FALSE;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Unregister()
{
    return GetSetupData() ? E_NOTIMPL : S_FALSE;
}

HRESULT CBaseFilter::StreamTime(REFERENCE_TIME& time)
{
    CAutoLock lock(&clockLock_);
    if (!clock_)
        return VFW_E_NO_CLOCK;
    HRESULT hr = clock_->GetTime(&time);
    if (FAILED(hr))
        return hr;
    time -= start_;
    return S_OK;
}

LONG CBaseFilter::GetPinVersion()
{
    return pinVersion_;
}

HRESULT CBaseFilter::NotifyEvent(long code, LONG_PTR param1, LONG_PTR param2)
{
    IMediaEventSink* sink = eventSink_;
    if (!sink)
        return E_NOTIMPL;
    if (code == EC_COMPLETE)
        param2 = reinterpret_cast<LONG_PTR>(static_cast<IBaseFilter*>(this));
    return sink->Notify(code, param1, param2);
}
