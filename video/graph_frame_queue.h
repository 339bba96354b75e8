// A frame queue filter of the program's own in a graph, held by one
// reference of its holder: a fresh one for each graph build, let go when
// the graph is emptied.
#pragma once

#include <windows.h>
#include <dshow.h>

#include <cstdint>

#include "filters/frame_queue_filter.h"

class GraphFrameQueue {
public:
    GraphFrameQueue() = default;
    GraphFrameQueue(const GraphFrameQueue&) = delete;
    GraphFrameQueue& operator=(const GraphFrameQueue&) = delete;
    ~GraphFrameQueue() { Reset(); }

    // Makes a new queue and adds it to the graph under the name.
    HRESULT Add(IGraphBuilder* graph, const wchar_t* name, long maxFrames, uint64_t maxBytes);
    // Takes the queue out of the graph, if it is in one, and lets it go.
    void Remove(IGraphBuilder* graph);
    void Reset();

    explicit operator bool() const { return filter_ != nullptr; }
    FrameQueueFilter* operator->() const { return filter_; }
    IBaseFilter* Get() const { return filter_; }

private:
    FrameQueueFilter* filter_ = nullptr;
};
