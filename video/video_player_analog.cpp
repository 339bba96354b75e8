// VideoPlayer: finding a grabber's analog standard by trial, and setting it
// by hand. The grabber's driver can't tell NTSC from PAL; a decoder set to
// the signal's standard locks and draws frames, one set to the other draws
// next to none, so the trial sets PAL, runs a small graph for a moment and
// counts the frames the renderer drew.
#include "video/video_player.h"

#include "base/report.h"
#include "video/analog_standard.h"
#include "video/device_formats.h"
#include "video/device_list.h"

#include <string>

namespace {

HRESULT Fail(const wchar_t* text)
{
    ReportUserMessage(text, true);
    return E_FAIL;
}

}  // namespace

HRESULT VideoPlayer::TestAnalogDeviceFormat(VideoSourceInfo* source, int32_t* outChanged)
{
    int32_t ignored = 0;
    int32_t& changed = outChanged ? *outChanged : ignored;
    changed = 0;
    if (FAILED(RemoveGraphFilters()))
        return Fail(L"Logic error: call to RemoveGraphFilters failed in TestAnalogDeviceFormat\r\n");
    if (!source)
        return Fail(L"Logic error: NULL input parameter to TestAnalogDeviceFormat\r\n");
    if (!graph || !captureBuilder)
        return Fail(L"Logic error: filter graph not created at time of call to TestAnalogDeviceFormat\r\n");
    if (FAILED(GetVideoSourceBaseFilter(source)))
        return Fail(L"WARNING: cannot get source base filter during call to TestAnalogDeviceFormat\r\n");
    if (FAILED(graph->AddFilter(source->baseFilter, L"Test Source")))
        return Fail(L"WARNING: Cannot add test video source filter to filter graph in TestAnalogDeviceFormat\r\n");
    // Always VMR7: it alone counts the frames it drew. The empty path keeps
    // the display-off rule of recordings out of it.
    if (FAILED(CreateVideoRenderer(RendererVmr7, SelectedFormatOf(source), L"")) || !vmr7)
        return Fail(L"WARNING: cannot add video rendering filter to filter graph during call to "
                    L"TestAnalogDeviceFormat\r\n");

    ComPtr<IAMStreamConfig> streamConfig;
    if (FAILED(FindSourceInterface(&PIN_CATEGORY_CAPTURE, source->baseFilter, IID_IAMStreamConfig,
                                   streamConfig.PutVoid())) ||
        !streamConfig)
        return Fail(L"WARNING: NULL stream configuration interface during call to TestAnalogDeviceFormat\r\n");
    ComPtr<IAMAnalogVideoDecoder> decoder;
    if (FAILED(FindSourceInterface(nullptr, source->baseFilter, IID_IAMAnalogVideoDecoder, decoder.PutVoid())) ||
        !decoder)
        return Fail(L"WARNING: NULL analog video decoder interface during call to TestAnalogDeviceFormat\r\n");
    long startStandard = 0;
    if (FAILED(decoder->get_TVFormat(&startStandard)))
        return Fail(L"WARNING: cannot get analog device format in TestAnalogDeviceFormat\r\n");
    if (startStandard != kDecoderNtscM && startStandard != kDecoderPalB) {
        std::wstring line = source->name;
        line += L"  has unsupported properties.  Only PAL_B and NTSC_M have properties support\r\n";
        return Fail(line.c_str());
    }
    if (startStandard == kDecoderNtscM && FAILED(decoder->put_TVFormat(kDecoderPalB)))
        return Fail(L"WARNING: cannot set analog format in TestAnalogDeviceFormat\r\n");

    // From here a failure leaves auto-detect off and a decoder that was on
    // NTSC on NTSC again; one that started on PAL stays there.
    auto giveUp = [&]() -> HRESULT {
        source->autoDetect = 0;
        return startStandard == kDecoderNtscM ? decoder->put_TVFormat(kDecoderNtscM) : S_OK;
    };
    const VideoFormat* palFormat = FindPalTrialFormat(*source);
    if (!palFormat) {
        // Not a failure: the device goes on as after a trial that changed
        // nothing.
        HRESULT restored = giveUp();
        streamConfig.Reset();
        decoder.Reset();
        ReportUserMessage(L"WARNING: PAL analog formats cannot be found during call to TestAnalogDeviceFormat\r\n",
                          true);
        return restored;
    }
    HRESULT set = streamConfig->SetFormat(palFormat->mediaType);
    streamConfig.Reset();
    if (FAILED(set)) {
        giveUp();
        return Fail(L"WARNING: cannot set video stream format for analog video device during call to "
                    L"TestAnalogDeviceFormat\r\n");
    }
    if (FAILED(captureBuilder->RenderStream(&PIN_CATEGORY_PREVIEW, &MEDIATYPE_Video, source->baseFilter, nullptr,
                                            vmr7.Get()))) {
        giveUp();
        return Fail(L"WARNING: call to RenderStream fails during TestAnalogDeviceFormat\r\n");
    }

    // A plain sleep: the count is read once, at the end.
    mediaControl->Run();
    Sleep(kAnalogTrialMs);
    if (!vmr7Quality) {
        giveUp();
        mediaControl->Stop();
        return Fail(L"Logic error: unexpected NULL pointer to IQualProp interface in TestAnalogDeviceFormat\r\n");
    }
    int framesDrawn = 0;
    if (FAILED(vmr7Quality->get_FramesDrawn(&framesDrawn))) {
        giveUp();
        mediaControl->Stop();
        return Fail(L"WARNING: call to get_FramesDrawn fails during TestAnalogDeviceFormat\r\n");
    }
    // A decoder that won't go back to NTSC leaves everything as it was.
    if (TrialShowsPal(framesDrawn)) {
        source->deviceStandard = StandardPAL;
        changed = AnalogStandardChanged(startStandard, StandardPAL) ? 1 : 0;
    } else if (SUCCEEDED(decoder->put_TVFormat(kDecoderNtscM))) {
        source->deviceStandard = StandardNTSC;
        changed = AnalogStandardChanged(startStandard, StandardNTSC) ? 1 : 0;
    }
    decoder.Reset();
    // The graph's state number stays, and the filters wait for the next
    // removal.
    mediaControl->Stop();
    return S_OK;
}

