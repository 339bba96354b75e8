// The filter base layer in real graphs: a test transform between a
// synthetic camera and a test sink, both built on the layer.
#include "device/graph_helpers.h"
#include "device/test_filters.h"
#include "filters/enumerators.h"

#include <gtest/gtest.h>

using namespace devicetest;

// A webcam, and the test filters held by the test (one reference each) as
// the program holds its own filters; a graph adds its references. At the
// end each filter goes with the test's reference, and no object of the
// layer stays behind.
class BaseLayer : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(devices.Add(L"Cam", L"webcam")); }

    SyntheticDevices devices;
    struct NoneLeft {
        LONG before = CBaseObject::ObjectsActive();
        ~NoneLeft() { EXPECT_EQ(CBaseObject::ObjectsActive(), before); }
    } noneLeft;
    Held<TestTransform> transform;
    Held<TestSink> sink;
};

TEST_F(BaseLayer, TransformDeliversChangedFramesAndDropsSkippedOnes)
{
    {
        DeviceChain chain;
        ASSERT_EQ(chain.Build(L"Cam", {transform, sink}), S_OK);

        // The output type is the input type.
        AM_MEDIA_TYPE in = {}, out = {};
        ASSERT_EQ(FindPin(transform, L"XForm In")->ConnectionMediaType(&in), S_OK);
        ASSERT_EQ(FindPin(transform, L"XForm Out")->ConnectionMediaType(&out), S_OK);
        EXPECT_EQ(CMediaType(in), CMediaType(out));
        EXPECT_EQ(in.subtype, MEDIASUBTYPE_YUY2);
        FreeMediaType(in);
        FreeMediaType(out);

        transform->lift = 10;
        chain.RunFor(1500);
        std::vector<ReceivedFrame> lifted = sink->Frames();
        ASSERT_GE(lifted.size(), 20u);
        for (const ReceivedFrame& frame : lifted) {
            EXPECT_GE(frame.probe, synthcam::kBackgroundLevel - 2 + 10);
            EXPECT_LE(frame.probe, synthcam::kBackgroundLevel + 2 + 10);
        }
        for (size_t i = 1; i < lifted.size(); ++i)
            EXPECT_GT(lifted[i].stamp.counter, lifted[i - 1].stamp.counter);

        sink->Clear();
        transform->lift = 0;
        transform->dropOdd = true;
        chain.RunFor(1500);
        std::vector<ReceivedFrame> kept = sink->Frames();
        ASSERT_GE(kept.size(), 10u);
        for (size_t i = 0; i < kept.size(); ++i) {
            EXPECT_EQ(kept[i].stamp.counter % 2, 0u) << "frame " << kept[i].stamp.counter << " passed";
            EXPECT_LE(kept[i].probe, synthcam::kBackgroundLevel + 2);
            // Each frame delivered after a skipped one says so.
            if (i > 0) {
                EXPECT_TRUE(kept[i].discontinuity);
            }
        }
        EXPECT_GE(transform->SkippedSamples(), static_cast<LONG>(kept.size()) - 2);

        // Torn down: the graph gives back every reference it took.
        chain.TearDown();
        EXPECT_EQ(ReferenceCount(chain.device.Get()), 1u);
    }
}

