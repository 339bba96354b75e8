// The rules of the Select Input Device window over plain device records:
// which list box row stands for which device, what the Default device box
// does to the flags, and what OK writes into the options.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "persistence/options.h"
#include "video/video_sources.h"

// One list box row and the index in videoSources of the device it shows.
struct DeviceRow {
    int row;
    uint32_t sourceIndex;
};

// The two lists' rows: devices in use or usable, and ignored ones.
// Disconnected devices stand in neither.
struct DeviceRowMaps {
    std::vector<DeviceRow> devices;
    std::vector<DeviceRow> ignored;
};

// Walks the devices in order: each connected one goes to the next row of the
// ignored list if it is ignored, else to the next row of the device list.
DeviceRowMaps MapDeviceRows(const std::vector<VideoSourceInfo*>& sources);

// The device at a row; kNoSource when no entry has that row (a row of -1,
// nothing selected, included).
uint32_t SourceAtRow(const std::vector<DeviceRow>& rows, int row);
// The row that shows a device; -1 when it is in no row.
int RowOfSource(const std::vector<DeviceRow>& rows, uint32_t sourceIndex);

// The Device Properties window's title as this window sets it: the device
// list's text at the row numbered like the current device's index in
// videoSources (not the device's own row), then " Properties". With ignored
// or disconnected devices ahead of it that is another device's name, and
// past the last row only " Properties".
std::wstring DeviceFormatTitleAtRow(const std::vector<VideoSourceInfo*>& sources, const DeviceRowMaps& maps,
                                    uint32_t currentIndex);

// The Default device box: checked makes this device the only default,
// cleared takes the flag off this one alone. An index out of range changes
// nothing.
void SetDefaultDevice(std::vector<VideoSourceInfo*>& sources, uint32_t index, bool checked);

// Moves the in-use mark to the device that is now current: every other
// device loses isActive, the current one (if any) gets it unless it is
// recording.
void MarkOnlyCurrentActive(std::vector<VideoSourceInfo*>& sources, uint32_t currentIndex);

// What OK keeps: the ignored names, disconnected devices included, become
// the excluded list; the last default device's name becomes the default.
// With no default device the old default name stays.
void CollectDeviceChoice(const std::vector<VideoSourceInfo*>& sources, Options& record);
