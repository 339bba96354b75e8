#include "filters/frame_queue_filter.h"

#include <algorithm>
#include <cstring>

namespace {

// {3F1B7C52-8E0D-4A61-9C2F-6B5E1D2A7F40}: the filter is never registered;
// the id only answers GetClassID.
const CLSID CLSID_MavuFrameQueue = {0x3f1b7c52, 0x8e0d, 0x4a61, {0x9c, 0x2f, 0x6b, 0x5e, 0x1d, 0x2a, 0x7f, 0x40}};

uint64_t UtcNow()
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return (static_cast<uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime;
}

// The bytes one frame of the type takes.
long FrameBytes(const CMediaType& type)
{
    if (type.lSampleSize > 0)
        return static_cast<long>(type.lSampleSize);
    if (type.formattype == FORMAT_VideoInfo && type.pbFormat && type.cbFormat >= sizeof(VIDEOINFOHEADER))
        return static_cast<long>(reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat)->bmiHeader.biSizeImage);
    return 0;
}

// The copy carries what the frame says of itself: times, key frame,
// preroll, a new format, and a discontinuity where one was, or where frames
// were lost before it.
HRESULT CopyFrame(IMediaSample* from, IMediaSample* to, bool gap)
{
    BYTE* source = nullptr;
    BYTE* target = nullptr;
    if (FAILED(from->GetPointer(&source)) || FAILED(to->GetPointer(&target)))
        return E_FAIL;
    long length = from->GetActualDataLength();
    if (length < 0 || length > to->GetSize())
        return VFW_E_BUFFER_OVERFLOW;
    std::memcpy(target, source, static_cast<size_t>(length));
    to->SetActualDataLength(length);
    REFERENCE_TIME start = 0, stop = 0;
    HRESULT timed = from->GetTime(&start, &stop);
    if (timed == S_OK)
        to->SetTime(&start, &stop);
    else if (timed == VFW_S_NO_STOP_TIME)
        to->SetTime(&start, nullptr);
    else
        to->SetTime(nullptr, nullptr);
    LONGLONG mediaStart = 0, mediaStop = 0;
    if (from->GetMediaTime(&mediaStart, &mediaStop) == S_OK)
        to->SetMediaTime(&mediaStart, &mediaStop);
    else
        to->SetMediaTime(nullptr, nullptr);
    to->SetSyncPoint(from->IsSyncPoint() == S_OK);
    to->SetPreroll(from->IsPreroll() == S_OK);
    to->SetDiscontinuity(gap || from->IsDiscontinuity() == S_OK);
    AM_MEDIA_TYPE* type = nullptr;
    if (from->GetMediaType(&type) == S_OK && type) {
        to->SetMediaType(type);
        DeleteMediaType(type);
    } else {
        to->SetMediaType(nullptr);
    }
    return S_OK;
}

}  // namespace

// ------------------------------------------------------ FrameQueueInputPin

FrameQueueInputPin::FrameQueueInputPin(FrameQueueFilter* filter, CCritSec* lock, HRESULT* result)
    : CBaseInputPin(L"Frame queue input pin", filter, lock, result, L"In"), queue_(filter)
{
}

