// The frame queue between a camera and a slow consumer: the camera's
// thread never waits, what the queue can't hold is counted, and a seal
// hands over every queued frame before the stop.
#include "device/graph_helpers.h"
#include "device/test_filters.h"
#include "filters/frame_queue_filter.h"

#include <gtest/gtest.h>

using namespace devicetest;

namespace {

// A webcam at 640x480 YUY2, 30 frames a second, into a queue of `frames`
// buffers and a sink that takes `delayMs` for each frame.
class QueueGraph {
public:
    QueueGraph(long frames, LONG delayMs) : queue_(L"Queue", frames, 1ull << 30) { sink_->receiveDelayMs = delayMs; }

    bool Build()
    {
        return devices_.Add(L"Queue Cam", L"webcam") &&
               chain.Build(L"Queue Cam", {queue_, sink_}, MEDIASUBTYPE_YUY2, 640, 480) == S_OK;
    }

    // Taken down from the last: the chain, the filters with the test's
    // references, and the device.
    SyntheticDevices devices_;
    Held<FrameQueueFilter> queue_;
    Held<TestSink> sink_;
    DeviceChain chain;
};

}  // namespace

TEST(FrameQueue, ASlowConsumerCostsCountedQueueDropsAndNeverTheCamerasFrames)
{
    // Each frame takes three frame times to consume: two of three can't be
    // kept in four buffers.
    QueueGraph graph(4, 100);
    ASSERT_TRUE(graph.Build());
    ASSERT_TRUE(SUCCEEDED(graph.chain.control->Run()));
    Sleep(3000);
    // The camera's own counts: frames it handed on, and frames it lost.
    long cameraDelivered = -1, cameraDropped = -1;
    ComPtr<IAMDroppedFrames> cameraFrames;
    FindPin(graph.chain.device.Get(), L"Capture")->QueryInterface(IID_IAMDroppedFrames, cameraFrames.PutVoid());
    ASSERT_TRUE(cameraFrames);
    cameraFrames->GetNumNotDropped(&cameraDelivered);
    cameraFrames->GetNumDropped(&cameraDropped);
    ASSERT_TRUE(graph.queue_->Seal(5000));
    graph.chain.control->Stop();

    FrameQueueCounts counts = graph.queue_->Counts();
    std::vector<ReceivedFrame> frames = graph.sink_->Frames();
    std::printf("camera %ld delivered, %ld dropped; queue %ld delivered, %ld dropped; longest Receive %.2f ms\n",
                cameraDelivered, cameraDropped, counts.delivered, counts.dropped, counts.longestReceiveMs);
    // The camera never waited for a buffer, so it lost nothing.
    EXPECT_EQ(cameraDropped, 0);
    EXPECT_GE(cameraDelivered, 75);
    EXPECT_LT(counts.longestReceiveMs, 30.0);
    // Every frame the camera handed on is delivered or counted.
    EXPECT_EQ(static_cast<long>(frames.size()), counts.delivered);
    EXPECT_GT(counts.dropped, cameraDelivered / 3);
    EXPECT_GE(counts.delivered + counts.dropped, cameraDelivered);
    // In order, and each gap the queue made is marked.
    for (size_t i = 1; i < frames.size(); ++i) {
        EXPECT_GT(frames[i].stamp.counter, frames[i - 1].stamp.counter) << i;
        if (frames[i].stamp.counter != frames[i - 1].stamp.counter + 1) {
            EXPECT_TRUE(frames[i].discontinuity) << i;
        }
    }
}

TEST(FrameQueue, ASealHandsOverEveryQueuedFrameBeforeTheStop)
{
    // Deep enough for the whole run: the consumer falls behind, the queue
    // catches it up after the seal.
    QueueGraph graph(100, 60);
    ASSERT_TRUE(graph.Build());
    ASSERT_TRUE(SUCCEEDED(graph.chain.control->Run()));
    Sleep(1500);
    EXPECT_TRUE(graph.queue_->Seal(10000));
    size_t atSeal = graph.sink_->Frames().size();
    Sleep(300);
    EXPECT_EQ(graph.sink_->Frames().size(), atSeal) << "nothing goes out after the seal";
    graph.chain.control->Stop();

    FrameQueueCounts counts = graph.queue_->Counts();
    EXPECT_EQ(counts.dropped, 0);
    EXPECT_GE(counts.delivered, 35);
    EXPECT_EQ(static_cast<long>(atSeal), counts.delivered);
    EXPECT_NE(counts.lastArrival, 0u);
}

TEST(FrameQueue, ItsBuffersAreBoundByCountAndBytes)
{
    struct Row {
        long maxFrames;
        uint64_t maxBytes;
        long frameBytes;
        long buffers;
    } rows[] = {
        {150, 256ull << 20, 640 * 480 * 2, 150},
        {150, 256ull << 20, 1920 * 1080 * 2, 64},
        // Always one at least.
        {150, 1000, 1920 * 1080 * 2, 1},
        {0, 256ull << 20, 1000, 1},
    };
    for (const Row& row : rows)
        EXPECT_EQ(FrameQueueFilter::Capacity(row.maxFrames, row.maxBytes, row.frameBytes), row.buffers)
            << row.maxFrames << " " << row.maxBytes << " " << row.frameBytes;
}
