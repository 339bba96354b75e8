#include "ui/device_format_rules.h"

#include <algorithm>

const wchar_t* const kPropertyRowNames[kPropertyRowCount] = {L"Brightness", L"Contrast",  L"Hue",
                                                             L"Saturation", L"Sharpness", L"Gain"};

std::vector<uint32_t> ListedFrameRateGroups(const VideoSourceInfo& source)
{
    std::vector<uint32_t> listed;
    for (size_t index = 0; index < source.frameRates.size(); ++index)
        if (source.frameRates[index] && source.frameRates[index]->enabled)
            listed.push_back(static_cast<uint32_t>(index));
    return listed;
}

FrameRateSelection ResolveFrameRateSelection(const std::vector<uint32_t>& listed, uint32_t currentGroup)
{
    for (size_t row = 0; row < listed.size(); ++row)
        if (listed[row] == currentGroup)
            return {currentGroup, static_cast<int>(row)};
    if (listed.empty())
        return {0, -1};
    return {listed.front(), 0};
}

int32_t SliderTickFrequency(int32_t minimum, int32_t maximum)
{
    int32_t frequency = (maximum - minimum) / 10;
    return frequency == 0 ? 1 : frequency;
}

namespace {

constexpr int kDefaultsButtonHeight = 28;
constexpr int kGroupBottomMargin = 12;

}  // namespace

DeviceFormatLayout LayOutDeviceFormatWindow(const bool available[kPropertyRowCount])
{
    DeviceFormatLayout layout{};
    int top = kFirstPropertyTop;
    for (int row = 0; row < kPropertyRowCount; ++row) {
        layout.propertyTop[row] = available[row] ? top : -1;
        if (available[row])
            top += kPropertyRowSpacing;
    }
    layout.defaultsButtonTop = top + 5;
    int propertiesBottom = layout.defaultsButtonTop + kDefaultsButtonHeight + kGroupBottomMargin;
    layout.propertiesGroupHeight = propertiesBottom - kGroupTop;
    layout.mediaGroupHeight = kMediaContentBottom + kGroupBottomMargin - kGroupTop;
    int groupsBottom = kGroupTop + std::max(layout.mediaGroupHeight, layout.propertiesGroupHeight);
    layout.saveBoxTop = groupsBottom + 12;
    layout.buttonsTop = layout.saveBoxTop + 38;
    layout.clientHeight = layout.buttonsTop + 30 + 15;
    return layout;
}