HRESULT FrameQueueInputPin::CheckMediaType(const CMediaType* type)
{
    if (type->majortype != MEDIATYPE_Video)
        return VFW_E_TYPE_NOT_ACCEPTED;
    // Once the output is joined, the type goes through unchanged.
    const FrameQueueOutputPin& output = queue_->output_;
    if (output.IsConnected() && !(output.CurrentMediaType() == *type))
        return VFW_E_TYPE_NOT_ACCEPTED;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FrameQueueInputPin::Receive(IMediaSample* sample)
{
    HRESULT hr = CBaseInputPin::Receive(sample);
    if (hr != S_OK)
        return hr;
    return queue_->Take(sample);
}

// ----------------------------------------------------- FrameQueueOutputPin

FrameQueueOutputPin::FrameQueueOutputPin(FrameQueueFilter* filter, CCritSec* lock, HRESULT* result)
    : CBaseOutputPin(L"Frame queue output pin", filter, lock, result, L"Out"), queue_(filter)
{
}

HRESULT FrameQueueOutputPin::CheckMediaType(const CMediaType* type)
{
    const FrameQueueInputPin& input = queue_->input_;
    if (!input.IsConnected())
        return VFW_E_NOT_CONNECTED;
    return input.CurrentMediaType() == *type ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT FrameQueueOutputPin::GetMediaType(int position, CMediaType* type)
{
    const FrameQueueInputPin& input = queue_->input_;
    if (!input.IsConnected())
        return VFW_E_NOT_CONNECTED;
    if (position < 0)
        return E_INVALIDARG;
    if (position > 0)
        return VFW_S_NO_MORE_ITEMS;
    *type = input.CurrentMediaType();
    return S_OK;
}

HRESULT FrameQueueOutputPin::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    long frameBytes = FrameBytes(queue_->input_.CurrentMediaType());
    if (frameBytes <= 0)
        return VFW_E_TYPE_NOT_ACCEPTED;
    properties->cbBuffer = std::max(properties->cbBuffer, frameBytes);
    properties->cBuffers = FrameQueueFilter::Capacity(queue_->maxFrames_, queue_->maxBytes_, properties->cbBuffer);
    if (properties->cbAlign <= 0)
        properties->cbAlign = 1;
    ALLOCATOR_PROPERTIES actual = {};
    HRESULT hr = allocator->SetProperties(properties, &actual);
    if (FAILED(hr))
        return hr;
    return actual.cbBuffer >= frameBytes && actual.cBuffers >= 1 ? S_OK : E_FAIL;
}

HRESULT FrameQueueOutputPin::Active()
{
    HRESULT hr = CBaseOutputPin::Active();
    if (SUCCEEDED(hr))
        queue_->StartDelivery();
    return hr;
}

HRESULT FrameQueueOutputPin::Inactive()
{
    // The thread goes first: decommitting wakes nothing it waits on, and
    // the queued buffers go back before the allocator lets them go.
    queue_->StopDelivery();
    return CBaseOutputPin::Inactive();
}

// -------------------------------------------------------- FrameQueueFilter

FrameQueueFilter::FrameQueueFilter(const wchar_t* name, long maxFrames, uint64_t maxBytes)
    : CBaseFilter(name, nullptr, &filterLock_, CLSID_MavuFrameQueue),
      input_(this, &filterLock_, nullptr),
      output_(this, &filterLock_, nullptr),
      maxFrames_(maxFrames),
      maxBytes_(maxBytes)
{
}

FrameQueueFilter::~FrameQueueFilter()
{
    StopDelivery();
    if (upstreamDrops_)
        upstreamDrops_->Release();
}

CBasePin* FrameQueueFilter::GetPin(int n)
{
    if (n == 0)
        return &input_;
    if (n == 1)
        return &output_;
    return nullptr;
}

long FrameQueueFilter::Capacity(long maxFrames, uint64_t maxBytes, long frameBytes)
{
    uint64_t byBytes = frameBytes > 0 ? maxBytes / static_cast<uint64_t>(frameBytes) : 1;
    uint64_t frames = std::min<uint64_t>(byBytes, maxFrames > 0 ? static_cast<uint64_t>(maxFrames) : 1);
    return static_cast<long>(std::max<uint64_t>(frames, 1));
}

HRESULT FrameQueueFilter::Take(IMediaSample* sample)
{
    uint64_t arrival = UtcNow();
    LARGE_INTEGER begun;
    QueryPerformanceCounter(&begun);
    bool gap = false;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (sealed_ || stopping_)
            return S_OK;
        gap = gap_;
    }
    long upstreamLost = UpstreamLostSinceLastArrival();
    IMediaSample* copy = nullptr;
    HRESULT hr = output_.GetDeliveryBuffer(&copy, nullptr, nullptr, AM_GBF_NOWAIT);
    bool copied = SUCCEEDED(hr) && copy && SUCCEEDED(CopyFrame(sample, copy, gap));
    std::lock_guard<std::mutex> lock(mutex_);
    if (sealed_ || stopping_) {
        // Sealed while this frame was copied: the seal has seen the queue
        // empty, and whatever is downstream may stop now, so the frame
        // stays out.
        if (copy)
            copy->Release();
        return S_OK;
    }
    lostSinceQueued_ += upstreamLost;
    if (!copied) {
        if (copy)
            copy->Release();
        ++counts_.dropped;
        ++lostSinceQueued_;
        gap_ = true;
    } else {
        gap_ = false;
        queue_.push_back({copy, arrival, lostSinceQueued_});
        lostSinceQueued_ = 0;
        changed_.notify_all();
    }
    LARGE_INTEGER ended, frequency;
    QueryPerformanceCounter(&ended);
    QueryPerformanceFrequency(&frequency);
    double ms = 1000.0 * static_cast<double>(ended.QuadPart - begun.QuadPart) / static_cast<double>(frequency.QuadPart);
    counts_.longestReceiveMs = std::max(counts_.longestReceiveMs, ms);
    return S_OK;
}

