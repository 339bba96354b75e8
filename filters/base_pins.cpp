#include "filters/base_pins.h"

#include "filters/enumerators.h"

#include <cstring>
#include <cwchar>
#include <new>

namespace {

wchar_t* CopyName(const wchar_t* name)
{
    if (!name)
        return nullptr;
    size_t length = std::wcslen(name) + 1;
    auto* copy = new (std::nothrow) wchar_t[length];
    if (copy)
        std::wmemcpy(copy, name, length);
    return copy;
}

}  // namespace

// ---------------------------------------------------------------- CBasePin

CBasePin::CBasePin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result,
                   const wchar_t* name, PIN_DIRECTION direction)
    : CUnknown(objectName, nullptr), m_pName(CopyName(name)), m_dir(direction), m_pLock(lock), m_pFilter(filter)
{
}

CBasePin::~CBasePin()
{
    if (m_Connected) {
        m_Connected->Release();
        m_Connected = nullptr;
    }
    delete[] m_pName;
}

HRESULT STDMETHODCALLTYPE CBasePin::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    if (iid == IID_IPin)
        return GetInterface(static_cast<IPin*>(this), object);
    if (iid == IID_IQualityControl)
        return GetInterface(static_cast<IQualityControl*>(this), object);
    return CUnknown::NonDelegatingQueryInterface(iid, object);
}

// A pin lives as long as its filter: its count is the filter's.
ULONG STDMETHODCALLTYPE CBasePin::NonDelegatingAddRef()
{
    return m_pFilter->AddRef();
}

ULONG STDMETHODCALLTYPE CBasePin::NonDelegatingRelease()
{
    return m_pFilter->Release();
}

HRESULT STDMETHODCALLTYPE CBasePin::Connect(IPin* receivePin, const AM_MEDIA_TYPE* type)
{
    if (!receivePin)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    if (m_Connected)
        return VFW_E_ALREADY_CONNECTED;
    if (!IsStopped())
        return VFW_E_NOT_STOPPED;
    CMediaType wanted;
    if (type)
        wanted = *type;
    HRESULT hr = AgreeMediaType(receivePin, &wanted);
    if (FAILED(hr))
        return hr;
    return S_OK;
}

HRESULT CBasePin::AgreeMediaType(IPin* receivePin, const CMediaType* type)
{
    if (type->IsValid() && !type->IsPartiallySpecified())
        return AttemptConnection(receivePin, type);

    // The receiving pin's preferences first, then ours, unless this pin
    // says otherwise.
    HRESULT failure = VFW_E_NO_ACCEPTABLE_TYPES;
    for (int attempt = 0; attempt < 2; ++attempt) {
        IEnumMediaTypes* types = nullptr;
        bool theirs = (attempt == 0) != m_bTryMyTypesFirst;
        HRESULT hr = theirs ? receivePin->EnumMediaTypes(&types) : EnumMediaTypes(&types);
        if (SUCCEEDED(hr) && types) {
            hr = TryMediaTypes(receivePin, type, types);
            types->Release();
            if (SUCCEEDED(hr))
                return S_OK;
            if (hr != E_FAIL && hr != E_INVALIDARG && hr != VFW_E_TYPE_NOT_ACCEPTED)
                failure = hr;
        }
    }
    return failure;
}

HRESULT CBasePin::TryMediaTypes(IPin* receivePin, const CMediaType* partial, IEnumMediaTypes* types)
{
    HRESULT hr = types->Reset();
    if (FAILED(hr))
        return hr;
    HRESULT failure = S_OK;
    for (;;) {
        AM_MEDIA_TYPE* offered = nullptr;
        ULONG fetched = 0;
        hr = types->Next(1, &offered, &fetched);
        if (hr != S_OK || fetched != 1 || !offered)
            break;
        CMediaType candidate(*offered);
        DeleteMediaType(offered);
        if (partial->IsValid() && !candidate.MatchesPartial(partial))
            continue;
        hr = AttemptConnection(receivePin, &candidate);
        if (SUCCEEDED(hr))
            return hr;
        if (failure == S_OK)
            failure = hr;
    }
    return failure == S_OK ? VFW_E_NO_ACCEPTABLE_TYPES : failure;
}

