// What a change in the attached devices means: the comparison, by friendly
// name, of the devices attached now with the records of every device the
// program has accepted, classed as one result. Plain records and names in,
// flags and a verdict out; the enumeration and the validation of a new
// device are the scan's (device_hot_plug.h).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "video/video_sources.h"

enum ConnectResult : int32_t {
    RecordingDeviceRemoved = 0,
    ActiveDeviceRemoved = 1,
    InactiveDeviceRemoved = 2,
    IgnoredDeviceRemoved = 3,
    RecordingDeviceReturned = 4,
    KnownDeviceReturned = 5,
    NewDeviceAppended = 6,
    IgnoredDeviceReturned = 7,
    NothingToDo = 8,
};

// Clears every record's seenAttached and counts the disconnected ones.
// False at an empty element, with the line that says so.
bool PrepareDeviceScan(std::vector<VideoSourceInfo*>& sources, uint32_t& disconnected, const wchar_t*& logicError);

struct DeviceScanVerdict {
    ConnectResult result = NothingToDo;
    // The record concerned, -1 for none.
    int32_t index = -1;
    // An attached device without a record: the scan validates it and, if it
    // is usable, appends it (result NewDeviceAppended). -1 for none.
    int32_t newDeviceEntry = -1;
    // The one line a fault gives; its result is NothingToDo.
    const wchar_t* logicError = nullptr;
};

// `attached` holds the names of the attached devices that count (unusable
// ones left out); each record takes the first entry of its name, which is
// emptied, so two devices of one name answer two records. At most one
// device is dealt with: the first removed, else the new one, else the first
// that came back. A removal or a return changes the record's flags; a
// device that comes back loses its filter reference, unreleased, so that the
// next use binds the device afresh.
DeviceScanVerdict ClassifyDeviceScan(std::vector<VideoSourceInfo*>& sources, std::vector<std::wstring>& attached,
                                     uint32_t disconnected);

// The device to use: of those neither ignored nor disconnected, the first
// default one, else the first; kNoSource when none qualifies.
uint32_t ChooseDeviceIndex(const std::vector<VideoSourceInfo*>& sources);
// Sets currentSourceIndex by that choice.
void ChooseCurrentDevice();
