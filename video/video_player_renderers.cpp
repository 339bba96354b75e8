// VideoPlayer: the renderer a camera start asks for, and the size of the
// picture on the screen, which is set only through the renderer's
// destination rectangle.
#include "video/video_player.h"

#include <mfidl.h>

#include <cstdlib>
#include <vector>

#include "base/platform_guids.h"
#include "base/report.h"
#include "video/frame_size.h"

namespace {

// Renderers draw two pixels in and one pixel down in the clipping window.
RECT Bordered(const RECT& rectangle)
{
    return {rectangle.left + 2, rectangle.top + 1, rectangle.right + 2, rectangle.bottom + 1};
}

}  // namespace

HRESULT VideoPlayer::UpdateFrameSizeEvr(const RECT& rectangle)
{
    if (!evrControl || !clippingWindow) {
        ReportUserMessage(L"Logic error: attempt to update EVR frame size with NULL display or clipping window "
                          L"handle\r\n",
                          true);
        return E_FAIL;
    }
    RECT destination = Bordered(rectangle);
    return evrControl->SetVideoPosition(nullptr, &destination);
}

HRESULT VideoPlayer::UpdateFrameSizeVmr9(const RECT& rectangle)
{
    if (!vmr9Control || !clippingWindow) {
        ReportUserMessage(L"Logic error: attempt to update VMR9 frame size with NULL control or clipping window "
                          L"handle\r\n",
                          true);
        return E_FAIL;
    }
    RECT destination = Bordered(rectangle);
    HRESULT result = vmr9Control->SetVideoPosition(nullptr, &destination);
    if (FAILED(result))
        ReportUserMessage(L"WARNING: cannot update VMR9 video window with frame size\r\n", true);
    return result;
}

HRESULT VideoPlayer::UpdateFrameSizeVmr7(const RECT& rectangle)
{
    if (!vmr7Control || !clippingWindow) {
        ReportUserMessage(L"Logic error: attempt to update VMR7 frame size with NULL control or clipping window "
                          L"handle\r\n",
                          true);
        return E_FAIL;
    }
    RECT destination = Bordered(rectangle);
    HRESULT result = vmr7Control->SetVideoPosition(nullptr, &destination);
    if (FAILED(result))
        ReportUserMessage(L"WARNING: cannot update VMR7 video window with frame size\r\n", true);
    return result;
}

void VideoPlayer::UpdateRendererFrameSize()
{
    displayedWidth = MagnifiedSize(videoWidth, magnifyChoice);
    displayedHeight = MagnifiedSize(videoHeight, magnifyChoice);
    RECT rectangle{0, 0, displayedWidth, displayedHeight};
    HRESULT result;
    // By the option, not by the renderer in use: with the display off during
    // a recording this goes to a renderer that isn't in the graph.
    switch (rendererChoice) {
    case RendererEvr:
        result = UpdateFrameSizeEvr(rectangle);
        break;
    case RendererVmr9:
        result = UpdateFrameSizeVmr9(rectangle);
        break;
    case RendererVmr7:
        result = UpdateFrameSizeVmr7(rectangle);
        break;
    default:
        return;
    }
    if (FAILED(result))
        ReportUserMessage(L"WARNING: unable to reset the renderer frame size when magnify video is applied\r\n", true);
}

void VideoPlayer::WaitForVmr9Drawing()
{
    // Releasing a VMR9 while its Direct3D device still has frames queued to
    // draw can deadlock this platform's Direct3D (the device's release waits
    // for its command thread, which needs the lock the release holds). A
    // copy of the current image is read back synchronously, so every frame
    // queued before it has been drawn when it returns. Where the renderer
    // offers no such copy there is nothing to wait for.
    if (!vmr9 || currentRenderer != vmr9.Get())
        return;
    ComPtr<IPin> input;
    ComPtr<IEnumPins> pins;
    if (FAILED(vmr9->EnumPins(pins.Put())) || !pins || pins->Next(1, input.Put(), nullptr) != S_OK)
        return;
    pins.Reset();
    ComPtr<IPin> peer;
    if (FAILED(input->ConnectedTo(peer.Put())) || !peer)
        return;
    peer.Reset();
    input.Reset();
    ComPtr<IBasicVideo> basicVideo;
    if (FAILED(vmr9->QueryInterface(IID_IBasicVideo, basicVideo.PutVoid())) || !basicVideo)
        return;
    long width = 0, height = 0;
    if (FAILED(basicVideo->GetVideoSize(&width, &height)) || width <= 0 || height == 0 || width > 16384 ||
        std::abs(height) > 16384)
        return;
    // Room for the header and four bytes a pixel, the widest the copy holds.
    size_t bytes = sizeof(BITMAPINFOHEADER) + static_cast<size_t>(width) * std::abs(height) * 4;
    std::vector<long> image((bytes + sizeof(long) - 1) / sizeof(long));
    long size = static_cast<long>(image.size() * sizeof(long));
    basicVideo->GetCurrentImage(&size, image.data());
}

