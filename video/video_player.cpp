#include "video/video_player.h"

VideoPlayer::VideoPlayer() = default;

HRESULT VideoPlayer::StartCamera(bool useCurrentDirectoryFlag)
{
    useCurrentDirectory = useCurrentDirectoryFlag;
    recording = 0;
    // Graph construction comes with the capture engine; until then there is
    // no camera to start.
    return E_NOTIMPL;
}

HRESULT VideoPlayer::StopCamera(bool)
{
    // No graph has been built: there is nothing to stop.
    if (graphState == GraphNone)
        return S_OK;
    graphState = GraphBuilt;
    return S_OK;
}
