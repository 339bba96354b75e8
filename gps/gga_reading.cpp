#include "gps/gga_reading.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gps/clock_check.h"
#include "gps/nmea_scan.h"

namespace {

constexpr unsigned char kGgaName[] = {'$', 'G', 'P', 'G', 'G', 'A'};
constexpr size_t kGgaNameLength = sizeof kGgaName;
// The time field starts behind "$GPGGA,".
constexpr int64_t kTimeFieldOffset = 7;
// The least length a sentence is expected to have.
constexpr int64_t kLeastSentenceBytes = 58;

// Narrow text into a wide field, each byte as the character of its number,
// cut to the field's capacity.
void SetText(wchar_t* field, size_t capacity, const char* text)
{
    size_t length = std::min(std::strlen(text), capacity - 1);
    for (size_t i = 0; i < length; ++i)
        field[i] = static_cast<wchar_t>(static_cast<unsigned char>(text[i]));
    field[length] = 0;
}

unsigned char ByteAt(ByteText text, size_t at)
{
    return at < text.length ? text.bytes[at] : 0;
}

// " %.6f %c" of a latitude or longitude field. A letter that is the end of
// the text ends the text, as a zero character does in the formatted text.
void SetCoordinateText(wchar_t* field, WholeAndDecimals value, unsigned char letter)
{
    double degrees = static_cast<double>(value.whole / 100) +
        (static_cast<double>(value.whole % 100) * 10000.0 + static_cast<double>(value.decimals)) / 1e6;
    char text[64];
    std::snprintf(text, sizeof text, " %.6f %c", degrees, static_cast<char>(letter));
    SetText(field, kGpsPositionTextCapacity, text);
}

}  // namespace

int64_t FindLastGga(const unsigned char* text, size_t textLength, int64_t lastStart)
{
    if (textLength < kGgaNameLength || lastStart < 0)
        return -1;
    int64_t start = std::min<int64_t>(lastStart, static_cast<int64_t>(textLength - kGgaNameLength));
    for (; start >= 0; --start) {
        if (std::memcmp(text + start, kGgaName, kGgaNameLength) == 0)
            return start;
    }
    return -1;
}

GgaParse ParseGgaBuffer(const unsigned char* buffer, size_t capacity, size_t bytesRead, const SYSTEMTIME& utcNow,
                        GpsReading& reading)
{
    reading = GpsReading{};
    const int64_t read = static_cast<int64_t>(std::min(bytesRead, capacity));
    const ByteText text{buffer, TextLength(buffer, capacity)};

    // The last sentence that starts within what was read; the one before it
    // when it may be cut off. No sentence counts as -1, so a read of 57
    // bytes or more without one goes on from position -1.
    int64_t position = FindLastGga(text.bytes, text.length, read - 1);
    if (position + kLeastSentenceBytes > read) {
        position = position < 0 ? -1 : FindLastGga(text.bytes, text.length, position - 1);
        if (position < 0)
            return GgaParse::NoSentence;
    }
    reading.sentenceBytes = static_cast<uint32_t>(static_cast<int64_t>(text.length) - position);
    reading.sentenceStart = position;
    reading.time = utcNow;

    // Even from position -1 the field lies inside the buffer, at byte 6.
    const size_t timeField = static_cast<size_t>(position + kTimeFieldOffset);
    GgaClock clock = ScanGgaClock(text, timeField);
    char timeText[32];
    std::snprintf(timeText, sizeof timeText, "%2.2hu:%2.2hu:%2.2hu.%3.3hu", clock.hours, clock.minutes, clock.seconds,
                  clock.decimals);
    SetText(reading.timeText, kGpsTimeTextCapacity, timeText);
    reading.time.wHour = clock.hours;
    reading.time.wMinute = clock.minutes;
    reading.time.wSecond = clock.seconds;
    reading.time.wMilliseconds = clock.decimals;
    reading.timeFieldOffset = static_cast<uint32_t>(kTimeFieldOffset);
    size_t fieldEnd = FindByte(text, timeField, ',');
    if (fieldEnd != kNotFound)
        reading.timeOfDayKnown = GgaTimeOfDay(reinterpret_cast<const char*>(text.bytes) + timeField,
                                              fieldEnd - timeField, &reading.timeOfDay);

    // Latitude: behind the comma after the time, its letter behind the next.
    size_t comma = FindByte(text, timeField, ',');
    if (comma == kNotFound)
        return GgaParse::FieldsCutOff;
    size_t valueStart = comma + 1;
    WholeAndDecimals latitude = ScanWholeAndDecimals(text, valueStart);
    comma = FindByte(text, valueStart, ',');
    if (comma == kNotFound)
        return GgaParse::FieldsCutOff;
    SetCoordinateText(reading.latitudeText, latitude, ByteAt(text, comma + 1));

    // Longitude: comma, letter, comma, then the value.
    valueStart = comma + 3;
    WholeAndDecimals longitude = ScanWholeAndDecimals(text, valueStart);
    comma = FindByte(text, valueStart, ',');
    if (comma == kNotFound)
        return GgaParse::FieldsCutOff;
    SetCoordinateText(reading.longitudeText, longitude, ByteAt(text, comma + 1));

    // The fix quality is passed over unread; the satellites follow it.
    for (int skip = 0; skip < 2 && comma != kNotFound; ++skip)
        comma = FindByte(text, comma + 1, ',');
    if (comma == kNotFound)
        return GgaParse::FieldsCutOff;
    size_t satellitesStart = comma + 1;
    size_t at = satellitesStart;
    int32_t satellites = 0;
    ScanInt(text, at, satellites);
    char number[32];
    std::snprintf(number, sizeof number, " %d", static_cast<int>(satellites));
    SetText(reading.satellitesText, kGpsShortTextCapacity, number);

    // The horizontal dilution is passed over; the altitude follows it.
    comma = FindByte(text, satellitesStart, ',');
    if (comma != kNotFound)
        comma = FindByte(text, comma + 1, ',');
    if (comma == kNotFound)
        return GgaParse::FieldsCutOff;
    WholeAndDecimals altitude = ScanWholeAndDecimals(text, comma + 1);
    std::snprintf(number, sizeof number, " %d.%d M", static_cast<int>(altitude.whole),
                  static_cast<int>(altitude.decimals));
    SetText(reading.altitudeText, kGpsShortTextCapacity, number);
    return GgaParse::Read;
}

const wchar_t* GpsReadingValue(const wchar_t* text)
{
    return text[0] ? text + 1 : text;
}
