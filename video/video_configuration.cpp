#include "video/video_configuration.h"

#include <cwchar>

#include "base/report.h"
#include "video/device_properties.h"
#include "video/video_player.h"
#include "video/video_sources.h"

std::vector<VideoConfiguration*> videoConfigurations;

void ConfigurationFields(VideoConfiguration& c, ConfigurationField (&fields)[11])
{
    fields[0] = {c.deviceName, kConfigNameCapacity};
    fields[1] = {c.frameRate, kConfigRateCapacity};
    fields[2] = {c.formatName, kConfigFormatCapacity};
    fields[3] = {c.subtype, kConfigSubtypeCapacity};
    fields[4] = {c.brightness, kConfigValueCapacity};
    fields[5] = {c.contrast, kConfigValueCapacity};
    fields[6] = {c.hue, kConfigValueCapacity};
    fields[7] = {c.saturation, kConfigValueCapacity};
    fields[8] = {c.sharpness, kConfigValueCapacity};
    fields[9] = {c.gain, kConfigValueCapacity};
    fields[10] = {c.standard, kConfigStandardCapacity};
}

namespace {

const wchar_t* StandardText(const VideoSourceInfo& source)
{
    if (source.autoDetect)
        return L"AUTO";
    switch (source.deviceStandard) {
    case StandardNTSC: return L"NTSC";
    case StandardPAL: return L"PAL";
    case StandardDigital: return L"DIGITAL";
    default: return L"NONE";
    }
}

void CopyText(wchar_t* field, int capacity, const wchar_t* text)
{
    wcsncpy(field, text, static_cast<size_t>(capacity - 1));
    field[capacity - 1] = 0;
}

}  // namespace

VideoConfiguration* BuildVideoConfiguration(uint32_t sourceIndex)
{
    if (sourceIndex >= videoSources.size())
        return nullptr;
    const VideoSourceInfo& source = *videoSources[sourceIndex];
    auto* configuration = new VideoConfiguration{};
    CopyText(configuration->deviceName, kConfigNameCapacity, source.name);
    if (source.currentFrameRateIndex < source.frameRates.size()) {
        const VideoFormatsByFrameRate* group = source.frameRates[source.currentFrameRateIndex];
        CopyText(configuration->frameRate, kConfigRateCapacity, group->frameRateText);
        if (const VideoFormat* format = SelectedFormatOf(&source))
            CopyText(configuration->formatName, kConfigFormatCapacity, format->videoFormatName);
    }
    // A property with no value is written as its number, -2147483648.
    const DeviceProperty* values[6] = {&source.brightness, &source.contrast,  &source.hue,
                                       &source.saturation, &source.sharpness, &source.gain};
    wchar_t* texts[6] = {configuration->brightness, configuration->contrast,  configuration->hue,
                         configuration->saturation, configuration->sharpness, configuration->gain};
    for (int i = 0; i < 6; ++i)
        swprintf(texts[i], kConfigValueCapacity, L"%ld", static_cast<long>(values[i]->value));
    CopyText(configuration->standard, kConfigStandardCapacity, StandardText(source));
    CopyText(configuration->subtype, kConfigSubtypeCapacity, SubtypeName(source.savedSubtype));
    return configuration;
}

void TranslateVideoConfigurationToSourceInfo(const VideoConfiguration* configuration, VideoSourceInfo* source,
                                             uint32_t sourceIndex)
{
    if (!configuration || !source || !CurrentVideoPlayer()) {
        ReportUserMessage(L"Logic error: call to TranslateVideoConfigurationToSourceInfo with NULL values", true);
        return;
    }
    uint32_t groupIndex = 0;
    for (; groupIndex < source->frameRates.size(); ++groupIndex)
        if (wcscmp(source->frameRates[groupIndex]->frameRateText, configuration->frameRate) == 0)
            break;
    if (groupIndex == source->frameRates.size())
        return;
    VideoFormatsByFrameRate* group = source->frameRates[groupIndex];
    uint32_t formatIndex = 0;
    for (; formatIndex < group->formats.size(); ++formatIndex)
        if (wcscmp(group->formats[formatIndex]->videoFormatName, configuration->formatName) == 0)
            break;
    if (formatIndex == group->formats.size())
        return;

    // The selection is taken before any value is looked at.
    source->currentFrameRateIndex = groupIndex;
    source->hasConfiguration = 1;
    group->currentFormatIndex = formatIndex;
    source->savedSubtype = SubtypeFromName(configuration->subtype);

    const wchar_t* standard = configuration->standard;
    if (wcscmp(standard, L"NTSC") == 0) {
        source->autoDetect = 0;
        source->deviceStandard = StandardNTSC;
    } else if (wcscmp(standard, L"PAL") == 0) {
        source->autoDetect = 0;
        source->deviceStandard = StandardPAL;
    } else if (wcscmp(standard, L"DIGITAL") == 0) {
        source->autoDetect = 0;
        source->deviceStandard = StandardDigital;
    } else if (wcscmp(standard, L"AUTO") == 0) {
        source->autoDetect = 1;
    } else {
        source->deviceStandard = StandardUnknown;
    }

    const wchar_t* texts[6] = {configuration->brightness, configuration->contrast,  configuration->hue,
                               configuration->saturation, configuration->sharpness, configuration->gain};
    DeviceProperty* properties[6] = {&source->brightness, &source->contrast,  &source->hue,
                                     &source->saturation, &source->sharpness, &source->gain};
    for (int i = 0; i < 6; ++i) {
        if (texts[i][0] == L'X') {
            properties[i]->value = kNoValue;
        } else {
            long value = properties[i]->value;
            if (swscanf(texts[i], L"%ld", &value) == 1)
                properties[i]->value = static_cast<int32_t>(value);
        }
    }
    ApplyDeviceProperties(sourceIndex);
}

void ApplySavedConfigurations()
{
    for (uint32_t index = 0; index < videoSources.size(); ++index) {
        VideoSourceInfo* source = videoSources[index];
        if (!source->hasConfiguration)
            continue;
        const VideoConfiguration* found = nullptr;
        for (const VideoConfiguration* configuration : videoConfigurations) {
            if (configuration && wcscmp(configuration->deviceName, source->name) == 0) {
                found = configuration;
                break;
            }
        }
        if (!found) {
            ReportUserMessage(L"Logic error: in MainWindow cannot find configuration established in VideoPlayer\r\n",
                              true);
            continue;
        }
        TranslateVideoConfigurationToSourceInfo(found, source, index);
    }
}
