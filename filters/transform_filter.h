// The copying transform: one input pin "XForm In", one output pin
// "XForm Out", and for each input sample one output sample from the output
// pin's allocator, handed to Transform. A Transform result of S_FALSE
// drops the output sample; the next one delivered is marked as a
// discontinuity.
#pragma once

#include "filters/base_classes.h"

class CTransformFilter;

// What both pins of a transform do alike: each connection step is put to
// the filter, with the pin's direction, before the base pin takes it, and
// the agreed type is passed on to the filter.
template <class PinBase, PIN_DIRECTION Direction>
class CTransformPin : public PinBase {
public:
    CTransformPin(const wchar_t* objectName, CTransformFilter* filter, HRESULT* result, const wchar_t* name);

    HRESULT CheckConnect(IPin* pin) override;
    HRESULT BreakConnect() override;
    HRESULT CompleteConnect(IPin* receivePin) override;
    HRESULT SetMediaType(const CMediaType* type) override;

    const CMediaType& MediaType() const { return this->mediaType_; }

protected:
    CTransformFilter* transform_;
};

// Both are compiled once, in transform_filter.cpp, where the filter they
// call is complete.
extern template class CTransformPin<CBaseInputPin, PINDIR_INPUT>;
extern template class CTransformPin<CBaseOutputPin, PINDIR_OUTPUT>;

class CTransformInputPin : public CTransformPin<CBaseInputPin, PINDIR_INPUT> {
public:
    using CTransformPin::CTransformPin;

    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT CheckStreaming() override;

    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) override;

    void SetRunTimeError() { runTimeError_ = true; }
};

class CTransformOutputPin : public CTransformPin<CBaseOutputPin, PINDIR_OUTPUT> {
public:
    using CTransformPin::CTransformPin;

    HRESULT CheckConnect(IPin* pin) override;
    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
};

class CTransformFilter : public CBaseFilter {
public:
    CTransformFilter(const wchar_t* name, IUnknown* owner, REFCLSID clsid);
    ~CTransformFilter() override;

    int GetPinCount() override { return 2; }
    CBasePin* GetPin(int n) override;
    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;

    // What a transform supplies.
    virtual HRESULT Transform(IMediaSample* in, IMediaSample* out) = 0;
    virtual HRESULT CheckInputType(const CMediaType* in) = 0;
    virtual HRESULT CheckTransform(const CMediaType* in, const CMediaType* out) = 0;
    virtual HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) = 0;
    virtual HRESULT GetMediaType(int position, CMediaType* type) = 0;

    // Hooks with no action by default.
    virtual HRESULT StartStreaming() { return S_OK; }
    virtual HRESULT StopStreaming() { return S_OK; }
    virtual HRESULT AlterQuality(Quality quality) { return S_FALSE; }
    virtual HRESULT SetMediaType(PIN_DIRECTION direction, const CMediaType* type) { return S_OK; }
    virtual HRESULT CheckConnect(PIN_DIRECTION direction, IPin* pin) { return S_OK; }
    virtual HRESULT BreakConnect(PIN_DIRECTION direction) { return S_OK; }
    virtual HRESULT CompleteConnect(PIN_DIRECTION direction, IPin* receivePin) { return S_OK; }

    // The streaming path, reached from the input pin.
    virtual HRESULT Receive(IMediaSample* sample);
    virtual HRESULT EndOfStream();
    virtual HRESULT BeginFlush();
    virtual HRESULT EndFlush();
    virtual HRESULT NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate);

    CTransformInputPin* InputPin() { return static_cast<CTransformInputPin*>(GetPin(0)); }
    CTransformOutputPin* OutputPin() { return static_cast<CTransformOutputPin*>(GetPin(1)); }
    // Frames dropped by Transform since the last Pause from stopped.
    LONG SkippedSamples() const { return skippedSamples_; }

protected:
    template <class PinBase, PIN_DIRECTION Direction>
    friend class CTransformPin;
    friend class CTransformInputPin;
    friend class CTransformOutputPin;

    bool IsInputConnected() const { return input_ && input_->IsConnected(); }
    bool IsOutputConnected() const { return output_ && output_->IsConnected(); }

    // Gives the fresh output sample the input's times and flags.
    void InitializeOutputSample(IMediaSample* in, IMediaSample* out);

    CCritSec filterLock_;
    CCritSec receiveLock_;
    CTransformInputPin* input_ = nullptr;
    CTransformOutputPin* output_ = nullptr;
    bool endOfStreamDelivered_ = false;
    bool sampleSkipped_ = false;
    volatile LONG skippedSamples_ = 0;
};
