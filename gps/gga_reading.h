// The position in a burst from the receiver: the last complete "$GPGGA"
// sentence of what one read brought, taken apart field by field with plain
// scans into four short texts for the observer and the recording's report.
// Nothing here touches the port or a window.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

constexpr int kGpsPositionTextCapacity = 50;
constexpr int kGpsShortTextCapacity = 30;
constexpr int kGpsTimeTextCapacity = 20;

// What one reading gave. Each text starts with a blank, as the window shows
// it; the time is parsed into the record but nothing uses it, since the
// computer's clock stays the only time source.
struct GpsReading {
    wchar_t latitudeText[kGpsPositionTextCapacity];  // " %.6f %c"
    wchar_t longitudeText[kGpsPositionTextCapacity];  // the same
    wchar_t altitudeText[kGpsShortTextCapacity];  // " %d.%d M"
    wchar_t satellitesText[kGpsShortTextCapacity];  // " %d"
    wchar_t timeText[kGpsTimeTextCapacity];  // "%2.2hu:%2.2hu:%2.2hu.%3.3hu"
    SYSTEMTIME time;  // today's UTC date with the sentence's time of day
    uint32_t sentenceBytes;  // from the sentence's start to the end of the text
    int64_t sentenceStart;  // where the sentence starts in the buffer; -1 for none
    uint32_t timeFieldOffset;  // always 7
    // The time field read as it is meant, "hhmmss.ss", in seconds after
    // midnight, for the check of the computer's clock; not known for an
    // empty or malformed field.
    bool timeOfDayKnown;
    double timeOfDay;
};

enum class GgaParse {
    Read,  // the reading is filled
    NoSentence,  // "Cannot find GPGGA string"
    FieldsCutOff,  // a comma is missing: no message
};

// The last "$GPGGA" of the text that starts at or before `lastStart`, or -1.
// A sentence counts only when all six of its letters lie inside the text.
int64_t FindLastGga(const unsigned char* text, size_t textLength, int64_t lastStart);

// Reads the sentence out of the buffer after a read of `bytesRead` bytes into
// its start. The text is the buffer up to its first zero byte, which may run
// on into what an earlier read left behind. The last "$GPGGA" that starts
// within the bytes read is taken, or the one before it when fewer than 58
// bytes of the read stand behind it. With no sentence at all in a read of 57
// bytes or more the position is -1, as the rule's arithmetic has it: the
// time is then scanned from byte 6. `utcNow` gives the date.
//
// Latitude and longitude are whole / 100 + ((whole mod 100) * 10,000 +
// decimals) / 1,000,000 of the "%d.%d" field: the digits behind the point are
// those of the minutes, and a field with fewer than four decimals lands them
// elsewhere (4807.038 gives 48.070038). The hemisphere letter is the byte
// behind the next comma, so a missing letter shifts the fields after it.
// The altitude's decimals print as an integer (545.04 gives 545.4) and its
// unit is always M; the time's decimals are milliseconds as an integer
// (.5 gives 5). Nothing is validated and the checksum isn't read.
//
// The reading is zeroed first. The buffer is only read, never past
// `capacity` nor past the text's end.
GgaParse ParseGgaBuffer(const unsigned char* buffer, size_t capacity, size_t bytesRead, const SYSTEMTIME& utcNow,
                        GpsReading& reading);

// A reading's text as the report and the last reading keep it: without its
// leading blank. An empty text stays empty.
const wchar_t* GpsReadingValue(const wchar_t* text);