HRESULT CBasePin::AttemptConnection(IPin* receivePin, const CMediaType* type)
{
    HRESULT hr = CheckConnect(receivePin);
    if (FAILED(hr)) {
        BreakConnect();
        return hr;
    }
    hr = CheckMediaType(type);
    if (hr != S_OK) {
        BreakConnect();
        return SUCCEEDED(hr) ? VFW_E_TYPE_NOT_ACCEPTED : hr;
    }
    m_Connected = receivePin;
    m_Connected->AddRef();
    hr = SetMediaType(type);
    if (SUCCEEDED(hr)) {
        hr = receivePin->ReceiveConnection(static_cast<IPin*>(this), type);
        if (SUCCEEDED(hr)) {
            hr = CompleteConnect(receivePin);
            if (SUCCEEDED(hr))
                return hr;
            receivePin->Disconnect();
        }
    }
    BreakConnect();
    if (m_Connected) {
        m_Connected->Release();
        m_Connected = nullptr;
    }
    return FAILED(hr) ? hr : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT STDMETHODCALLTYPE CBasePin::ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type)
{
    if (!connector || !type)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    if (m_Connected)
        return VFW_E_ALREADY_CONNECTED;
    if (!IsStopped())
        return VFW_E_NOT_STOPPED;
    HRESULT hr = CheckConnect(connector);
    if (FAILED(hr)) {
        BreakConnect();
        return hr;
    }
    CMediaType offered(*type);
    hr = CheckMediaType(&offered);
    if (hr != S_OK) {
        BreakConnect();
        return SUCCEEDED(hr) ? VFW_E_TYPE_NOT_ACCEPTED : hr;
    }
    m_Connected = connector;
    m_Connected->AddRef();
    hr = SetMediaType(&offered);
    if (SUCCEEDED(hr)) {
        hr = CompleteConnect(connector);
        if (SUCCEEDED(hr))
            return S_OK;
    }
    m_Connected->Release();
    m_Connected = nullptr;
    BreakConnect();
    return hr;
}

HRESULT STDMETHODCALLTYPE CBasePin::Disconnect()
{
    CAutoLock lock(m_pLock);
    if (!IsStopped())
        return VFW_E_NOT_STOPPED;
    return DisconnectInternal();
}

