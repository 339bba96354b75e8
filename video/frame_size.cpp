#include "video/frame_size.h"

int32_t videoWidth = 640, videoHeight = 480;
int32_t displayedWidth = 640, displayedHeight = 480;
int32_t magnifyChoice = 0;

int32_t MagnifiedSize(int32_t videoSize, int32_t choice)
{
    switch (choice) {
    case 1:
        return videoSize / 2;
    case 2:
        return videoSize * 3 / 4;
    case 3:
        return videoSize + videoSize / 2;
    case 4:
        return videoSize * 2;
    default:
        return videoSize;
    }
}
