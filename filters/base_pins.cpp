#include "filters/base_classes.h"

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

// Ends a connection's use of its allocator: its buffers are freed and the
// pin no longer holds it.
void DropAllocator(IMemAllocator*& allocator)
{
    if (allocator) {
        allocator->Decommit();
        ReleaseInterface(allocator);
    }
}

}  // namespace

// ---------------------------------------------------------------- CBasePin

CBasePin::CBasePin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result,
                   const wchar_t* name, PIN_DIRECTION direction)
    : CUnknown(objectName, nullptr), name_(CopyName(name)), direction_(direction), lock_(lock), filter_(filter)
{
}

CBasePin::~CBasePin()
{
    ReleaseInterface(connected_);
    delete[] name_;
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
    return filter_->AddRef();
}

ULONG STDMETHODCALLTYPE CBasePin::NonDelegatingRelease()
{
    return filter_->Release();
}

HRESULT STDMETHODCALLTYPE CBasePin::Connect(IPin* receivePin, const AM_MEDIA_TYPE* type)
{
    if (!receivePin)
        return E_POINTER;
    CAutoLock lock(lock_);
    HRESULT hr = CanConnect();
    if (FAILED(hr))
        return hr;
    CMediaType wanted;
    if (type)
        wanted = *type;
    hr = AgreeMediaType(receivePin, &wanted);
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
        bool theirs = (attempt == 0) != tryMyTypesFirst_;
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

HRESULT CBasePin::CanConnect() const
{
    if (connected_)
        return VFW_E_ALREADY_CONNECTED;
    if (!IsStopped())
        return VFW_E_NOT_STOPPED;
    return S_OK;
}

HRESULT CBasePin::CheckConnection(IPin* pin, const CMediaType* type)
{
    HRESULT hr = CheckConnect(pin);
    if (FAILED(hr)) {
        BreakConnect();
        return hr;
    }
    hr = CheckMediaType(type);
    if (hr != S_OK) {
        BreakConnect();
        return SUCCEEDED(hr) ? VFW_E_TYPE_NOT_ACCEPTED : hr;
    }
    return S_OK;
}

HRESULT CBasePin::AttemptConnection(IPin* receivePin, const CMediaType* type)
{
    HRESULT hr = CheckConnection(receivePin, type);
    if (FAILED(hr))
        return hr;
    connected_ = receivePin;
    connected_->AddRef();
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
    ReleaseInterface(connected_);
    return FAILED(hr) ? hr : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT STDMETHODCALLTYPE CBasePin::ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type)
{
    if (!connector || !type)
        return E_POINTER;
    CAutoLock lock(lock_);
    HRESULT hr = CanConnect();
    if (FAILED(hr))
        return hr;
    CMediaType offered(*type);
    hr = CheckConnection(connector, &offered);
    if (FAILED(hr))
        return hr;
    connected_ = connector;
    connected_->AddRef();
    hr = SetMediaType(&offered);
    if (SUCCEEDED(hr)) {
        hr = CompleteConnect(connector);
        if (SUCCEEDED(hr))
            return S_OK;
    }
    ReleaseInterface(connected_);
    BreakConnect();
    return hr;
}

HRESULT STDMETHODCALLTYPE CBasePin::Disconnect()
{
    CAutoLock lock(lock_);
    if (!IsStopped())
        return VFW_E_NOT_STOPPED;
    return DisconnectInternal();
}

HRESULT CBasePin::DisconnectInternal()
{
    if (!connected_)
        return S_FALSE;
    HRESULT hr = BreakConnect();
    if (FAILED(hr))
        return hr;
    ReleaseInterface(connected_);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::ConnectedTo(IPin** pin)
{
    if (!pin)
        return E_POINTER;
    HandOutInterface(connected_, pin);
    return connected_ ? S_OK : VFW_E_NOT_CONNECTED;
}

HRESULT STDMETHODCALLTYPE CBasePin::ConnectionMediaType(AM_MEDIA_TYPE* type)
{
    if (!type)
        return E_POINTER;
    CAutoLock lock(lock_);
    if (!connected_) {
        CMediaType empty;
        *type = empty;
        type->pbFormat = nullptr;
        type->cbFormat = 0;
        return VFW_E_NOT_CONNECTED;
    }
    return CopyMediaType(type, &mediaType_);
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryPinInfo(PIN_INFO* info)
{
    if (!info)
        return E_POINTER;
    info->pFilter = filter_;
    filter_->AddRef();
    info->achName[0] = L'\0';
    if (name_) {
        std::wcsncpy(info->achName, name_, MAX_PIN_NAME - 1);
        info->achName[MAX_PIN_NAME - 1] = L'\0';
    }
    info->dir = direction_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryDirection(PIN_DIRECTION* direction)
{
    if (!direction)
        return E_POINTER;
    *direction = direction_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::QueryId(LPWSTR* id)
{
    if (!id)
        return E_POINTER;
    const wchar_t* name = name_ ? name_ : L"";
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
    segmentStart_ = start;
    segmentStop_ = stop;
    segmentRate_ = rate;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBasePin::Notify(IBaseFilter* sender, Quality quality)
{
    return qualitySink_ ? qualitySink_->Notify(filter_, quality) : E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE CBasePin::SetSink(IQualityControl* sink)
{
    qualitySink_ = sink;
    return S_OK;
}

HRESULT CBasePin::SetMediaType(const CMediaType* type)
{
    return mediaType_.Set(*type);
}

HRESULT CBasePin::CheckConnect(IPin* pin)
{
    PIN_DIRECTION direction;
    HRESULT hr = pin->QueryDirection(&direction);
    if (FAILED(hr))
        return hr;
    return direction == direction_ ? VFW_E_INVALID_DIRECTION : S_OK;
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
    ReleaseInterface(allocator_);
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
    CAutoLock lock(lock_);
    if (!allocator_) {
        HRESULT hr = CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                                      reinterpret_cast<void**>(&allocator_));
        if (FAILED(hr))
            return hr;
    }
    HandOutInterface(allocator_, allocator);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::NotifyAllocator(IMemAllocator* allocator, BOOL readOnly)
{
    if (!allocator)
        return E_POINTER;
    CAutoLock lock(lock_);
    ReplaceInterface(allocator_, allocator);
    readOnly_ = readOnly != FALSE;
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
    if (flushing_)
        return S_FALSE;
    if (runTimeError_)
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
            runTimeError_ = true;
            filter_->NotifyEvent(EC_ERRORABORT, VFW_E_TYPE_NOT_ACCEPTED, 0);
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
    CAutoLock lock(lock_);
    flushing_ = true;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CBaseInputPin::EndFlush()
{
    CAutoLock lock(lock_);
    flushing_ = false;
    runTimeError_ = false;
    return S_OK;
}

HRESULT CBaseInputPin::BreakConnect()
{
    DropAllocator(allocator_);
    return S_OK;
}

HRESULT CBaseInputPin::Inactive()
{
    runTimeError_ = false;
    flushing_ = false;
    return allocator_ ? allocator_->Decommit() : S_OK;
}

// ---------------------------------------------------------- CBaseOutputPin

CBaseOutputPin::CBaseOutputPin(const wchar_t* objectName, CBaseFilter* filter, CCritSec* lock, HRESULT* result,
                               const wchar_t* name)
    : CBasePin(objectName, filter, lock, result, name, PINDIR_OUTPUT)
{
}

CBaseOutputPin::~CBaseOutputPin()
{
    ReleaseInterface(allocator_);
    ReleaseInterface(inputPin_);
}

HRESULT CBaseOutputPin::CheckConnect(IPin* pin)
{
    HRESULT hr = CBasePin::CheckConnect(pin);
    if (FAILED(hr))
        return hr;
    ReleaseInterface(inputPin_);
    hr = pin->QueryInterface(IID_IMemInputPin, reinterpret_cast<void**>(&inputPin_));
    if (FAILED(hr) || !inputPin_) {
        inputPin_ = nullptr;
        return VFW_E_NO_TRANSPORT;
    }
    return S_OK;
}

HRESULT CBaseOutputPin::CompleteConnect(IPin* receivePin)
{
    return DecideAllocator(inputPin_, &allocator_);
}

HRESULT CBaseOutputPin::BreakConnect()
{
    DropAllocator(allocator_);
    ReleaseInterface(inputPin_);
    return S_OK;
}

HRESULT CBaseOutputPin::DecideAllocator(IMemInputPin* pin, IMemAllocator** allocator)
{
    ReleaseInterface(*allocator);
    ALLOCATOR_PROPERTIES properties = {};
    pin->GetAllocatorRequirements(&properties);
    if (properties.cbAlign == 0)
        properties.cbAlign = 1;

    HRESULT hr = pin->GetAllocator(allocator);
    if (SUCCEEDED(hr) && *allocator && SUCCEEDED(SettleAllocator(pin, allocator, &properties)))
        return S_OK;
    ReleaseInterface(*allocator);

    hr = InitAllocator(allocator);
    if (SUCCEEDED(hr))
        return SettleAllocator(pin, allocator, &properties);
    ReleaseInterface(*allocator);
    return hr;
}

HRESULT CBaseOutputPin::SettleAllocator(IMemInputPin* pin, IMemAllocator** allocator,
                                        ALLOCATOR_PROPERTIES* properties)
{
    HRESULT hr = DecideBufferSize(*allocator, properties);
    if (SUCCEEDED(hr)) {
        hr = pin->NotifyAllocator(*allocator, FALSE);
        if (SUCCEEDED(hr))
            return S_OK;
    }
    ReleaseInterface(*allocator);
    return hr;
}

HRESULT CBaseOutputPin::InitAllocator(IMemAllocator** allocator)
{
    return CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                            reinterpret_cast<void**>(allocator));
}

HRESULT CBaseOutputPin::Active()
{
    return allocator_ ? allocator_->Commit() : VFW_E_NO_ALLOCATOR;
}

HRESULT CBaseOutputPin::Inactive()
{
    return allocator_ ? allocator_->Decommit() : VFW_E_NO_ALLOCATOR;
}

HRESULT CBaseOutputPin::GetDeliveryBuffer(IMediaSample** sample, REFERENCE_TIME* start, REFERENCE_TIME* stop,
                                          DWORD flags)
{
    if (!allocator_)
        return VFW_E_NO_ALLOCATOR;
    return allocator_->GetBuffer(sample, start, stop, flags);
}

HRESULT CBaseOutputPin::Deliver(IMediaSample* sample)
{
    return inputPin_ ? inputPin_->Receive(sample) : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverEndOfStream()
{
    return connected_ ? connected_->EndOfStream() : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverBeginFlush()
{
    return connected_ ? connected_->BeginFlush() : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverEndFlush()
{
    return connected_ ? connected_->EndFlush() : VFW_E_NOT_CONNECTED;
}

HRESULT CBaseOutputPin::DeliverNewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate)
{
    return connected_ ? connected_->NewSegment(start, stop, rate) : VFW_E_NOT_CONNECTED;
}