void FrameQueueFilter::StartDelivery()
{
    StopDelivery();
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = false;
    sealed_ = false;
    gap_ = false;
    counts_ = {};
    lostSinceQueued_ = 0;
    lostSinceDelivered_ = 0;
    thread_ = std::thread([this] { DeliveryLoop(); });
}

void FrameQueueFilter::StopDelivery()
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
        changed_.notify_all();
    }
    if (thread_.joinable())
        thread_.join();
    std::lock_guard<std::mutex> lock(mutex_);
    // Frames still queued when the stream stops never reach downstream.
    counts_.dropped += static_cast<long>(queue_.size());
    for (Queued& queued : queue_)
        queued.sample->Release();
    queue_.clear();
}

void FrameQueueFilter::DeliveryLoop()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
        if (stopping_)
            return;
        Queued next = queue_.front();
        queue_.pop_front();
        delivering_ = true;
        long lostBefore = next.lostBefore + lostSinceDelivered_;
        lock.unlock();
        HRESULT hr = output_.Deliver(next.sample);
        if (SUCCEEDED(hr) && observer_)
            observer_->FrameDelivered(next.sample, lostBefore);
        next.sample->Release();
        lock.lock();
        delivering_ = false;
        if (SUCCEEDED(hr)) {
            ++counts_.delivered;
            counts_.lastArrival = next.arrival;
            lostSinceDelivered_ = 0;
        } else {
            ++counts_.dropped;
            lostSinceDelivered_ = lostBefore + 1;
            gap_ = true;
        }
        changed_.notify_all();
    }
}

void FrameQueueFilter::Observe(FrameQueueObserver* observer, IAMDroppedFrames* upstreamDrops)
{
    if (upstreamDrops)
        upstreamDrops->AddRef();
    if (upstreamDrops_)
        upstreamDrops_->Release();
    upstreamDrops_ = upstreamDrops;
    observer_ = observer;
}

long FrameQueueFilter::UpstreamLostSinceLastArrival()
{
    long count = 0;
    if (!upstreamDrops_ || FAILED(upstreamDrops_->GetNumDropped(&count)))
        return 0;
    // A counter that went back was started again upstream.
    long lost = upstreamDropped_ >= 0 && count >= upstreamDropped_ ? count - upstreamDropped_
                                                                     : (upstreamDropped_ >= 0 ? count : 0);
    upstreamDropped_ = count;
    return lost;
}

HRESULT STDMETHODCALLTYPE FrameQueueFilter::Run(REFERENCE_TIME start)
{
    HRESULT hr = CBaseFilter::Run(start);
    if (FAILED(hr))
        return hr;
    // Frames the upstream filter drops from here on count; the first
    // frame's count is taken against this one.
    upstreamDropped_ = -1;
    UpstreamLostSinceLastArrival();
    if (observer_) {
        IReferenceClock* clock = nullptr;
        {
            CAutoLock lock(&clockLock_);
            clock = clock_;
            if (clock)
                clock->AddRef();
        }
        observer_->StreamRuns(clock, start);
        if (clock)
            clock->Release();
    }
    return hr;
}

HRESULT STDMETHODCALLTYPE FrameQueueFilter::Stop()
{
    HRESULT hr = CBaseFilter::Stop();
    if (observer_)
        observer_->StreamStops();
    return hr;
}

bool FrameQueueFilter::Seal(DWORD timeoutMs)
{
    std::unique_lock<std::mutex> lock(mutex_);
    sealed_ = true;
    return changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                             [this] { return stopping_ || (queue_.empty() && !delivering_); });
}

FrameQueueCounts FrameQueueFilter::Counts() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return counts_;
}
