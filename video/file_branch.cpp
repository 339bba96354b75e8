#include "video/file_branch.h"

#include "base/com_ptr.h"
#include "filters/file_sink_filter.h"
#include "video/graph_pins.h"

HRESULT AssembleFileBranch(IGraphBuilder* graph, const wchar_t* filePath, IBaseFilter** mux, IFileSinkFilter** sink)
{
    ComPtr<IBaseFilter> muxFilter;
    HRESULT hr = CoCreateInstance(CLSID_AviDest, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter, muxFilter.PutVoid());
    if (FAILED(hr))
        return hr;
    ComPtr<IBaseFilter> sinkFilter;
    hr = FileSinkFilter::Create(sinkFilter.Put());
    if (FAILED(hr))
        return hr;
    ComPtr<IFileSinkFilter> fileSink;
    hr = sinkFilter->QueryInterface(IID_IFileSinkFilter, fileSink.PutVoid());
    if (FAILED(hr))
        return hr;
    hr = fileSink->SetFileName(filePath, nullptr);
    if (FAILED(hr))
        return hr;
    hr = graph->AddFilter(muxFilter.Get(), L"AVI Mux");
    if (FAILED(hr))
        return hr;
    hr = graph->AddFilter(sinkFilter.Get(), L"File Writer");
    if (FAILED(hr))
        return hr;
    // This platform's mux runs only with full interleaving.
    ComPtr<IConfigInterleaving> interleaving;
    if (SUCCEEDED(muxFilter->QueryInterface(IID_IConfigInterleaving, interleaving.PutVoid())))
        interleaving->put_Mode(INTERLEAVE_FULL);
    // This platform's mux fails when its output is joined after its input.
    ComPtr<IPin> muxOutput(GetFilterPin(muxFilter.Get(), PINDIR_OUTPUT, nullptr));
    ComPtr<IPin> sinkInput(GetFilterPin(sinkFilter.Get(), PINDIR_INPUT, nullptr));
    if (!muxOutput || !sinkInput)
        return E_FAIL;
    hr = graph->ConnectDirect(muxOutput.Get(), sinkInput.Get(), nullptr);
    if (FAILED(hr))
        return hr;
    *mux = muxFilter.Detach();
    *sink = fileSink.Detach();
    return S_OK;
}

HRESULT RenewFileBranch(IGraphBuilder* graph, const wchar_t* filePath, ComPtr<IBaseFilter>& mux,
                        ComPtr<IFileSinkFilter>& sink, ComPtr<IPin>& muxInput)
{
    ComPtr<IBaseFilter> sinkFilter;
    if (sink)
        sink->QueryInterface(IID_IBaseFilter, sinkFilter.PutVoid());
    muxInput.Reset();
    if (mux)
        graph->RemoveFilter(mux.Get());
    if (sinkFilter)
        graph->RemoveFilter(sinkFilter.Get());
    HRESULT hr = AssembleFileBranch(graph, filePath, mux.Put(), sink.Put());
    if (FAILED(hr))
        return hr;
    muxInput = ComPtr<IPin>(GetFilterPin(mux.Get(), PINDIR_INPUT, nullptr));
    return muxInput ? S_OK : E_FAIL;
}
