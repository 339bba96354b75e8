#include "video/video_configuration.h"

#include <cwchar>

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
