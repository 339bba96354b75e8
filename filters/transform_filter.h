// The copying transform: one input pin "XForm In", one output pin
// "XForm Out", and for each input sample one output sample from the output
// pin's allocator, handed to Transform. A Transform result of S_FALSE
// drops the output sample; the next one delivered is marked as a
// discontinuity.
#pragma once

#include "filters/base_pins.h"

class CTransformFilter;

class CTransformInputPin : public CBaseInputPin {
public:
    CTransformInputPin(const wchar_t* objectName, CTransformFilter* filter, HRESULT* result, const wchar_t* name);

    HRESULT CheckConnect(IPin* pin) override;
    HRESULT BreakConnect() override;
    HRESULT CompleteConnect(IPin* receivePin) override;
    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT SetMediaType(const CMediaType* type) override;
    HRESULT CheckStreaming() override;

    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) override;

    const CMediaType& MediaType() const { return mediaType_; }
    void SetRunTimeError() { runTimeError_ = true; }

private:
    CTransformFilter* transform_;
};

class CTransformOutputPin : public CBaseOutputPin {
public:
    CTransformOutputPin(const wchar_t* objectName, CTransformFilter* filter, HRESULT* result, const wchar_t* name);

    HRESULT CheckConnect(IPin* pin) override;
    HRESULT BreakConnect() override;
    HRESULT CompleteConnect(IPin* receivePin) override;
    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT SetMediaType(const CMediaType* type) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;

    const CMediaType& MediaType() const { return mediaType_; }

private:
    CTransformFilter* transform_;
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
    friend class CTransformInputPin;
    friend class CTransformOutputPin;

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
