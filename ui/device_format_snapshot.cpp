#include "ui/device_format_snapshot.h"

DeviceFormatSnapshot TakeDeviceFormatSnapshot(const VideoSourceInfo& source, uint32_t sourceIndex, int32_t mainLeft,
                                              int32_t mainTop)
{
    DeviceFormatSnapshot snapshot{};
    snapshot.taken = true;
    snapshot.sourceIndex = sourceIndex;
    snapshot.currentFrameRateIndex = source.currentFrameRateIndex;
    if (source.currentFrameRateIndex < source.frameRates.size() && source.frameRates[source.currentFrameRateIndex])
        snapshot.currentFormatIndex = source.frameRates[source.currentFrameRateIndex]->currentFormatIndex;
    snapshot.mainLeft = mainLeft;
    snapshot.mainTop = mainTop;
    snapshot.deviceStandard = source.deviceStandard;
    snapshot.brightness = source.brightness;
    snapshot.contrast = source.contrast;
    snapshot.hue = source.hue;
    snapshot.saturation = source.saturation;
    snapshot.sharpness = source.sharpness;
    snapshot.gain = source.gain;
    snapshot.savedSubtype = source.savedSubtype;
    return snapshot;
}

bool RestoreDeviceFormatSnapshot(const DeviceFormatSnapshot& snapshot, VideoSourceInfo& source, uint32_t sourceIndex,
                                 int32_t& mainLeft, int32_t& mainTop)
{
    if (!snapshot.taken || snapshot.sourceIndex != sourceIndex)
        return false;
    source.currentFrameRateIndex = snapshot.currentFrameRateIndex;
    if (snapshot.currentFrameRateIndex < source.frameRates.size() && source.frameRates[snapshot.currentFrameRateIndex])
        source.frameRates[snapshot.currentFrameRateIndex]->currentFormatIndex = snapshot.currentFormatIndex;
    mainLeft = snapshot.mainLeft;
    mainTop = snapshot.mainTop;
    source.deviceStandard = snapshot.deviceStandard;
    source.brightness = snapshot.brightness;
    source.contrast = snapshot.contrast;
    source.hue = snapshot.hue;
    source.saturation = snapshot.saturation;
    source.sharpness = snapshot.sharpness;
    source.gain = snapshot.gain;
    source.savedSubtype = snapshot.savedSubtype;
    return true;
}
