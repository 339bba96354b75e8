#include "gps/gps_reader.h"

#include <algorithm>
#include <cstring>

#include "base/report.h"
#include "gps/gps_link.h"

int ReadGpsSentence(GpsReading& reading)
{
    HANDLE port = gpsLink.portHandle;
    if (port == INVALID_HANDLE_VALUE)
        return 0;
    reading = GpsReading{};
    const uint32_t size = std::min<uint32_t>(gpsReadSize, kGpsBufferSize);
    DWORD got = 0;
    if (!ReadFile(port, gpsBuffer, size, &got, nullptr))
        return 0;
    if (got == 0) {
        ReportUserMessage(L"Zero bytes read for GPS values refresh\r\n", true);
        return 0;
    }
    SYSTEMTIME now{};
    GetSystemTime(&now);
    switch (ParseGgaBuffer(gpsBuffer, kGpsBufferSize, got, now, reading)) {
    case GgaParse::NoSentence:
        ReportUserMessage(L"Cannot find GPGGA string\r\n", true);
        return 0;
    case GgaParse::FieldsCutOff:
        return 0;
    case GgaParse::Read:
        break;
    }
    // Cleared only after a success: a failed reading's bytes stay behind.
    std::memset(gpsBuffer, 0, std::min<size_t>(size_t{size} + 20, kGpsBufferSize));
    return 1;
}

int ReadGpsWithRetry(GpsReading& reading)
{
    for (int attempt = 0; attempt < kGpsReadAttempts; ++attempt) {
        if (ReadGpsSentence(reading))
            return 1;
    }
    return 0;
}
