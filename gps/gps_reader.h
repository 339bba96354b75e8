// One reading of the open link: a read of the receiver's burst into the
// shared buffer, and the position of its last complete GGA sentence.
#pragma once

#include "gps/gga_reading.h"

// Attempts to read up to 101 times in all.
constexpr int kGpsReadAttempts = 101;

// One attempt. Returns 1 with a filled reading, else 0: at once when the
// link is closed or the read fails, with "Zero bytes read for GPS values
// refresh" when nothing came, with "Cannot find GPGGA string" when no
// sentence did, silently when a field's comma is missing (the buffer is then
// left as it is, and the next read's text may run on into it).
int ReadGpsSentence(GpsReading& reading);

// ReadGpsSentence until it succeeds, at most 101 times. A failing read
// reports its line each time.
int ReadGpsWithRetry(GpsReading& reading);