TEST_F(BaseLayer, RefusedTypesNeverConnect)
{
    {
        DeviceChain chain;
        EXPECT_TRUE(FAILED(chain.Build(L"Cam", {transform, sink}, MEDIASUBTYPE_RGB24)));
        ASSERT_TRUE(chain.device);
        ComPtr<IPin> capture = FindPin(chain.device.Get(), L"Capture");
        ComPtr<IPin> input = FindPin(transform, L"XForm In");
        ComPtr<IPin> connected;
        EXPECT_EQ(input->ConnectedTo(connected.Put()), VFW_E_NOT_CONNECTED);

        AM_MEDIA_TYPE* rgb = nullptr;
        ComPtr<IAMStreamConfig> config;
        ASSERT_EQ(capture->QueryInterface(IID_IAMStreamConfig, config.PutVoid()), S_OK);
        ASSERT_EQ(config->GetFormat(&rgb), S_OK);
        EXPECT_EQ(input->QueryAccept(rgb), S_FALSE);
        rgb->subtype = MEDIASUBTYPE_YUY2;
        EXPECT_EQ(input->QueryAccept(rgb), S_OK);
        DeleteMediaType(rgb);

        // An output pin can't connect before its input has a type to derive from.
        EXPECT_TRUE(FAILED(chain.graph->ConnectDirect(FindPin(transform, L"XForm Out").Get(),
                                                      FindPin(sink, L"In").Get(), nullptr)));
    }
}

TEST_F(BaseLayer, EnumeratorsWalkSkipResetAndClone)
{
    {
        ComPtr<IEnumPins> pins;
        ASSERT_EQ(transform->EnumPins(pins.Put()), S_OK);
        IPin* got[3] = {};
        ULONG fetched = 0;
        EXPECT_EQ(pins->Next(3, got, &fetched), S_FALSE);
        EXPECT_EQ(fetched, 2u);
        for (ULONG i = 0; i < fetched; ++i)
            got[i]->Release();
        EXPECT_EQ(pins->Next(1, got, nullptr), S_FALSE);
        EXPECT_EQ(pins->Reset(), S_OK);
        EXPECT_EQ(pins->Skip(1), S_OK);
        ComPtr<IEnumPins> clone;
        ASSERT_EQ(pins->Clone(clone.Put()), S_OK);
        ComPtr<IPin> second;
        ASSERT_EQ(clone->Next(1, second.Put(), nullptr), S_OK);
        PIN_INFO info;
        ASSERT_EQ(second->QueryPinInfo(&info), S_OK);
        info.pFilter->Release();
        EXPECT_STREQ(info.achName, L"XForm Out");
        EXPECT_EQ(info.dir, PINDIR_OUTPUT);
        EXPECT_EQ(pins->Skip(2), S_FALSE);
    }
    {
        ComPtr<IBaseFilter> device = BindDevice(L"Cam");
        ASSERT_TRUE(device);
        ComPtr<IEnumMediaTypes> types;
        ASSERT_EQ(FindPin(device.Get(), L"Capture")->EnumMediaTypes(types.Put()), S_OK);
        AM_MEDIA_TYPE* got[10] = {};
        ULONG fetched = 0;
        ASSERT_EQ(types->Next(4, got, &fetched), S_OK);
        for (ULONG i = 0; i < fetched; ++i)
            DeleteMediaType(got[i]);
        EXPECT_EQ(types->Skip(3), S_OK);
        ComPtr<IEnumMediaTypes> clone;
        ASSERT_EQ(types->Clone(clone.Put()), S_OK);
        EXPECT_EQ(types->Next(5, got, &fetched), S_FALSE);
        EXPECT_EQ(fetched, 3u);
        for (ULONG i = 0; i < fetched; ++i)
            DeleteMediaType(got[i]);
        ASSERT_EQ(clone->Next(1, got, nullptr), S_OK);
        EXPECT_EQ(got[0]->subtype, MEDIASUBTYPE_ARGB32);  // the eighth format listed
        DeleteMediaType(got[0]);
        EXPECT_EQ(types->Reset(), S_OK);
        ASSERT_EQ(types->Next(1, got, nullptr), S_OK);
        EXPECT_EQ(got[0]->subtype, MEDIASUBTYPE_YUY2);
        DeleteMediaType(got[0]);
    }
    // An unconnected transform offers no output type.
    ComPtr<IEnumMediaTypes> none;
    ASSERT_EQ(FindPin(transform, L"XForm Out")->EnumMediaTypes(none.Put()), S_OK);
    AM_MEDIA_TYPE* type = nullptr;
    EXPECT_EQ(none->Next(1, &type, nullptr), S_FALSE);
}