HRESULT CBasePin::DisconnectInternal()
{
    if (!m_Connected)
        return S_FALSE;
    HRESULT hr = BreakConnect();
    if (FAILED(hr))
        return hr;
    m_Connected->Release();
    m_Connected = nullptr;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::ConnectedTo(IPin** pin)
{
    if (!pin)
        return E_POINTER;
    *pin = m_Connected;
    if (!m_Connected)
        return VFW_E_NOT_CONNECTED;
    m_Connected->AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::ConnectionMediaType(AM_MEDIA_TYPE* type)
{
    if (!type)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    if (!m_Connected) {
        CMediaType empty;
        *type = empty;
        type->pbFormat = nullptr;
        type->cbFormat = 0;
        return VFW_E_NOT_CONNECTED;
    }
    return CopyMediaType(type, &m_mt);
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryPinInfo(PIN_INFO* info)
{
    if (!info)
        return E_POINTER;
    info->pFilter = m_pFilter;
    m_pFilter->AddRef();
    info->achName[0] = L'\0';
    if (m_pName) {
        std::wcsncpy(info->achName, m_pName, MAX_PIN_NAME - 1);
        info->achName[MAX_PIN_NAME - 1] = L'\0';
    }
    info->dir = m_dir;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryDirection(PIN_DIRECTION* direction)
{
    if (!direction)
        return E_POINTER;
    *direction = m_dir;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryId(LPWSTR* id)
{
    if (!id)
        return E_POINTER;
    const wchar_t* name = m_pName ? m_pName : L"";
    size_t bytes = (std::wcslen(name) + 1) * sizeof(wchar_t);
    *id = static_cast<LPWSTR>(CoTaskMemAlloc(bytes));
    if (!*id)
        return E_OUTOFMEMORY;
    std::memcpy(*id, name, bytes);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryAccept(const AM_MEDIA_TYPE* type)
{
    if (!type)
        return E_POINTER;
    CMediaType offered(*type);
    HRESULT hr = CheckMediaType(&offered);
    return hr == S_OK ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE CBasePin::EnumMediaTypes(IEnumMediaTypes** types)
{
    if (!types)
        return E_POINTER;
    *types = new (std::nothrow) CEnumMediaTypes(this, nullptr);
    return *types ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryInternalConnections(IPin** pins, ULONG* count)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE CBasePin::EndOfStream()
{
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate)
{
    m_tStart = start;
    m_tStop = stop;
    m_dRate = rate;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::Notify(IBaseFilter* sender, Quality quality)
{
    return m_pQSink ? m_pQSink->Notify(m_pFilter, quality) : E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE CBasePin::SetSink(IQualityControl* sink)
{
    m_pQSink = sink;
    return S_OK;
}

HRESULT CBasePin::SetMediaType(const CMediaType* type)
{
    return m_mt.Set(*type);
}

HRESULT CBasePin::CheckConnect(IPin* pin)
{
    PIN_DIRECTION direction;
    HRESULT hr = pin->QueryDirection(&direction);
    if (FAILED(hr))
        return hr;
    return direction == m_dir ? VFW_E_INVALID_DIRECTION : S_OK;
}

HRESULT CBasePin::BreakConnect()
{
    return S_OK;
}

HRESULT CBasePin::CompleteConnect(IPin* receivePin)
{
    return S_OK;
}

HRESULT CBasePin::GetMediaType(int position, CMediaType* type)
{
    return E_UNEXPECTED;
}

// ----------------------------------------------------------- CBaseInputPin

CBaseInputPin::CBaseInputPin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result,
                             const wchar_t* name)
    : CBasePin(objectName, filter, lock, result, name, PINDIR_INPUT)
{
}

CBaseInputPin::~CBaseInputPin()
{
    if (m_pAllocator) {
        m_pAllocator->Release();
        m_pAllocator = nullptr;
    }
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (iid == IID_IMemInputPin)
        return GetInterface(static_cast<IMemInputPin*>(this), object);
    return CBasePin::NonDelegatingQueryInterface(iid, object);
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::GetAllocator(IMemAllocator** allocator)
{
    if (!allocator)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    if (!m_pAllocator) {
        HRESULT hr = CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                                      reinterpret_cast<void**>(&m_pAllocator));
        if (FAILED(hr))
            return hr;
    }
    *allocator = m_pAllocator;
    m_pAllocator->AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::NotifyAllocator(IMemAllocator* allocator, BOOL readOnly)
{
    if (!allocator)
        return E_POINTER;
    CAutoLock lock(m_pLock);
    allocator->AddRef();
    if (m_pAllocator)
        m_pAllocator->Release();
    m_pAllocator = allocator;
    m_bReadOnly = readOnly != FALSE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::GetAllocatorRequirements(ALLOCATOR_PROPERTIES* properties)
{
    return E_NOTIMPL;
}

HRESULT CBaseInputPin::CheckStreaming()
{
    if (!IsConnected())
        return VFW_E_NOT_CONNECTED;
    if (IsStopped())
        return VFW_E_WRONG_STATE;
    if (m_bFlushing)
        return S_FALSE;
    if (m_bRunTimeError)
        return VFW_E_RUNTIME_ERROR;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::Receive(IMediaSample* sample)
{
    if (!sample)
        return E_POINTER;
    HRESULT hr = CheckStreaming();
    if (hr != S_OK)
        return hr;
    // A sample may announce a new format; one the pin can't take ends the
    // stream with an error. The connection's type stays as it was: it is
    // read under the filter lock on other threads, and the transform works
    // on the geometry of its connection.
    AM_MEDIA_TYPE* changed = nullptr;
    if (sample->GetMediaType(&changed) == S_OK && changed) {
        CMediaType type(*changed);
        DeleteMediaType(changed);
        if (CheckMediaType(&type) != S_OK) {
            EndOfStream();
            m_bRunTimeError = true;
            m_pFilter->NotifyEvent(EC_ERRORABORT, VFW_E_TYPE_NOT_ACCEPTED, 0);
            return VFW_E_INVALIDMEDIATYPE;
        }
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::ReceiveMultiple(IMediaSample** samples, long count, long* processed)
{
    if (!samples || !processed)
        return E_POINTER;
    HRESULT hr = S_OK;
    *processed = 0;
    while (count-- > 0) {
        hr = Receive(samples[*processed]);
        if (hr != S_OK)
            break;
        ++*processed;
    }
    return hr;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::ReceiveCanBlock()
{
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::BeginFlush()
{
    CAutoLock lock(m_pLock);
    m_bFlushing = true;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::EndFlush()
{
    CAutoLock lock(m_pLock);
    m_bFlushing = false;
    m_bRunTimeError = false;
    return S_OK;
}

HRESULT CBaseInputPin::BreakConnect()
{
    if (m_pAllocator) {
        m_pAllocator->Decommit();
        m_pAllocator->Release();
        m_pAllocator = nullptr;
    }
    return S_OK;
}

HRESULT CBaseInputPin::Inactive()
{
    m_bRunTimeError = false;
    m_bFlushing = false;
    return m_pAllocator ? m_pAllocator->Decommit() : S_OK;
}

// ---------------------------------------------------------- CBaseOutputPin

CBaseOutputPin::CBaseOutputPin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result,
                               const wchar_t* name)
    : CBasePin(objectName, filter, lock, result, name, PINDIR_OUTPUT)
{
}

CBaseOutputPin::~CBaseOutputPin()
{
    if (m_pAllocator)
        m_pAllocator->Release();
    if (m_pInputPin)
        m_pInputPin->Release();
}

HRESULT CBaseOutputPin::CheckConnect(IPin* pin)
{
    HRESULT hr = CBasePin::CheckConnect(pin);
    if (FAILED(hr))
        return hr;
    if (m_pInputPin) {
        m_pInputPin->Release();
        m_pInputPin = nullptr;
    }
    hr = pin->QueryInterface(IID_IMemInputPin, reinterpret_cast<void**>(&m_pInputPin));
    if (FAILED(hr) || !m_pInputPin) {
        m_pInputPin = nullptr;
        return VFW_E_NO_TRANSPORT;
    }
    return S_OK;
}

HRESULT CBaseOutputPin::CompleteConnect(IPin* receivePin)
{
    return DecideAllocator(m_pInputPin, &m_pAllocator);
}

HRESULT CBaseOutputPin::BreakConnect()
{
    if (m_pAllocator) {
        m_pAllocator->Decommit();
        m_pAllocator->Release();
        m_pAllocator = nullptr;
    }
    if (m_pInputPin) {
        m_pInputPin->Release();
        m_pInputPin = nullptr;
    }
    return S_OK;
}

HRESULT CBaseOutputPin::DecideAllocator(IMemInputPin* pin, IMemAllocator** allocator)
{
    if (*allocator) {
        (*allocator)->Release();
        *allocator = nullptr;
    }
    ALLOCATOR_PROPERTIES properties = {};
    pin->GetAllocatorRequirements(&properties);
    if (properties.cbAlign == 0)
        properties.cbAlign = 1;

    HRESULT hr = pin->GetAllocator(allocator);
    if (SUCCEEDED(hr) && *allocator) {
        hr = DecideBufferSize(*allocator, &properties);
        if (SUCCEEDED(hr)) {
            hr = pin->NotifyAllocator(*allocator, FALSE);
            if (SUCCEEDED(hr))
                return S_OK;
        }
    }
    if (*allocator) {
        (*allocator)->Release();
        *allocator = nullptr;
    }

    hr = InitAllocator(allocator);
    if (SUCCEEDED(hr)) {
        hr = DecideBufferSize(*allocator, &properties);
        if (SUCCEEDED(hr)) {
            hr = pin->NotifyAllocator(*allocator, FALSE);
            if (SUCCEEDED(hr))
                return S_OK;
        }
    }
    if (*allocator) {
        (*allocator)->Release();
        *allocator = nullptr;
    }
    return hr;
}

HRESULT CBaseOutputPin::InitAllocator(IMemAllocator** allocator)
{
    return CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                            reinterpret_cast<void**>(allocator));
}

HRESULT CBaseOutputPin::Active()
{
    return m_pAllocator ? m_pAllocator->Commit() : VFW_E_NO_ALLOCATOR;
}

HRESULT CBaseOutputPin::Inactive()
{
    return m_pAllocator ? m_pAllocator->Decommit() : VFW_E_NO_ALLOCATOR;
}

HRESULT CBaseOutputPin::GetDeliveryBuffer(IMediaSample** sample, REFERENCE_TIME* start, REFERENCE_TIME* stop,
                                          DWORD flags)
{
    if (!m_pAllocator)
        return VFW_E_NO_ALLOCATOR;
    return m_pAllocator->GetBuffer(sample, start, stop, flags);
}

HRESULT CBaseOutputPin::Deliver(IMediaSample* sample)
{
    return m_pInputPin ? m_pInputPin->Receive(sample) : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverEndOfStream()
{
    return m_Connected ? m_Connected->EndOfStream() : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverBeginFlush()
{
    return m_Connected ? m_Connected->BeginFlush() : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverEndFlush()
{
    return m_Connected ? m_Connected->EndFlush() : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverNewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate)
{
    return m_Connected ? m_Connected->NewSegment(start, stop, rate) : VFW_E_NOT_CONNECTED;
}
