// A pass-through filter that takes each frame off the camera's streaming
// thread. Receive copies the frame into a free buffer of the output pin's
// allocator and returns at once; a thread of the filter's own delivers the
// copies downstream, in order. The allocator's buffers are the queue: when
// none is free the frame is dropped and counted, and the next frame that
// goes out is marked as a discontinuity.
//
// The platform's Smart Tee copies each frame into buffers of the camera's
// allocator while holding its own filter lock, and a graph's state change
// waits for that lock. A renderer that draws slowly or a disk that writes
// slowly, each on the streaming thread, keeps those buffers out, the tee
// waits, and the camera loses frames or a stop never comes back. Behind
// this filter every tee buffer comes back after one copy.
//
// In front of the file branch the queue is deep, so that a busy disk costs
// nothing while the queue lasts; in front of the preview it holds one frame,
// so that a screen that can't keep up loses preview frames only.
#pragma once

#include "filters/base_classes.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>

class FrameQueueFilter;

class FrameQueueInputPin : public CBaseInputPin {
public:
    FrameQueueInputPin(FrameQueueFilter* filter, CCritSec* lock, HRESULT* result);

    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override { return S_FALSE; }

private:
    FrameQueueFilter* queue_;
};

class FrameQueueOutputPin : public CBaseOutputPin {
public:
    FrameQueueOutputPin(FrameQueueFilter* filter, CCritSec* lock, HRESULT* result);

    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
    HRESULT Active() override;
    HRESULT Inactive() override;

private:
    FrameQueueFilter* queue_;
};

// Told of the stream as the queue hands it on. Nothing of the frames is
// copied for it: it sees each sample downstream has taken.
class FrameQueueObserver {
public:
    virtual ~FrameQueueObserver() = default;
    // The graph runs from `start` on its reference clock (null when it has
    // none), on the thread that runs the graph.
    virtual void StreamRuns(IReferenceClock* clock, REFERENCE_TIME start) = 0;
    // A frame downstream took, in order, on the queue's delivery thread,
    // with the frames lost since the one before it: those the upstream
    // filter counted as dropped, those the queue had no room for, and those
    // downstream refused.
    virtual void FrameDelivered(IMediaSample* sample, long lostBefore) = 0;
    // The stream stopped: nothing follows until the next StreamRuns.
    virtual void StreamStops() = 0;
};

// What a queue let through since it last started.
struct FrameQueueCounts {
    long delivered = 0;  // frames handed downstream and taken
    long dropped = 0;  // frames no buffer was free for, or that downstream refused
    uint64_t lastArrival = 0;  // UTC, in 100 ns since 1601, of the last frame delivered; 0 for none
    double longestReceiveMs = 0;  // the longest a frame kept the camera's thread
};

class FrameQueueFilter : public CBaseFilter {
public:
    // `maxFrames` buffers at most, and no more than `maxBytes` of them
    // together, but always at least one.
    FrameQueueFilter(const wchar_t* name, long maxFrames, uint64_t maxBytes);
    ~FrameQueueFilter() override;

    int GetPinCount() override { return 2; }
    CBasePin* GetPin(int n) override;

    // Takes no more frames and waits up to `timeoutMs` until every queued
    // one has gone downstream. True when the queue ran empty. A frame that
    // comes after this is not part of the stream and isn't counted.
    bool Seal(DWORD timeoutMs);
    FrameQueueCounts Counts() const;

    // Who is told of the frames delivered, and the upstream counter of
    // dropped frames that is read as each frame arrives; either may be null.
    // Set while the filter is stopped; both are held until set again.
    void Observe(FrameQueueObserver* observer, IAMDroppedFrames* upstreamDrops);

    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE Stop() override;

    // How many buffers a queue holds for frames of `frameBytes`.
    static long Capacity(long maxFrames, uint64_t maxBytes, long frameBytes);

private:
    friend class FrameQueueInputPin;
    friend class FrameQueueOutputPin;

    struct Queued {
        IMediaSample* sample;
        uint64_t arrival;
        long lostBefore;
    };

    HRESULT Take(IMediaSample* sample);
    // Frames the upstream counter counted since the last arrival; 0 without
    // a counter.
    long UpstreamLostSinceLastArrival();
    void StartDelivery();
    void StopDelivery();
    void DeliveryLoop();

    CCritSec filterLock_;
    FrameQueueInputPin input_;
    FrameQueueOutputPin output_;
    const long maxFrames_;
    const uint64_t maxBytes_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Queued> queue_;
    std::thread thread_;
    bool stopping_ = false;
    bool sealed_ = false;
    bool delivering_ = false;
    bool gap_ = false;  // a frame was lost since the last one queued
    FrameQueueCounts counts_;

    FrameQueueObserver* observer_ = nullptr;
    IAMDroppedFrames* upstreamDrops_ = nullptr;
    long upstreamDropped_ = -1;  // the upstream count at the last arrival; -1 before the first
    long lostSinceQueued_ = 0;  // lost since the last frame queued
    long lostSinceDelivered_ = 0;  // lost in the queue since the last frame delivered
};