void VideoPlayer::AutoSetAnalogDeviceFormat(VideoSourceInfo* source)
{
    if (!source) {
        ReportUserMessage(L"Logic error: NULL pointer to VideoSourceInfo in call to AutoSetAnalogDeviceFormat\r\n",
                          true);
        return;
    }
    int32_t changed = 0;
    if (FAILED(TestAnalogDeviceFormat(source, &changed))) {
        ReportUserMessage(L"WARNING: call to TestAnalogDeviceFormat failed in AutoSetAnalogDeviceFormat\r\n", true);
        return;
    }
    if (changed)
        ReportUserMessage(AutoDetectChangeLine(source->name, source->deviceStandard).c_str(), true);
    SetAnalogDeviceFrameRate(source);
}

HRESULT VideoPlayer::SetAnalogDeviceFormat(int32_t standard)
{
    if (standard != StandardNTSC && standard != StandardPAL)
        return Fail(L"Logic error: input device format is not analog in call to SetAnalogDeviceFormat\r\n");
    VideoSourceInfo* source = CurrentSource();
    if (!source)
        return Fail(L"Logic error: current source index is out-of-range in call to SetAnalogDeviceFormat\r\n");
    ComPtr<IAMAnalogVideoDecoder> decoder;
    if (FAILED(FindSourceInterface(nullptr, source->baseFilter, IID_IAMAnalogVideoDecoder, decoder.PutVoid())) ||
        !decoder)
        return Fail(L"WARNING: analog video decoder interface is NULL in SetAnalogDeviceFormat\r\n");
    HRESULT result = decoder->put_TVFormat(standard == StandardNTSC ? kDecoderNtscM : kDecoderPalB);
    decoder.Reset();
    if (FAILED(result))
        return Fail(L"WARNING: cannot set analog format in SetAnalogDeviceFormat\r\n");
    return S_OK;
}
