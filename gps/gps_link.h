// The link to a USB GPS receiver that shows up as a COM port and sends NMEA
// sentences unasked: found by reading ports at the known rates until one
// yields "$GPGGA", read only, never written to. The handle is used by the
// refresh timer's thread and closed on the user-interface thread, with no
// lock: a closing that overtakes a reading makes that reading fail.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

constexpr int kGpsConnectTextCapacity = 200;

struct GpsLink {
    // The open port; invalid while the link is closed.
    std::atomic<HANDLE> portHandle{INVALID_HANDLE_VALUE};
    // The port (0 is COM1) and rate index of the last success, -1 before
    // any: a connection tries that pair first.
    int32_t portIndex = -1;
    int32_t baudIndex = -1;
    // The last connection line, as reported.
    wchar_t connectText[kGpsConnectTextCapacity] = L"";
};

extern GpsLink gpsLink;

// The one buffer that the probe and the readings share.
constexpr size_t kGpsBufferSize = 500000;
extern unsigned char gpsBuffer[kGpsBufferSize];
// Bytes one reading asks for, set by the rate the receiver was found at.
extern std::atomic<uint32_t> gpsReadSize;

// Shows (true) or hides (false) the notice that the program can't respond
// while the ports are scanned; the caller's window.
using GpsScanNotice = void (*)(bool show);

// Tries one port at one rate: opens it, sets the rate and the read timeouts,
// and reads 600 bytes. Returns 1 if "$GPGGA" came, reporting the port and
// rate; else 0 with the port closed.
int OpenGpsPort(int portIndex, int baudIndex);

// The remembered pair first, silently; then COM1 to COM9 at each rate with
// the notice up. Returns 1 when connected; the indices of the success are
// kept. The user-interface thread is blocked throughout.
int ConnectGps(GpsScanNotice notice);

// Closes the port if it is open. The indices stay, so the next connection
// starts with the same pair.
void CloseGps();

bool GpsLinkOpen();
