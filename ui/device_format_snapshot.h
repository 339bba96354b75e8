// What the Device Properties window's Cancel puts back: the current
// device's format selection, standard, picture property records and saved
// subtype, and where the main window stood, as they were when the window
// opened. The device's auto-detect flag and the other devices' records are
// not part of it: those changes outlive Cancel.
#pragma once

#include <cstdint>

#include "video/video_sources.h"

struct DeviceFormatSnapshot {
    bool taken;
    // The device it was taken of; it is put back on that device only.
    uint32_t sourceIndex;
    uint32_t currentFrameRateIndex;
    uint32_t currentFormatIndex;  // of the group at currentFrameRateIndex
    int32_t mainLeft, mainTop;
    DeviceStandard deviceStandard;
    DeviceProperty brightness, contrast, hue, saturation, sharpness, gain;
    VideoSubtype savedSubtype;
};

DeviceFormatSnapshot TakeDeviceFormatSnapshot(const VideoSourceInfo& source, uint32_t sourceIndex, int32_t mainLeft,
                                              int32_t mainTop);
// False, with nothing changed, when the snapshot wasn't taken of that
// device.
bool RestoreDeviceFormatSnapshot(const DeviceFormatSnapshot& snapshot, VideoSourceInfo& source, uint32_t sourceIndex,
                                 int32_t& mainLeft, int32_t& mainTop);
