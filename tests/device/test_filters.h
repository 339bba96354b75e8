// Filters for testing the base layer in real graphs: a transform that
// changes or drops frames as told, and a sink that remembers what reached
// it.
#pragma once

#include "filters/transform_filter.h"
#include "tools/synthcam/sky.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace devicetest {

// A filter of the base layer held by the test alone, as the program holds
// its own filters: made with one reference, and gone with it at the end.
template <typename Filter>
class Held {
public:
    template <typename... Args>
    explicit Held(Args&&... args) : filter_(new Filter(std::forward<Args>(args)...))
    {
        filter_->NonDelegatingAddRef();
    }
    ~Held() { EXPECT_EQ(filter_->NonDelegatingRelease(), 0u); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Filter* operator->() const { return filter_; }
    operator Filter*() const { return filter_; }

private:
    Filter* filter_;
};

struct ReceivedFrame {
    synthcam::FrameStamp stamp;
    uint8_t probe = 0;  // brightness of a background point below the stamp
    double background = 0;  // mean brightness of a band of rows where no star passes
    // YUY2 pixel pairs painted in the saturation warning colour (6A CA 6A DE).
    size_t warningPairs = 0;
    bool discontinuity = false;
};

// Accepts YUY2 only. Adds `lift` to every brightness byte below the stamp
// and drops (S_FALSE) the frames with odd numbers when told to.
class TestTransform : public CTransformFilter {
public:
    TestTransform();
    HRESULT Transform(IMediaSample* in, IMediaSample* out) override;
    HRESULT CheckInputType(const CMediaType* in) override;
    HRESULT CheckTransform(const CMediaType* in, const CMediaType* out) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;

    int lift = 0;
    bool dropOdd = false;
};

class TestSink;

class TestSinkPin : public CBaseInputPin {
public:
    TestSinkPin(TestSink* sink, CCritSec* lock);
    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;

private:
    TestSink* sink_;
};

class TestSink : public CBaseFilter {
public:
    TestSink();
    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override { return n == 0 ? &pin_ : nullptr; }

    std::vector<ReceivedFrame> Frames();
    void Clear();

    // How long each Receive takes, as a slow disk or screen would make it.
    volatile LONG receiveDelayMs = 0;

private:
    friend class TestSinkPin;
    CCritSec filterLock_;
    CCritSec framesLock_;
    TestSinkPin pin_;
    std::vector<ReceivedFrame> frames_;
};

}  // namespace devicetest
