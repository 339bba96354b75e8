// What the next camera start builds into its graph: the renderer, the two
// performance choices, and the display tools. The Display menu, the tool and
// option dialogs and the recording control set them; the engine reads them
// each time it builds a graph, never in the middle of one.
#pragma once

#include "base/flag.h"

// Renderer choices: the option's three, and the Null Renderer.
enum RendererChoice : int32_t { RendererEvr = 0, RendererVmr9 = 1, RendererVmr7 = 2, RendererNull = 3 };

// Runtime copies of the options DefaultRenderer, DisplayOffWhileRecording and
// RemoveFiltersWhileRecording.
extern Flag rendererChoice;
extern Flag displayOffWhileRecording;
extern Flag removeFiltersWhileRecording;

// The four display tools, and the frames per integrated frame (1: none).
extern Flag brightnessContrastOn;
extern Flag pixelSaturationOn;
extern Flag frameIntegrationOn;
extern Flag magnifyOn;
extern Flag frameIntegrationCount;
// The brightness tool's "Insert into video file when recording" box.
extern Flag colorInCaptureFile;

// The four tool switches off, frameIntegrationCount back to 1.
void ClearRuntimeSwitches();
