// A stand-in for VMR7 in a test prefix: a renderer that draws nothing and
// counts the frames it receives. This platform's VMR7 offers no IQualProp,
// so its frames-drawn count can't be had; registered under VMR7's class id
// for the tests that need the count, this renderer gives the program the
// three interfaces it uses of VMR7, and IQualProp reports what arrived.
#pragma once

#include "filters/base_classes.h"

#include <atomic>
#include <type_traits>

namespace vmr7standin {

// A value through an out pointer, as the interfaces' getters give it.
template <class Value>
HRESULT Give(Value* out, std::type_identity_t<Value> value)
{
    if (!out)
        return E_POINTER;
    *out = value;
    return S_OK;
}

class StandInRenderer;

class StandInPin : public CBaseInputPin {
public:
    StandInPin(StandInRenderer* renderer, CCritSec* lock);
    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    // A run from stopped counts afresh, as the real renderer's statistics do.
    HRESULT Active() override;

private:
    StandInRenderer* renderer_;
};

class StandInRenderer : public CBaseFilter, public IVMRFilterConfig, public IVMRWindowlessControl, public IQualProp {
public:
    explicit StandInRenderer(IUnknown* owner);

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? &pin_ : nullptr; }

    // IVMRFilterConfig
    HRESULT STDMETHODCALLTYPE SetImageCompositor(IVMRImageCompositor* compositor) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetNumberOfStreams(DWORD streams) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNumberOfStreams(DWORD* streams) override { return Give(streams, 1); }
    HRESULT STDMETHODCALLTYPE SetRenderingPrefs(DWORD flags) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetRenderingPrefs(DWORD* flags) override { return Give(flags, 0); }
    HRESULT STDMETHODCALLTYPE SetRenderingMode(DWORD mode) override;
    HRESULT STDMETHODCALLTYPE GetRenderingMode(DWORD* mode) override { return Give(mode, renderingMode_); }
    // IVMRWindowlessControl
    HRESULT STDMETHODCALLTYPE GetNativeVideoSize(LONG* width, LONG* height, LONG* aspectWidth,
                                                 LONG* aspectHeight) override;
    HRESULT STDMETHODCALLTYPE GetMinIdealVideoSize(LONG* width, LONG* height) override
    {
        return GetNativeVideoSize(width, height, nullptr, nullptr);
    }
    HRESULT STDMETHODCALLTYPE GetMaxIdealVideoSize(LONG* width, LONG* height) override
    {
        return GetNativeVideoSize(width, height, nullptr, nullptr);
    }
    HRESULT STDMETHODCALLTYPE SetVideoPosition(const LPRECT source, const LPRECT destination) override;
    HRESULT STDMETHODCALLTYPE GetVideoPosition(LPRECT source, LPRECT destination) override;
    HRESULT STDMETHODCALLTYPE GetAspectRatioMode(DWORD* mode) override { return Give(mode, aspectRatioMode_); }
    HRESULT STDMETHODCALLTYPE SetAspectRatioMode(DWORD mode) override;
    HRESULT STDMETHODCALLTYPE SetVideoClippingWindow(HWND window) override;
    HRESULT STDMETHODCALLTYPE RepaintVideo(HWND window, HDC dc) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DisplayModeChanged() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetCurrentImage(BYTE** image) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetBorderColor(COLORREF color) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetBorderColor(COLORREF* color) override { return Give(color, 0); }
    HRESULT STDMETHODCALLTYPE SetColorKey(COLORREF color) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetColorKey(COLORREF* color) override { return Give(color, 0); }
    // IQualProp
    HRESULT STDMETHODCALLTYPE get_FramesDroppedInRenderer(int* frames) override { return Give(frames, 0); }
    HRESULT STDMETHODCALLTYPE get_FramesDrawn(int* frames) override { return Give(frames, framesReceived_); }
    HRESULT STDMETHODCALLTYPE get_AvgFrameRate(int* rate) override { return Give(rate, 0); }
    HRESULT STDMETHODCALLTYPE get_Jitter(int* jitter) override { return Give(jitter, 0); }
    HRESULT STDMETHODCALLTYPE get_AvgSyncOffset(int* offset) override { return Give(offset, 0); }
    HRESULT STDMETHODCALLTYPE get_DevSyncOffset(int* offset) override { return Give(offset, 0); }

private:
    friend class StandInPin;
    CCritSec filterLock_;
    StandInPin pin_;
    std::atomic<int> framesReceived_{0};
    DWORD renderingMode_ = VMRMode_Windowed;
    DWORD aspectRatioMode_ = VMR_ARMODE_NONE;
    HWND clippingWindow_ = nullptr;
    RECT source_{};
    RECT destination_{};
};

}  // namespace vmr7standin
