#include "video/analog_standard.h"

#include "base/report.h"

namespace {

constexpr uint32_t kNtscFrameRate = 30;
constexpr uint32_t kPalFrameRate = 25;
constexpr int32_t kPalWidth = 720;
constexpr int32_t kPalHeight = 576;

bool IsPalFrame(const VideoFormat& format)
{
    return format.width == kPalWidth && format.height == kPalHeight;
}

}  // namespace

bool TrialShowsPal(long framesDrawn)
{
    return framesDrawn >= kLeastPalFramesDrawn;
}

bool AnalogStandardChanged(long startDecoderValue, DeviceStandard found)
{
    return (found == StandardPAL && startDecoderValue == kDecoderNtscM) ||
        (found == StandardNTSC && startDecoderValue == kDecoderPalB);
}

std::wstring AutoDetectChangeLine(const wchar_t* deviceName, DeviceStandard now)
{
    std::wstring line = L"Auto Detect: device \"";
    line += deviceName;
    line += L"\" format changed from ";
    if (now == StandardNTSC)
        line += L"PAL to NTSC\r\n";
    else if (now == StandardPAL)
        line += L"NTSC to PAL\r\n";
    return line;
}

const VideoFormat* FindPalTrialFormat(const VideoSourceInfo& source)
{
    for (const VideoFormatsByFrameRate* group : source.frameRates) {
        if (!group) {
            ReportUserMessage(L"Logic error: unexpected NULL pointer to VideoFormatsByFrameRate structure in "
                              L"TestAnalogDeviceFormat\r\n",
                              true);
            continue;
        }
        if (group->frameRate != kPalFrameRate)
            continue;
        for (const VideoFormat* format : group->formats) {
            if (!format) {
                ReportUserMessage(L"Logic error: unexpected NULL pointer to VideoFormat structure in "
                                  L"TestAnalogDeviceFormat\r\n",
                                  true);
                continue;
            }
            if (IsPalFrame(*format))
                return format;
        }
    }
    return nullptr;
}

void SetAnalogDeviceFrameRate(VideoSourceInfo* source)
{
    if (!source) {
        ReportUserMessage(L"Logic error: NULL pointer to VideoSourceInfo in call to SetAnalogDeviceFrameRate\r\n",
                          true);
        return;
    }
    DeviceStandard standard = source->deviceStandard;
    for (uint32_t i = 0; i < source->frameRates.size(); ++i) {
        VideoFormatsByFrameRate* group = source->frameRates[i];
        if (!group) {
            ReportUserMessage(L"Logic error: pointer to VideoFormatsByFrameRate structure is NULL in "
                              L"SetAnalogDeviceFrameRate\r\n",
                              true);
            return;
        }
        bool belongs = (standard == StandardNTSC && group->frameRate == kNtscFrameRate) ||
            (standard == StandardPAL && group->frameRate == kPalFrameRate);
        group->enabled = belongs ? 1 : 0;
        if (!belongs)
            continue;
        source->currentFrameRateIndex = i;
        if (standard != StandardPAL)
            continue;
        for (uint32_t j = 0; j < group->formats.size(); ++j) {
            if (group->formats[j] && IsPalFrame(*group->formats[j])) {
                group->currentFormatIndex = j;
                break;
            }
        }
    }
}
