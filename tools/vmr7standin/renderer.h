// A stand-in for VMR7 in a test prefix: a renderer that draws nothing and
// counts the frames it receives. This platform's VMR7 offers no IQualProp,
// so its frames-drawn count can't be had; registered under VMR7's class id
// for the tests that need the count, this renderer gives the program the
// three interfaces it uses of VMR7, and IQualProp reports what arrived.
#pragma once

#include "filters/base_classes.h"

#include <atomic>

namespace vmr7standin {

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
    HRESULT STDMETHODCALLTYPE SetImageCompositor(IVMRImageCompositor* compositor) override;
    HRESULT STDMETHODCALLTYPE SetNumberOfStreams(DWORD streams) override;
    HRESULT STDMETHODCALLTYPE GetNumberOfStreams(DWORD* streams) override;
    HRESULT STDMETHODCALLTYPE SetRenderingPrefs(DWORD flags) override;
    HRESULT STDMETHODCALLTYPE GetRenderingPrefs(DWORD* flags) override;
    HRESULT STDMETHODCALLTYPE SetRenderingMode(DWORD mode) override;
    HRESULT STDMETHODCALLTYPE GetRenderingMode(DWORD* mode) override;
    // IVMRWindowlessControl
    HRESULT STDMETHODCALLTYPE GetNativeVideoSize(LONG* width, LONG* height, LONG* aspectWidth,
                                                 LONG* aspectHeight) override;
    HRESULT STDMETHODCALLTYPE GetMinIdealVideoSize(LONG* width, LONG* height) override;
    HRESULT STDMETHODCALLTYPE GetMaxIdealVideoSize(LONG* width, LONG* height) override;
    HRESULT STDMETHODCALLTYPE SetVideoPosition(const LPRECT source, const LPRECT destination) override;
    HRESULT STDMETHODCALLTYPE GetVideoPosition(LPRECT source, LPRECT destination) override;
    HRESULT STDMETHODCALLTYPE GetAspectRatioMode(DWORD* mode) override;
    HRESULT STDMETHODCALLTYPE SetAspectRatioMode(DWORD mode) override;
    HRESULT STDMETHODCALLTYPE SetVideoClippingWindow(HWND window) override;
    HRESULT STDMETHODCALLTYPE RepaintVideo(HWND window, HDC dc) override;
    HRESULT STDMETHODCALLTYPE DisplayModeChanged() override;
    HRESULT STDMETHODCALLTYPE GetCurrentImage(BYTE** image) override;
    HRESULT STDMETHODCALLTYPE SetBorderColor(COLORREF color) override;
    HRESULT STDMETHODCALLTYPE GetBorderColor(COLORREF* color) override;
    HRESULT STDMETHODCALLTYPE SetColorKey(COLORREF color) override;
    HRESULT STDMETHODCALLTYPE GetColorKey(COLORREF* color) override;
    // IQualProp
    HRESULT STDMETHODCALLTYPE get_FramesDroppedInRenderer(int* frames) override;
    HRESULT STDMETHODCALLTYPE get_FramesDrawn(int* frames) override;
    HRESULT STDMETHODCALLTYPE get_AvgFrameRate(int* rate) override;
    HRESULT STDMETHODCALLTYPE get_Jitter(int* jitter) override;
    HRESULT STDMETHODCALLTYPE get_AvgSyncOffset(int* offset) override;
    HRESULT STDMETHODCALLTYPE get_DevSyncOffset(int* offset) override;

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
