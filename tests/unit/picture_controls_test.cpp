// The brightness tool's slider mapping.
#include <gtest/gtest.h>

#include "video/color_controls.h"

TEST(ColorControls, SliderPositionsMapToTheEffectsRangeTowardsZero)
{
    const struct {
        int32_t slider;
        int32_t value;
    } cases[] = {{0, -127}, {1, -125}, {25, -64}, {49, -3}, {50, 0}, {51, 2}, {75, 63}, {99, 124}, {100, 127}};
    for (const auto& c : cases)
        EXPECT_EQ(ColorControlValue(c.slider), c.value) << "slider " << c.slider;
}
