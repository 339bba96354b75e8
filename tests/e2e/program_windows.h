// The program's windows that a menu command opens, by their class, for the
// scenarios that go through all of them.
#pragma once

#include "ui/commands.h"

namespace e2e {

struct CommandWindow {
    unsigned command;
    const wchar_t* className;
};

inline constexpr CommandWindow kCommandWindows[] = {
    {IDM_SELECT_INPUT_DEVICE, L"SelectVideoDeviceClassName"},
    {IDM_DEVICE_PROPERTIES, L"DeviceFormat"},
    {IDM_FILE_OPTIONS, L"FileOptions"},
    {IDM_DURATION_DEFAULT, L"DefaultDuration"},
    {IDM_CODEC, L"CodecSelector"},
    {IDM_EVENT_PENDING, L"EventPending"},
    {IDM_PERFORMANCE, L"Performance"},
    {IDM_MISCELLANEOUS, L"MiscellaneousOptions"},
    {IDM_USB_GPS_RECEIVER, L"GPSDevice"},
    {IDM_SCHEDULE, L"ScheduleEvents"},
    {IDM_EDIT_AND_DELETE, L"ViewEvents"},
    {IDM_BRIGHTNESS_CONTRAST, L"BrightnessContrast"},
    {IDM_PIXEL_SATURATION, L"PixelSaturation"},
    {IDM_FRAME_INTEGRATION, L"FrameIntegration"},
    {IDM_MAGNIFY, L"Magnify"},
};

}  // namespace e2e
