#include "gps/gps_reader.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "base/report.h"
#include "base/ticks.h"
#include "gps/clock_check.h"
#include "gps/gps_link.h"
#include "gps/gps_probe.h"

namespace {

// When the GGA sentence a reading took arrived, in UTC; 0 when that can't
// be told. The receiver sends at the line's rate, ten bits a byte, and a
// read ends on the first silence, so what it took after the bytes already
// waiting is one stretch of one burst, whose last byte came just before
// that silence. A sentence among the bytes that were waiting came at a
// moment nobody saw (maybe a burst or more earlier), and a read that filled
// its buffer didn't end on a silence: neither is timed. The sentence leads
// its burst with these receivers, so this is when the burst began.
uint64_t SentenceArrival(HANDLE port, DWORD waiting, DWORD got, uint32_t size, int64_t sentenceStart,
                         uint64_t after)
{
    int32_t rateIndex = gpsLink.baudIndex;
    if (rateIndex < 0 || rateIndex >= static_cast<int32_t>(std::size(kGpsRates)) || got >= size ||
        sentenceStart < static_cast<int64_t>(waiting) || sentenceStart >= static_cast<int64_t>(got))
        return 0;
    COMMTIMEOUTS timeouts{};
    if (!GetCommTimeouts(port, &timeouts))
        return 0;
    const uint64_t byteTicks = 10 * 10000000ull / kGpsRates[rateIndex];
    uint64_t lastByte = after - timeouts.ReadIntervalTimeout * 10000ull;
    return lastByte - static_cast<uint64_t>(got - 1 - sentenceStart) * byteTicks;
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
    DWORD got = 0;
    if (!ReadFile(port, gpsBuffer, size, &got, nullptr))
        return 0;
    uint64_t after = PreciseUtcNowTicks();
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
        uint64_t arrival = SentenceArrival(port, waiting, got, size, reading.sentenceStart, after);
        if (arrival)
            NoteGpsClockOffset(ClockOffsetSeconds(reading.timeOfDay, arrival));
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
