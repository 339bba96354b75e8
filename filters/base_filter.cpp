#include "filters/base_filter.h"

#include "filters/base_pins.h"
#include "filters/enumerators.h"

#include <new>

#include <cwchar>

CBaseFilter::CBaseFilter(const wchar_t* name, IUnknown* owner, CCritSec* lock, REFCLSID clsid)
    : CUnknown(name, owner), m_clsid(clsid), m_pLock(lock)
{
}

CBaseFilter::~CBaseFilter()
{
    if (m_pClock)
        m_pClock->Release();
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
    *clsid = m_clsid;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Stop()
{
    CAutoLock lock(m_pLock);
    HRESULT result = S_OK;
    if (m_State != State_Stopped) {
        for (int i = 0; i < GetPinCount(); ++i) {
            CBasePin* pin = GetPin(i);
            if (pin && pin->IsConnected()) {
                HRESULT hr = pin->Inactive();
                if (FAILED(hr) && SUCCEEDED(result))
                    result = hr;
            }
        }
    }
    m_State = State_Stopped;
    return result;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Pause()
{
    CAutoLock lock(m_pLock);
    if (m_State == State_Stopped) {
        for (int i = 0; i < GetPinCount(); ++i) {
            CBasePin* pin = GetPin(i);
            if (pin && pin->IsConnected()) {
                HRESULT hr = pin->Active();
                if (FAILED(hr))
                    return hr;
            }
        }
    }
    m_State = State_Paused;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::Run(REFERENCE_TIME start)
{
    CAutoLock lock(m_pLock);
    {
        CAutoLock clockLock(&m_csClock);
        m_tStart = start;
    }
    if (m_State == State_Stopped) {
        HRESULT hr = Pause();
        if (FAILED(hr))
            return hr;
    }
    if (m_State != State_Running) {
        for (int i = 0; i < GetPinCount(); ++i) {
            CBasePin* pin = GetPin(i);
            if (pin && pin->IsConnected()) {
                HRESULT hr = pin->Run(start);
                if (FAILED(hr))
                    return hr;
            }
        }
    }
    m_State = State_Running;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::GetState(DWORD timeout, FILTER_STATE* state)
{
    if (!state)
        return E_POINTER;
    *state = m_State;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::SetSyncSource(IReferenceClock* clock)
{
    CAutoLock lock(m_pLock);
    CAutoLock clockLock(&m_csClock);
    if (clock)
        clock->AddRef();
    if (m_pClock)
        m_pClock->Release();
    m_pClock = clock;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::GetSyncSource(IReferenceClock** clock)
{
    if (!clock)
        return E_POINTER;
    CAutoLock lock(&m_csClock);
    *clock = m_pClock;
    if (m_pClock)
        m_pClock->AddRef();
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
    CAutoLock lock(m_pLock);
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
    std::wcsncpy(info->achName, m_pName, MAX_FILTER_NAME - 1);
    info->achName[MAX_FILTER_NAME - 1] = L'\0';
    info->pGraph = m_pGraph;
    if (m_pGraph)
        m_pGraph->AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name)
{
    CAutoLock lock(m_pLock);
    m_pGraph = graph;
    m_pSink = nullptr;
    if (graph) {
        // The graph holds the filter; holding the graph back would make a
        // cycle, so the sink's reference is dropped at once and the pointer
        // kept for as long as the filter is in the graph.
        if (SUCCEEDED(graph->QueryInterface(IID_IMediaEventSink, reinterpret_cast<void**>(&m_pSink))))
            m_pSink->Release();
        else
            m_pSink = nullptr;
    }
    m_pName[0] = L'\0';
    if (name) {
        std::wcsncpy(m_pName, name, MAX_FILTER_NAME - 1);
        m_pName[MAX_FILTER_NAME - 1] = L'\0';
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
    CAutoLock lock(&m_csClock);
    if (!m_pClock)
        return VFW_E_NO_CLOCK;
    HRESULT hr = m_pClock->GetTime(&time);
    if (FAILED(hr))
        return hr;
    time -= m_tStart;
    return S_OK;
}

LONG CBaseFilter::GetPinVersion()
{
    return m_PinVersion;
}

HRESULT CBaseFilter::NotifyEvent(long code, LONG_PTR param1, LONG_PTR param2)
{
    IMediaEventSink* sink = m_pSink;
    if (!sink)
        return E_NOTIMPL;
    if (code == EC_COMPLETE)
        param2 = reinterpret_cast<LONG_PTR>(static_cast<IBaseFilter*>(this));
    return sink->Notify(code, param1, param2);
}
