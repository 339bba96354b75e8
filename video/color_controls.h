// The brightness tool's values as the "Color Control" video effect takes
// them through its property store.
#pragma once

#include <windows.h>
#include <propsys.h>

#include <cstdint>

// One format identifier, {174FB0EC-2695-476C-88AA-D2B41CE75E67}, with the
// property numbers 1 and 2.
extern const PROPERTYKEY kColorBrightnessKey;
extern const PROPERTYKEY kColorContrastKey;

// A slider position from 0 to 100 as the effect's value: times 254, divided
// by 100 towards zero, less 127. So 0, 25, 50 and 100 give -127, -64, 0 and
// 127.
int32_t ColorControlValue(int32_t slider);
