#include "video/graph_frame_queue.h"

#include <new>

HRESULT GraphFrameQueue::Add(IGraphBuilder* graph, const wchar_t* name, long maxFrames, uint64_t maxBytes)
{
    Reset();
    filter_ = new (std::nothrow) FrameQueueFilter(name, maxFrames, maxBytes);
    if (!filter_)
        return E_OUTOFMEMORY;
    filter_->NonDelegatingAddRef();
    HRESULT hr = graph->AddFilter(filter_, name);
    if (FAILED(hr))
        Reset();
    return hr;
}

void GraphFrameQueue::Remove(IGraphBuilder* graph)
{
    if (filter_ && graph)
        graph->RemoveFilter(filter_);
    Reset();
}

void GraphFrameQueue::Reset()
{
    if (filter_) {
        filter_->NonDelegatingRelease();
        filter_ = nullptr;
    }
}
