#include "gps/gps_link.h"

#include <cwchar>
#include <string>

#include "base/report.h"
#include "gps/clock_check.h"
#include "gps/gps_probe.h"

GpsLink gpsLink;
unsigned char gpsBuffer[kGpsBufferSize];
std::atomic<uint32_t> gpsReadSize{0};

namespace {

// The link takes a newly opened port. A port it still held, which only a
// connection made while connected leaves behind, is closed rather than lost.
void TakePort(HANDLE port)
{
    HANDLE earlier = gpsLink.portHandle.exchange(port);
    if (earlier != INVALID_HANDLE_VALUE && earlier != port)
        CloseHandle(earlier);
}

int FailTrial()
{
    CloseGps();
    return 0;
}

void Notice(GpsScanNotice notice, bool show)
{
    if (notice)
        notice(show);
}

}  // namespace

int OpenGpsPort(int portIndex, int baudIndex)
{
    if (baudIndex < 0 || baudIndex >= kGpsRateCount)
        return 0;
    // Only COM1 to COM9 are tried, so the short form of the name serves.
    wchar_t path[16];
    std::swprintf(path, 16, L"COM%d", portIndex + 1);
    HANDLE port = CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (port == INVALID_HANDLE_VALUE)
        return 0;
    TakePort(port);

    // All that the port reports stays as it is but the rate and the framing.
    const uint32_t rate = kGpsRates[baudIndex];
    DCB state{};
    state.DCBlength = 28;
    if (!GetCommState(port, &state))
        return FailTrial();
    state.BaudRate = rate;
    state.ByteSize = 8;
    state.Parity = NOPARITY;
    state.StopBits = ONESTOPBIT;
    if (!SetCommState(port, &state) || !GetCommState(port, &state))
        return FailTrial();
    // A read ends at a gap of 100 ms between bytes or after 2 ms per byte
    // asked for; these stay for every later reading.
    COMMTIMEOUTS timeouts{100, 2, 0, 0, 0};
    if (!SetCommTimeouts(port, &timeouts))
        return FailTrial();

    DWORD got = 0;
    if (!ReadFile(port, gpsBuffer, kGpsProbeBytes, &got, nullptr) || got == 0)
        return FailTrial();
    if (got < kGpsProbeBytes) {
        DWORD more = 0;
        ReadFile(port, gpsBuffer + got, kGpsProbeBytes - got, &more, nullptr);
    }
    if (!ProbeFindsGga(gpsBuffer, kGpsBufferSize))
        return FailTrial();

    gpsReadSize = GpsReadSizeForRate(rate);
    ForgetGpsClockWarning();
    std::wstring line = GpsConnectText(portIndex, rate);
    lstrcpynW(gpsLink.connectText, line.c_str(), kGpsConnectTextCapacity);
    ReportUserMessage(gpsLink.connectText, false);
    return 1;
}

int ConnectGps(GpsScanNotice notice)
{
    if (gpsLink.portIndex >= 0 && gpsLink.baudIndex >= 0 && OpenGpsPort(gpsLink.portIndex, gpsLink.baudIndex))
        return 1;
    Notice(notice, true);
    for (int port = 0; port < kGpsPortCount; ++port) {
        for (int baud = 0; baud < kGpsRateCount; ++baud) {
            if (OpenGpsPort(port, baud)) {
                gpsLink.portIndex = port;
                gpsLink.baudIndex = baud;
                Notice(notice, false);
                return 1;
            }
        }
    }
    Notice(notice, false);
    return 0;
}

void CloseGps()
{
    HANDLE port = gpsLink.portHandle.exchange(INVALID_HANDLE_VALUE);
    if (port != INVALID_HANDLE_VALUE)
        CloseHandle(port);
}

bool GpsLinkOpen()
{
    return gpsLink.portHandle.load() != INVALID_HANDLE_VALUE;
}
