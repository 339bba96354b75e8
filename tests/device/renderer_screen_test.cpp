// What this platform's VMR9 shows on the screen in windowless mode: the
// synthetic sky, read back from a screenshot by its stamp, in a top-level
// clipping window; in a child window, such as the program's clipping window,
// only when Wine's Direct3D uses its Vulkan renderer.
#include "device/graph_helpers.h"
#include "e2e/screen_stamp.h"
#include "tools/synthcam/sky.h"

#include <d3d9.h>
#include <vmr9.h>

#include <gtest/gtest.h>

#include <cstdio>

using namespace devicetest;

namespace {

constexpr int kLeft = 100, kTop = 100;

struct Preview {
    ComPtr<IGraphBuilder> graph;
    ComPtr<IMediaControl> control;
};

bool RunPreview(Preview& preview, HWND clipping)
{
    CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder, preview.graph.PutVoid());
    ComPtr<ICaptureGraphBuilder2> builder;
    CoCreateInstance(CLSID_CaptureGraphBuilder2, nullptr, CLSCTX_INPROC_SERVER, IID_ICaptureGraphBuilder2,
                     builder.PutVoid());
    builder->SetFiltergraph(preview.graph.Get());
    ComPtr<IBaseFilter> device = BindDevice(L"Cam");
    ComPtr<IBaseFilter> renderer = CreateFilter(CLSID_VideoMixingRenderer9);
    if (!device || !renderer)
        return false;
    preview.graph->AddFilter(device.Get(), L"Cam");
    ComPtr<IVMRFilterConfig9> config;
    renderer->QueryInterface(IID_IVMRFilterConfig9, config.PutVoid());
    config->SetRenderingMode(VMR9Mode_Windowless);
    ComPtr<IVMRWindowlessControl9> windowless;
    renderer->QueryInterface(IID_IVMRWindowlessControl9, windowless.PutVoid());
    windowless->SetVideoClippingWindow(clipping);
    RECT destination{2, 1, 642, 481};
    windowless->SetVideoPosition(nullptr, &destination);
    preview.graph->AddFilter(renderer.Get(), L"VMR9");
    if (FAILED(builder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video, device.Get(), nullptr, renderer.Get())))
        return false;
    preview.graph->QueryInterface(IID_IMediaControl, preview.control.PutVoid());
    return SUCCEEDED(preview.control->Run());
}

void PumpFor(DWORD ms)
{
    DWORD end = GetTickCount() + ms;
    while (GetTickCount() < end) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        Sleep(10);
    }
}

HWND MakeWindow(HWND parent)
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    windowClass.lpszClassName = L"RendererScreenTest";
    RegisterClassW(&windowClass);
    DWORD style = parent ? WS_CHILD | WS_VISIBLE : WS_POPUP | WS_VISIBLE;
    return CreateWindowW(L"RendererScreenTest", L"", style, parent ? 0 : kLeft, parent ? 0 : kTop, 644, 482, parent,
                         nullptr, windowClass.hInstance, nullptr);
}

}  // namespace

TEST(RendererScreen, Vmr9ShowsTheMovingSkyInATopLevelWindowAndInAChildWhereDirect3DDrawsThere)
{
    SyntheticDevices devices;
    ASSERT_TRUE(devices.Add(L"Cam", L"webcam"));
    for (bool inChild : {false, true}) {
        SCOPED_TRACE(inChild ? "child window" : "top-level window");
        const std::string name = inChild ? "vmr9-child-" : "vmr9-top-level-";
        HWND window = MakeWindow(nullptr);
        Preview preview;
        ASSERT_TRUE(RunPreview(preview, inChild ? MakeWindow(window) : window));
        PumpFor(1500);
        synthcam::FrameStamp first, second;
        ASSERT_TRUE(e2e::ReadStampOnScreen(name + "1", kLeft + 2, kTop + 1, 1, &first));
        const bool grey = first.counter == 0xFFFFFFu && first.utcMs == 0xFFFFFFFFFFull;
        if (!inChild || !grey || e2e::Direct3DRendersWithVulkan()) {
            // In a child, Vulkan copies through GDI, and some OpenGL paths
            // draw there directly: the sky, and it moves.
            PumpFor(1000);
            ASSERT_TRUE(e2e::ReadStampOnScreen(name + "2", kLeft + 2, kTop + 1, 1, &second));
            EXPECT_GT(second.counter, first.counter);
            EXPECT_GT(second.utcMs, first.utcMs);
            EXPECT_NEAR(static_cast<double>(synthcam::UtcMsSince2020Now()), static_cast<double>(second.utcMs), 5000.0);
        } else {
            // The grey (128) of the window's own background stands where the
            // stamp would be (every cell reads as 1): this platform's OpenGL
            // path draws no picture into a child window.
            std::printf("Direct3D through OpenGL draws nothing into a child window here\n");
        }
        preview.control->Stop();
        DestroyWindow(window);
    }
}
