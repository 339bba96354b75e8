// What the Device Properties window shows, worked out from the device's
// records alone: which frame-rate groups its list holds and which stays
// selected, the scale of a property's slider, and where the controls stand
// for a device's set of picture properties.
#pragma once

#include <cstdint>
#include <vector>

#include "video/device_properties.h"
#include "video/video_sources.h"

// A row per picture property, in the order of the device's records.
constexpr int kPropertyRowCount = kDevicePropertyCount;
extern const wchar_t* const kPropertyRowNames[kPropertyRowCount];

// The groups the frame-rate list shows, as indexes into `frameRates`: those
// enabled, in order. Row r of the list shows group rows[r].
std::vector<uint32_t> ListedFrameRateGroups(const VideoSourceInfo& source);

struct FrameRateSelection {
    uint32_t groupIndex;  // what currentFrameRateIndex becomes
    int row;  // the row to select; -1 for none
};
// The current group stays selected if the list shows it; otherwise the
// first group listed is; with an empty list the index becomes 0 and no row
// is selected.
FrameRateSelection ResolveFrameRateSelection(const std::vector<uint32_t>& listed, uint32_t currentGroup);

// A slider's tick every tenth of its range, or every unit when the range is
// less than ten.
int32_t SliderTickFrequency(int32_t minimum, int32_t maximum);

// Where the window's controls stand, in client coordinates. The two group
// boxes sit side by side; each is as tall as its content, and the boxes
// and buttons below go under the taller one.
struct DeviceFormatLayout {
    int propertyTop[kPropertyRowCount];  // label top of each row; -1 for a row not shown
    int defaultsButtonTop;
    int mediaGroupHeight;
    int propertiesGroupHeight;
    int saveBoxTop;
    int buttonsTop;
    int clientHeight;
};
// The rows of the available properties only, in their order, one under the
// other; "Set Default Values" under the last, or alone at the top of the
// group when the device has no properties.
DeviceFormatLayout LayOutDeviceFormatWindow(const bool available[kPropertyRowCount]);

// Fixed positions of the layout.
constexpr int kGroupTop = 10;
constexpr int kFirstPropertyTop = 35;
constexpr int kPropertyRowSpacing = 50;
constexpr int kMediaContentBottom = 470;
