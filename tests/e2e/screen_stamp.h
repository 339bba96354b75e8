// The synthetic camera's stamp read back from the screen: what a renderer
// really put on the display, frame number and UTC time.
#pragma once

#include <windows.h>

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

// Pixels of the saturation warning colour (magenta on the screen) in the
// clipping window's picture; -1 when the screen can't be read.
int WarningPixels(const std::string& name, HWND clipping);

// Whether the camera's picture shows in the program's clipping window, read
// from the screen: some platforms' Direct3D draws nothing into a child window
// (Wine 8's OpenGL path on Debian). Grey where Vulkan renders is a failure.
bool PictureShowsIn(HWND clipping);
// The reason given by a scenario skipped for want of a picture.
extern const char kNoPictureHere[];

}  // namespace e2e
