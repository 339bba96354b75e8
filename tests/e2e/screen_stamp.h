// The synthetic camera's stamp read back from the screen: what a renderer
// really put on the display, frame number and UTC time.
#pragma once

#include <string>

#include "tools/synthcam/sky.h"

namespace e2e {

// Takes a screenshot named NAME and reads the stamp whose top left corner
// stands at screen point (x, y), in a picture shown at `scale` times the
// camera's size (1 unmagnified, 2 for double).
bool ReadStampOnScreen(const std::string& name, int x, int y, int scale, synthcam::FrameStamp* stamp);

// Takes a screenshot named NAME and gives the pixels of a rectangle of the
// screen as bytes R, G, B, row by row.
bool ReadScreenRgb(const std::string& name, int x, int y, int width, int height, std::string* rgb);

// Whether the prefix's Direct3D uses its Vulkan renderer. Only then does
// Wine draw a renderer's picture into a child window, such as the program's
// clipping window: its default OpenGL path, on this distribution's X11
// driver, draws a child window's picture nowhere.
bool Direct3DRendersWithVulkan();

}  // namespace e2e
