// What an options file that was read sets beyond the options record itself.
#pragma once

// The default duration, the countdown's display, the renderer and the two
// performance switches, and the codec pairs of this run.
void ApplyLoadedOptions();