HRESULT VideoPlayer::CreateVideoRenderer(int32_t choice, const VideoFormat* format, const wchar_t* filePath)
{
    if (displayOffWhileRecording && filePath && filePath[0])
        choice = RendererNull;
    if (!format)
        format = CurrentVideoFormat();
    if (!format || choice < 0 || choice > RendererNull)
        return E_FAIL;
    RECT full{0, 0, format->width, format->height < 0 ? -format->height : format->height};
    HRESULT result = S_OK;

    switch (choice) {
    case RendererEvr: {
        if (!evr) {
            if (FAILED(CoCreateInstance(CLSID_EnhancedVideoRenderer, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                        evr.PutVoid())) ||
                !evr) {
                ReportUserMessage(L"SEVERE: cannot create EVR filter\r\n", true);
                return E_FAIL;
            }
            ComPtr<IMFGetService> service;
            if (FAILED(evr->QueryInterface(IID_IMFGetService, service.PutVoid())) || !service)
                return E_FAIL;
            if (FAILED(
                    service->GetService(MR_VIDEO_RENDER_SERVICE, IID_IMFVideoDisplayControl, evrControl.PutVoid())) ||
                !evrControl) {
                ReportUserMessage(L"SEVERE: cannot get display control for EVR\r\n", true);
                return E_FAIL;
            }
            service.Reset();
            if (FAILED(evrControl->SetVideoWindow(clippingWindow))) {
                ReportUserMessage(L"SEVERE: cannot set clipping window for EVR\r\n", true);
                return E_FAIL;
            }
            if (FAILED(evrControl->SetAspectRatioMode(MFVideoARMode_PreservePicture))) {
                ReportUserMessage(L"WARNING: set aspect ration for EVR display window\r\n", true);
                return E_FAIL;
            }
        }
        if (FAILED(UpdateFrameSizeEvr(full))) {
            ReportUserMessage(L"WARNING: cannot update EVR video window with frame size\r\n", true);
            return E_FAIL;
        }
        currentRenderer = evr.Get();
        wcscpy(currentRendererName, L"EVR");
        result = graph->AddFilter(evr.Get(), L"EVR");
        if (FAILED(result)) {
            ReportUserMessage(L"SEVERE: cannot add EVR filter to filter graph\r\n", true);
            return E_FAIL;
        }
        return S_OK;
    }
    case RendererVmr9: {
        // A VMR9 is made for each build and let go at the next. This
        // platform's VMR9 makes a new Direct3D device (with its thread, its
        // X resources and its surfaces) each time its input is joined, and
        // releases only the last when it goes: reused over a night of
        // events it grows by one device a build.
        vmr9Control.Reset();
        vmr9Config.Reset();
        vmr9.Reset();
        if (!vmr9) {
            if (FAILED(CoCreateInstance(CLSID_VideoMixingRenderer9, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                        vmr9.PutVoid())) ||
                !vmr9) {
                ReportUserMessage(L"WARNING: cannot create VMR9 filter\r\n", true);
                return E_FAIL;
            }
            if (FAILED(vmr9->QueryInterface(IID_IVMRFilterConfig9, vmr9Config.PutVoid())) || !vmr9Config) {
                ReportUserMessage(L"WARNING: cannot get configuration control for VMR9\r\n", true);
                return E_FAIL;
            }
            if (FAILED(vmr9Config->SetRenderingMode(VMR9Mode_Windowless)) ||
                FAILED(vmr9->QueryInterface(IID_IVMRWindowlessControl9, vmr9Control.PutVoid())) || !vmr9Control ||
                FAILED(vmr9Control->SetVideoClippingWindow(clippingWindow)) ||
                FAILED(vmr9Control->SetAspectRatioMode(VMR9ARMode_LetterBox)))
                return E_FAIL;
        }
        if (FAILED(UpdateFrameSizeVmr9(full))) {
            ReportUserMessage(L"WARNING: cannot update VMR9 video window with frame size\r\n", true);
            return E_FAIL;
        }
        currentRenderer = vmr9.Get();
        wcscpy(currentRendererName, L"VMR9");
        return graph->AddFilter(vmr9.Get(), L"VMR9");
    }
    case RendererVmr7: {
        if (!vmr7) {
            if (FAILED(CoCreateInstance(CLSID_VideoMixingRenderer, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                        vmr7.PutVoid())) ||
                !vmr7) {
                ReportUserMessage(L"WARNING: cannot create VMR7 filter\r\n", true);
                return E_FAIL;
            }
            if (FAILED(vmr7->QueryInterface(IID_IVMRFilterConfig, vmr7Config.PutVoid())) || !vmr7Config) {
                ReportUserMessage(L"WARNING: cannot get configuration control for VMR7\r\n", true);
                return E_FAIL;
            }
            // The analog standard test counts frames drawn: VMR7 must offer
            // IQualProp.
            if (FAILED(vmr7Config->SetRenderingMode(VMRMode_Windowless)) ||
                FAILED(vmr7->QueryInterface(IID_IVMRWindowlessControl, vmr7Control.PutVoid())) || !vmr7Control ||
                FAILED(vmr7Control->SetVideoClippingWindow(clippingWindow)) ||
                FAILED(vmr7Control->SetAspectRatioMode(VMR_ARMODE_LETTER_BOX)) ||
                FAILED(vmr7->QueryInterface(IID_IQualProp, vmr7Quality.PutVoid())) || !vmr7Quality)
                return E_FAIL;
        }
        if (FAILED(UpdateFrameSizeVmr7(full))) {
            ReportUserMessage(L"WARNING: cannot update VMR7 video window with frame size\r\n", true);
            return E_FAIL;
        }
        currentRenderer = vmr7.Get();
        wcscpy(currentRendererName, L"VMR7");
        return FAILED(graph->AddFilter(vmr7.Get(), L"VMR7")) ? E_FAIL : S_OK;
    }
    default: {
        if (!nullRenderer &&
            (FAILED(CoCreateInstance(CLSID_NullRenderer, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                     nullRenderer.PutVoid())) ||
             !nullRenderer)) {
            ReportUserMessage(L"WARNING: cannot create Null Renderer filter\r\n", true);
            return E_FAIL;
        }
        currentRenderer = nullRenderer.Get();
        wcscpy(currentRendererName, L"Null Renderer");
        return FAILED(graph->AddFilter(nullRenderer.Get(), L"Null Renderer")) ? E_FAIL : S_OK;
    }
    }
}
