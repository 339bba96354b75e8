// The scan of a device change. The system is told only that something
// changed, never what: each notification costs a full listing of the
// attached video input devices, compared by friendly name with the records
// of every device accepted so far (device_scan_rules.h). A device seen for
// the first time is validated here; what to do about the result is the
// main window's.
#pragma once

#include <cstdint>

#include "video/device_scan_rules.h"

// Lists the attached devices, updates the records and classes the change.
// `outIndex` gets the index in videoSources of the device concerned, -1 if
// none.
ConnectResult UpdateSourceVideoInfoList(int32_t* outIndex);
