// The four tools of the Display menu: Brightness and Contrast, Pixel
// Saturation, Frame Integration and Magnify. Each is turned on by its menu
// item and off by the item again or by its window. Turning a tool on or off
// here sets its flag, its check mark, its values and its window; the camera
// restart that three of them need is the caller's, as the recording start
// turns tools off itself before it starts the camera.
#pragma once

#include <windows.h>

// The tools' windows; null until they are made.
extern HWND brightnessContrastWindow;
extern HWND pixelSaturationWindow;
extern HWND frameIntegrationWindow;
extern HWND magnifyWindow;

void TurnOnBrightnessContrast();
void CloseBrightnessContrast();

void TurnOnPixelSaturation();
void ClosePixelSaturation();

void TurnOnFrameIntegration();
void CloseFrameIntegration();

// Magnify needs no restart: it acts through the renderer's picture size.
void TurnOnMagnify();
void CloseMagnify();
