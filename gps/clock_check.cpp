#include "gps/clock_check.h"

#include <cmath>
#include <cstdio>
#include <mutex>

#include "base/report.h"
#include "base/ticks.h"

namespace {

std::mutex offsetMutex;
GpsClockOffset lastOffset;
bool warnedThisConnection = false;

constexpr double kSecondsPerDay = 86400.0;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

}  // namespace

bool GgaTimeOfDay(const char* field, size_t length, double* seconds)
{
    if (!field || length < 6)
        return false;
    for (size_t i = 0; i < 6; ++i) {
        if (!IsDigit(field[i]))
            return false;
    }
    int hours = (field[0] - '0') * 10 + (field[1] - '0');
    int minutes = (field[2] - '0') * 10 + (field[3] - '0');
    int whole = (field[4] - '0') * 10 + (field[5] - '0');
    // 60 is a leap second.
    if (hours > 23 || minutes > 59 || whole > 60)
        return false;
    double fraction = 0;
    if (length > 6) {
        if (field[6] != '.')
            return false;
        double scale = 0.1;
        for (size_t i = 7; i < length; ++i) {
            if (!IsDigit(field[i]))
                return false;
            fraction += (field[i] - '0') * scale;
            scale /= 10;
        }
    }
    *seconds = hours * 3600.0 + minutes * 60.0 + whole + fraction;
    return true;
}

double ClockOffsetSeconds(double gpsTimeOfDay, uint64_t computerUtc)
{
    uint64_t secondsOfDay = (computerUtc / kTicksPerSecond) % 86400;
    double computer = static_cast<double>(secondsOfDay) +
                      static_cast<double>(computerUtc % kTicksPerSecond) / static_cast<double>(kTicksPerSecond);
    double offset = computer - gpsTimeOfDay;
    if (offset >= kSecondsPerDay / 2)
        offset -= kSecondsPerDay;
    else if (offset < -kSecondsPerDay / 2)
        offset += kSecondsPerDay;
    return offset;
}

std::wstring ClockOffsetWarning(double offsetSeconds)
{
    if (!(std::fabs(offsetSeconds) > 1.0))
        return {};
    wchar_t text[100];
    std::swprintf(text, 100, L"WARNING: computer clock is %.1f s %ls GPS time\r\n", std::fabs(offsetSeconds),
                  offsetSeconds < 0 ? L"behind" : L"ahead of");
    return text;
}

GpsClockOffset LastGpsClockOffset()
{
    std::lock_guard<std::mutex> lock(offsetMutex);
    return lastOffset;
}

void NoteGpsClockOffset(double offsetSeconds)
{
    std::wstring warning = ClockOffsetWarning(offsetSeconds);
    {
        std::lock_guard<std::mutex> lock(offsetMutex);
        lastOffset = {true, offsetSeconds, lastOffset.measurements + 1};
        if (warning.empty() || warnedThisConnection)
            return;
        warnedThisConnection = true;
    }
    ReportUserMessage(warning.c_str(), true);
}

void ForgetGpsClockWarning()
{
    std::lock_guard<std::mutex> lock(offsetMutex);
    warnedThisConnection = false;
}
