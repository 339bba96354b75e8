// Menu command identifiers. Nothing outside the process depends on the
// numbers; they follow the order in which the menus were always numbered.
#pragma once

enum MenuCommand : unsigned {
    IDM_SELECT_INPUT_DEVICE = 33089,
    IDM_DEVICE_PROPERTIES = 33090,
    IDM_FILE_OPTIONS = 33091,
    IDM_DURATION_DEFAULT = 33092,
    IDM_CODEC = 33093,
    IDM_EVENT_PENDING = 33094,
    IDM_PERFORMANCE = 33095,
    IDM_MISCELLANEOUS = 33096,
    IDM_USB_GPS_RECEIVER = 33097,
    IDM_SET_WINDOW_POSITIONS = 33098,
    IDM_EXIT = 33099,
    IDM_SCHEDULE = 33100,
    IDM_EDIT_AND_DELETE = 33101,
    IDM_BRIGHTNESS_CONTRAST = 33102,
    IDM_PIXEL_SATURATION = 33103,
    IDM_FRAME_INTEGRATION = 33104,
    IDM_MAGNIFY = 33105,
    IDM_ABOUT = 33106,
    IDM_SAVE_MESSAGES = 33109,
    IDM_SAVE_MESSAGES_AND_CLEAR = 33110,
};

// First and last of the command ranges that the main window tests first.
constexpr unsigned kFirstEventsCommand = IDM_SCHEDULE;
constexpr unsigned kLastEventsCommand = IDM_EDIT_AND_DELETE;
constexpr unsigned kFirstDisplayCommand = IDM_BRIGHTNESS_CONTRAST;
constexpr unsigned kLastDisplayCommand = IDM_MAGNIFY;
constexpr unsigned kFirstOptionsCommand = IDM_SELECT_INPUT_DEVICE;
constexpr unsigned kLastOptionsCommand = IDM_SET_WINDOW_POSITIONS;
