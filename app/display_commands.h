// The four toggles of the Display menu, with the camera restart that
// Brightness and Contrast, Pixel Saturation and Frame Integration need.
#pragma once

void OnDisplayCommand(unsigned command);

