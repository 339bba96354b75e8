#include "filters/transform_filter.h"

#include <new>

// ----------------------------------------------------------- CTransformPin

template <class PinBase, PIN_DIRECTION Direction>
CTransformPin<PinBase, Direction>::CTransformPin(const wchar_t* objectName, CTransformFilter* filter, HRESULT* result,
                                                 const wchar_t* name)
    : PinBase(objectName, filter, &filter->filterLock_, result, name), transform_(filter)
{
}

template <class PinBase, PIN_DIRECTION Direction>
HRESULT CTransformPin<PinBase, Direction>::CheckConnect(IPin* pin)
{
    HRESULT hr = transform_->CheckConnect(Direction, pin);
    return FAILED(hr) ? hr : PinBase::CheckConnect(pin);
}

template <class PinBase, PIN_DIRECTION Direction>
HRESULT CTransformPin<PinBase, Direction>::BreakConnect()
{
    transform_->BreakConnect(Direction);
    return PinBase::BreakConnect();
}

template <class PinBase, PIN_DIRECTION Direction>
HRESULT CTransformPin<PinBase, Direction>::CompleteConnect(IPin* receivePin)
{
    HRESULT hr = transform_->CompleteConnect(Direction, receivePin);
    return FAILED(hr) ? hr : PinBase::CompleteConnect(receivePin);
}

template <class PinBase, PIN_DIRECTION Direction>
HRESULT CTransformPin<PinBase, Direction>::SetMediaType(const CMediaType* type)
{
    HRESULT hr = PinBase::SetMediaType(type);
    return FAILED(hr) ? hr : transform_->SetMediaType(Direction, type);
}

template class CTransformPin<CBaseInputPin, PINDIR_INPUT>;
template class CTransformPin<CBaseOutputPin, PINDIR_OUTPUT>;

// ------------------------------------------------------ CTransformInputPin

HRESULT CTransformInputPin::CheckMediaType(const CMediaType* type)
{
    HRESULT hr = transform_->CheckInputType(type);
    if (hr != S_OK)
        return hr;
    // With the output already connected the pair has to agree.
    if (transform_->IsOutputConnected())
        return transform_->CheckTransform(type, &transform_->output_->MediaType());
    return S_OK;
}

HRESULT CTransformInputPin::CheckStreaming()
{
    if (!transform_->IsOutputConnected())
        return VFW_E_NOT_CONNECTED;
    return CBaseInputPin::CheckStreaming();
}

HRESULT STDMETHODCALLTYPE CTransformInputPin::Receive(IMediaSample* sample)
{
    CAutoLock lock(&transform_->receiveLock_);
    HRESULT hr = CBaseInputPin::Receive(sample);
    if (hr != S_OK)
        return hr;
    return transform_->Receive(sample);
}

HRESULT STDMETHODCALLTYPE CTransformInputPin::EndOfStream()
{
    CAutoLock lock(&transform_->receiveLock_);
    HRESULT hr = CheckStreaming();
    if (hr != S_OK)
        return hr;
    return transform_->EndOfStream();
}

HRESULT STDMETHODCALLTYPE CTransformInputPin::BeginFlush()
{
    CAutoLock lock(&transform_->filterLock_);
    if (!IsConnected() || !transform_->IsOutputConnected())
        return VFW_E_NOT_CONNECTED;
    HRESULT hr = CBaseInputPin::BeginFlush();
    if (FAILED(hr))
        return hr;
    return transform_->BeginFlush();
}

HRESULT STDMETHODCALLTYPE CTransformInputPin::EndFlush()
{
    CAutoLock lock(&transform_->filterLock_);
    if (!IsConnected() || !transform_->IsOutputConnected())
        return VFW_E_NOT_CONNECTED;
    HRESULT hr = transform_->EndFlush();
    if (FAILED(hr))
        return hr;
    return CBaseInputPin::EndFlush();
}

HRESULT STDMETHODCALLTYPE CTransformInputPin::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate)
{
    CBasePin::NewSegment(start, stop, rate);
    return transform_->NewSegment(start, stop, rate);
}

// ----------------------------------------------------- CTransformOutputPin

HRESULT CTransformOutputPin::CheckConnect(IPin* pin)
{
    // The output type is derived from the input's, so the input comes first.
    if (!transform_->IsInputConnected())
        return E_UNEXPECTED;
    return CTransformPin::CheckConnect(pin);
}

HRESULT CTransformOutputPin::CheckMediaType(const CMediaType* type)
{
    if (!transform_->IsInputConnected())
        return E_INVALIDARG;
    return transform_->CheckTransform(&transform_->input_->MediaType(), type);
}

HRESULT CTransformOutputPin::GetMediaType(int position, CMediaType* type)
{
    if (!transform_->IsInputConnected())
        return VFW_S_NO_MORE_ITEMS;
    return transform_->GetMediaType(position, type);
}

HRESULT CTransformOutputPin::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    return transform_->DecideBufferSize(allocator, properties);
}

// -------------------------------------------------------- CTransformFilter

