// A device's saved choice of format, standard and picture values, as the
// options file keeps it: eleven texts.
#pragma once

#include <cstdint>
#include <vector>

struct VideoSourceInfo;

constexpr int kConfigNameCapacity = 256;
constexpr int kConfigRateCapacity = 10;
constexpr int kConfigFormatCapacity = 20;
constexpr int kConfigSubtypeCapacity = 64;
constexpr int kConfigValueCapacity = 16;
constexpr int kConfigStandardCapacity = 32;

struct VideoConfiguration {
    wchar_t deviceName[kConfigNameCapacity];
    wchar_t frameRate[kConfigRateCapacity];
    wchar_t formatName[kConfigFormatCapacity];
    wchar_t subtype[kConfigSubtypeCapacity];
    wchar_t brightness[kConfigValueCapacity];
    wchar_t contrast[kConfigValueCapacity];
    wchar_t hue[kConfigValueCapacity];
    wchar_t saturation[kConfigValueCapacity];
    wchar_t sharpness[kConfigValueCapacity];
    wchar_t gain[kConfigValueCapacity];
    wchar_t standard[kConfigStandardCapacity];
};

// As loaded from the options file; not updated afterwards.
extern std::vector<VideoConfiguration*> videoConfigurations;

// The eleven fields in order, with their capacities, for splitting and joining.
struct ConfigurationField {
    wchar_t* text;
    int capacity;
};
void ConfigurationFields(VideoConfiguration& configuration, ConfigurationField (&fields)[11]);

// A fresh record from the device's present selection; the caller owns it.
VideoConfiguration* BuildVideoConfiguration(uint32_t sourceIndex);

// Applies a saved configuration to a device: its rate group and format by
// their texts, its standard, and its property values. A rate or format the
// device no longer offers leaves the device as it was.
void TranslateVideoConfigurationToSourceInfo(const VideoConfiguration* configuration, VideoSourceInfo* source,
                                             uint32_t sourceIndex);

// For every device that has a saved configuration, applies it.
void ApplySavedConfigurations();
