// Starting and stopping the camera, and recordings by hand. StartVideo and
// StopVideo are the only way the program starts or stops the camera.
#pragma once

#include <windows.h>

HRESULT StartVideo();
HRESULT StopVideo();

// BN_CLICKED of the two buttons of the Record Controls window.
void OnStartRecordingButton();
void OnStopRecordingButton();
