#include "tools/vmr7standin/renderer.h"

#include <uuids.h>

#include <cstdlib>

namespace vmr7standin {
// ------------------------------------------------------------- StandInPin

StandInPin::StandInPin(StandInRenderer* renderer, CCritSec* lock)
    : CBaseInputPin(L"VMR7 stand-in pin", renderer, lock, nullptr, L"VMR Input0"), renderer_(renderer)
{
}

HRESULT StandInPin::CheckMediaType(const CMediaType* type)
{
    // Any uncompressed or packed video picture with a bitmap header.
    if (type->majortype != MEDIATYPE_Video || type->formattype != FORMAT_VideoInfo || !type->pbFormat ||
        type->cbFormat < sizeof(VIDEOINFOHEADER))
        return VFW_E_TYPE_NOT_ACCEPTED;
    return S_OK;
}

HRESULT StandInPin::Active()
{
    renderer_->framesReceived_ = 0;
    return CBaseInputPin::Active();
}

HRESULT STDMETHODCALLTYPE StandInPin::Receive(IMediaSample* sample)
{
    HRESULT hr = CBaseInputPin::Receive(sample);
    if (hr != S_OK)
        return hr;
    ++renderer_->framesReceived_;
    return S_OK;
}

// -------------------------------------------------------- StandInRenderer

StandInRenderer::StandInRenderer(IUnknown* owner)
    : CBaseFilter(L"VMR7 stand-in", owner, &filterLock_, CLSID_VideoMixingRenderer), pin_(this, &filterLock_)
{
}

HRESULT STDMETHODCALLTYPE StandInRenderer::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (iid == IID_IVMRFilterConfig)
        return GetInterface(static_cast<IVMRFilterConfig*>(this), object);
    if (iid == IID_IVMRWindowlessControl)
        return GetInterface(static_cast<IVMRWindowlessControl*>(this), object);
    if (iid == IID_IQualProp)
        return GetInterface(static_cast<IQualProp*>(this), object);
    return CBaseFilter::NonDelegatingQueryInterface(iid, object);
}

HRESULT STDMETHODCALLTYPE StandInRenderer::SetRenderingMode(DWORD mode)
{
    if (mode != VMRMode_Windowed && mode != VMRMode_Windowless)
        return E_INVALIDARG;
    renderingMode_ = mode;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE StandInRenderer::GetNativeVideoSize(LONG* width, LONG* height, LONG* aspectWidth,
                                                              LONG* aspectHeight)
{
    if (!pin_.IsConnected())
        return VFW_E_NOT_CONNECTED;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(pin_.CurrentMediaType().pbFormat);
    LONG w = info->bmiHeader.biWidth, h = std::abs(info->bmiHeader.biHeight);
    if (width)
        *width = w;
    if (height)
        *height = h;
    if (aspectWidth)
        *aspectWidth = w;
    if (aspectHeight)
        *aspectHeight = h;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE StandInRenderer::SetVideoPosition(const LPRECT source, const LPRECT destination)
{
    if (source)
        source_ = *source;
    if (destination)
        destination_ = *destination;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE StandInRenderer::GetVideoPosition(LPRECT source, LPRECT destination)
{
    if (source)
        *source = source_;
    if (destination)
        *destination = destination_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE StandInRenderer::SetAspectRatioMode(DWORD mode)
{
    aspectRatioMode_ = mode;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE StandInRenderer::SetVideoClippingWindow(HWND window)
{
    if (window && !IsWindow(window))
        return E_INVALIDARG;
    clippingWindow_ = window;
    return S_OK;
}

}  // namespace vmr7standin
