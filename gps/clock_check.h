// The computer's clock checked against the GPS receiver's: the UTC time of
// day in a GGA sentence against the computer's UTC when the first byte of
// that burst arrived. The last offset measured is kept for the frame-time
// record of the next recording.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The time of day of a GGA time field "hhmmss" or "hhmmss.ss", in seconds
// after midnight; false for an empty field or anything else that isn't one.
bool GgaTimeOfDay(const char* field, size_t length, double* seconds);

// The computer's clock minus GPS time, in seconds, for a GPS time of day and
// the computer's UTC (100 ns since 1601) when the burst began. The two are
// taken to lie within twelve hours of each other, so a reading across
// midnight compares the right days.
double ClockOffsetSeconds(double gpsTimeOfDay, uint64_t computerUtc);

// The warning for an offset of more than one second, with its one decimal:
// "WARNING: computer clock is N.N s behind GPS time\r\n" or "... ahead of
// ...". Empty when the clocks agree within a second.
std::wstring ClockOffsetWarning(double offsetSeconds);

// The last offset measured in this run; from any thread.
struct GpsClockOffset {
    bool known = false;
    double seconds = 0;
    long measurements = 0;  // how many were taken in this run
};
GpsClockOffset LastGpsClockOffset();

// Keeps an offset just measured, and reports its warning when it has one and
// none was reported since the link was last connected.
void NoteGpsClockOffset(double offsetSeconds);
// A new connection: its first offset beyond a second is reported again.
void ForgetGpsClockWarning();
