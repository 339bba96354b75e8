#include "gps/gps_reader.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "base/report.h"
#include "gps/clock_check.h"
#include "gps/gps_link.h"
#include "gps/gps_probe.h"

namespace {

uint64_t PreciseUtcNow()
{
    FILETIME now{};
    GetSystemTimePreciseAsFileTime(&now);
    return (static_cast<uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime;
}

// When the first byte of the burst a read took arrived, in UTC; 0 when
// that can't be told. The receiver sends at the line's rate, ten bits a
// byte. Bytes that were waiting when the read began came before it, all of
// one burst: the read before ended on the silence after the last one.
// With none waiting, the read took the burst as it came and returned on the
// silence after it, or at once when its buffer was full.
uint64_t BurstStart(HANDLE port, DWORD waiting, DWORD got, uint32_t size, uint64_t before, uint64_t after)
{
    int32_t rateIndex = gpsLink.baudIndex;
    if (rateIndex < 0 || rateIndex >= static_cast<int32_t>(std::size(kGpsRates)) || got == 0)
        return 0;
    const uint64_t byteTicks = 10 * 10000000ull / kGpsRates[rateIndex];
    if (waiting > 0)
        return before - static_cast<uint64_t>(waiting) * byteTicks;
    COMMTIMEOUTS timeouts{};
    uint64_t silence = got < size && GetCommTimeouts(port, &timeouts) ? timeouts.ReadIntervalTimeout * 10000ull : 0;
    return after - silence - static_cast<uint64_t>(got) * byteTicks;
}

}  // namespace

int ReadGpsSentence(GpsReading& reading)
{
    HANDLE port = gpsLink.portHandle;
    if (port == INVALID_HANDLE_VALUE)
        return 0;
    reading = GpsReading{};
    const uint32_t size = std::min<uint32_t>(gpsReadSize, kGpsBufferSize);
    DWORD errors = 0;
    COMSTAT status{};
    DWORD waiting = ClearCommError(port, &errors, &status) ? status.cbInQue : 0;
    uint64_t before = PreciseUtcNow();
    DWORD got = 0;
    if (!ReadFile(port, gpsBuffer, size, &got, nullptr))
        return 0;
    uint64_t after = PreciseUtcNow();
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
    if (reading.timeOfDayKnown) {
        uint64_t burstStart = BurstStart(port, waiting, got, size, before, after);
        if (burstStart)
            NoteGpsClockOffset(ClockOffsetSeconds(reading.timeOfDay, burstStart));
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