CTransformFilter::CTransformFilter(const wchar_t* name, IUnknown* owner, REFCLSID clsid)
    : CBaseFilter(name, owner, &filterLock_, clsid)
{
}

CTransformFilter::~CTransformFilter()
{
    delete input_;
    delete output_;
}

CBasePin* CTransformFilter::GetPin(int n)
{
    // Both pins are made together on first demand.
    if (!input_) {
        HRESULT hr = S_OK;
        input_ = new (std::nothrow) CTransformInputPin(L"Transform input pin", this, &hr, L"XForm In");
        if (!input_)
            return nullptr;
        output_ = new (std::nothrow) CTransformOutputPin(L"Transform output pin", this, &hr, L"XForm Out");
        if (!output_) {
            delete input_;
            input_ = nullptr;
            return nullptr;
        }
    }
    if (n == 0)
        return input_;
    if (n == 1)
        return output_;
    return nullptr;
}

HRESULT STDMETHODCALLTYPE CTransformFilter::Stop()
{
    CAutoLock lock(&filterLock_);
    if (state_ == State_Stopped)
        return S_OK;
    if (!IsInputConnected() || !IsOutputConnected()) {
        state_ = State_Stopped;
        endOfStreamDelivered_ = false;
        return S_OK;
    }
    // Decommitting the input's allocator first releases a streaming thread
    // that waits for a buffer; the receive lock then waits for one that is
    // inside Transform.
    input_->Inactive();
    CAutoLock receiveLock(&receiveLock_);
    output_->Inactive();
    HRESULT hr = StopStreaming();
    if (SUCCEEDED(hr)) {
        state_ = State_Stopped;
        endOfStreamDelivered_ = false;
    }
    return hr;
}

HRESULT STDMETHODCALLTYPE CTransformFilter::Pause()
{
    CAutoLock lock(&filterLock_);
    HRESULT hr = S_OK;
    if (state_ == State_Paused)
        return S_OK;
    if (!IsInputConnected()) {
        // Nothing will come in: tell downstream at once that nothing will
        // come out either.
        if (IsOutputConnected() && !endOfStreamDelivered_) {
            output_->DeliverEndOfStream();
            endOfStreamDelivered_ = true;
        }
    } else if (!IsOutputConnected()) {
        // Nowhere to deliver: samples are refused by the input pin.
    } else if (state_ == State_Stopped) {
        CAutoLock receiveLock(&receiveLock_);
        hr = StartStreaming();
    }
    if (SUCCEEDED(hr)) {
        if (state_ == State_Stopped) {
            sampleSkipped_ = false;
            skippedSamples_ = 0;
        }
        hr = CBaseFilter::Pause();
    }
    return hr;
}

HRESULT CTransformFilter::Receive(IMediaSample* sample)
{
    IMediaSample* out = nullptr;
    HRESULT hr = output_->GetDeliveryBuffer(&out, nullptr, nullptr, 0);
    if (FAILED(hr))
        return hr;
    InitializeOutputSample(sample, out);
    hr = Transform(sample, out);
    if (hr == S_OK) {
        if (sampleSkipped_) {
            out->SetDiscontinuity(TRUE);
            sampleSkipped_ = false;
        }
        hr = output_->Deliver(out);
    } else if (hr == S_FALSE) {
        // Not an error: the frame is dropped on purpose.
        sampleSkipped_ = true;
        InterlockedIncrement(&skippedSamples_);
        hr = S_OK;
    } else if (FAILED(hr)) {
        // Told once: the input refuses further samples until the filter
        // stops.
        input_->SetRunTimeError();
        NotifyEvent(EC_ERRORABORT, hr, 0);
    }
    out->Release();
    return hr;
}

void CTransformFilter::InitializeOutputSample(IMediaSample* in, IMediaSample* out)
{
    // A fresh sample from the allocator carries nothing: it gets the input's
    // times and flags, which Transform may then change.
    REFERENCE_TIME start = 0, stop = 0;
    HRESULT timed = in->GetTime(&start, &stop);
    if (timed == S_OK)
        out->SetTime(&start, &stop);
    else if (timed == VFW_S_NO_STOP_TIME)
        out->SetTime(&start, nullptr);
    LONGLONG mediaStart = 0, mediaStop = 0;
    if (in->GetMediaTime(&mediaStart, &mediaStop) == S_OK)
        out->SetMediaTime(&mediaStart, &mediaStop);
    out->SetSyncPoint(in->IsSyncPoint() == S_OK);
    out->SetPreroll(in->IsPreroll() == S_OK);
    out->SetDiscontinuity(in->IsDiscontinuity() == S_OK || sampleSkipped_);
}

HRESULT CTransformFilter::EndOfStream()
{
    return output_->DeliverEndOfStream();
}

HRESULT CTransformFilter::BeginFlush()
{
    return output_->DeliverBeginFlush();
}

HRESULT CTransformFilter::EndFlush()
{
    return output_->DeliverEndFlush();
}

HRESULT CTransformFilter::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate)
{
    return output_->DeliverNewSegment(start, stop, rate);
}
