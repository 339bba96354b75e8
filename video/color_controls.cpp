#include "video/color_controls.h"

namespace {

constexpr GUID kColorControlFormat = {0x174fb0ec, 0x2695, 0x476c, {0x88, 0xaa, 0xd2, 0xb4, 0x1c, 0xe7, 0x5e, 0x67}};

}  // namespace

const PROPERTYKEY kColorBrightnessKey = {kColorControlFormat, 1};
const PROPERTYKEY kColorContrastKey = {kColorControlFormat, 2};

int32_t ColorControlValue(int32_t slider)
{
    return slider * 254 / 100 - 127;
}
