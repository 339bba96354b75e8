// The position read out of a receiver's burst: each rule of the GGA reading as a case over the bytes of one read;
// what counts as a receiver's answer while the ports are searched; then bad bytes from the serial line, of every
// length up to past the program's buffer, read with a guard page right before or after the buffer, so that a single
// read outside it ends the test program.
#include <gtest/gtest.h>

#include <windows.h>

#include <cwchar>
#include <random>
#include <string>
#include <vector>

#include "gps/gga_reading.h"
#include "gps/gps_link.h"
#include "gps/gps_probe.h"
#include "support/guarded_buffer.h"
#include "support/times.h"

namespace {

const std::string kMunich = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
// What a receiver sends between its GGA sentences.
const std::string kBetween = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n"
                             "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

const SYSTEMTIME kToday{2031, 7, 0, 14, 23, 0, 0, 0};

struct Parsed {
    GgaParse outcome;
    GpsReading reading;
};

// The bytes at the start of a buffer of the program's size, the rest zero.
std::vector<unsigned char> Buffer(const std::string& bytes)
{
    std::vector<unsigned char> buffer(kGpsBufferSize, 0);
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    return buffer;
}

// The bytes in a buffer after a read of `bytesRead` bytes (all of them when -1).
Parsed Parse(const std::string& bytes, long bytesRead = -1)
{
    std::vector<unsigned char> buffer = Buffer(bytes);
    Parsed parsed{};
    size_t read = bytesRead < 0 ? bytes.size() : static_cast<size_t>(bytesRead);
    parsed.outcome = ParseGgaBuffer(buffer.data(), buffer.size(), read, kToday, parsed.reading);
    return parsed;
}

// Latitude, longitude, altitude, satellites and time, as shown, between bars.
std::wstring Texts(const GpsReading& reading)
{
    return std::wstring(reading.latitudeText) + L"|" + reading.longitudeText + L"|" + reading.altitudeText + L"|" +
        reading.satellitesText + L"|" + reading.timeText;
}

// A GGA sentence with the given fields behind the name.
std::string Gga(const std::string& fields)
{
    return "$GPGGA," + fields + "*00\r\n";
}

class Bytes {
public:
    explicit Bytes(uint32_t seed) : random_(seed) {}

    size_t Below(size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    // Lengths spread over every scale, from nothing to past the buffer.
    size_t Length()
    {
        const size_t scales[] = {80, 1200, 6000, kGpsBufferSize + 2000};
        return Below(scales[Below(4)]);
    }

    std::string Random(size_t length, const std::string& alphabet)
    {
        std::string bytes(length, ' ');
        for (char& byte : bytes)
            byte = alphabet.empty() ? static_cast<char>(random_()) : alphabet[Below(alphabet.size())];
        return bytes;
    }

    // Whole bursts, then flipped, cut, doubled and inserted bytes.
    std::string Mutated(size_t length)
    {
        std::string bytes;
        while (bytes.size() < length)
            bytes += kMunich + kBetween;
        bytes.resize(length);
        size_t mutations = 1 + Below(12);
        const std::string inserts[] = {",", std::string(1, '\0'), "-", "$GPGGA", ".", "9999999999999", " ", "\r\n"};
        for (size_t i = 0; i < mutations && !bytes.empty(); ++i) {
            size_t at = Below(bytes.size());
            switch (Below(4)) {
            case 0:
                bytes[at] = static_cast<char>(random_());
                break;
            case 1:
                bytes.erase(at, Below(40));
                break;
            case 2:
                bytes.insert(at, inserts[Below(std::size(inserts))]);
                break;
            default:
                bytes.resize(at);
                break;
            }
        }
        return bytes;
    }

    // A sentence whose fields are far longer than any number.
    std::string LongFields(size_t length)
    {
        std::string digits = Random(length, "0123456789");
        return "$GPGGA," + digits + "." + digits + "," + digits + "." + digits + ",N," + digits + ",E,1," + digits +
            ",0.9," + "-" + digits + "." + digits + ",M,,*00\r\n";
    }

private:
    std::mt19937 random_;
};

void ExpectTerminated(const wchar_t* text, size_t capacity, const char* field, int index)
{
    EXPECT_LT(wcsnlen(text, capacity), capacity) << field << " of case " << index;
}

}  // namespace

// Each read ends in its outcome; a reading gives the five texts as the rules make them, a failed search leaves them
// empty.
TEST(GgaReading, EachReadEndsInItsOutcomeAndTheTextsAsTheRulesGiveThem)
{
    const std::wstring munich = L" 48.070038 N| 11.310000 E| 545.4 M| 8|12:35:19.000";
    const std::string later = Gga("123520,5107.0000,S,00131.0000,W,1,09,0.9,100.0,M,,M,,");
    ASSERT_GT(later.size(), 58u);
    const std::string padding(60, ' ');
    const std::string burst = kMunich + kBetween;
    auto zeroAfter = [](std::string text, const char* field) {
        text[text.find(field) + 1] = '\0';
        return text;
    };
    struct Case {
        std::string what;
        std::string bytes;
        std::wstring texts;  // unless the fields are cut off
        double seconds;  // the time of day that the clock check reads; -1: none
        GgaParse outcome = GgaParse::Read;
    };
    std::vector<Case> cases = {
        {"three decimals land in the wrong place", kMunich + kBetween, munich, 45319},
        {"four decimals read as minutes", Gga("123519,4807.0380,N,01131.0000,E,1,08,0.9,545.4,M,46.9,M,,") + kBetween,
         L" 48.070380 N| 11.310000 E| 545.4 M| 8|12:35:19.000", 45319},
        {"altitude decimals print as an integer",
         Gga("123519,4807.038,N,01131.000,E,1,08,0.9,545.04,M,,M,,") + kBetween, munich, 45319},
        // ".5" is half a second for the clock check, though the text makes it 5 ms.
        {"time decimals are milliseconds as an integer",
         Gga("123519.5,4807.038,N,01131.000,E,1,08,0.9,545.4,M,,M,,") + kBetween,
         L" 48.070038 N| 11.310000 E| 545.4 M| 8|12:35:19.005", 45319.5},
        {"an empty time field is read, but gives no time for the check",
         Gga(",4807.038,N,01131.000,E,1,08,0.9,545.4,M,,M,,") + kBetween,
         L" 48.070038 N| 11.310000 E| 545.4 M| 8|00:00:00.000", -1},
        {"south and west by the letter only", Gga("000001,3352.1234,S,15112.5000,W,1,11,0.8,3.0,M,,M,,") + kBetween,
         L" 33.521234 S| 151.125000 W| 3.0 M| 11|00:00:01.000", 1},
        {"three-digit longitude", Gga("235959,0000.0000,N,11731.0000,E,2,12,0.7,1.5,M,,M,,") + kBetween,
         L" 0.000000 N| 117.310000 E| 1.5 M| 12|23:59:59.000", 86399},
        {"negative altitude", Gga("101010,5130.0000,N,00007.0000,W,1,05,1.1,-12.3,M,,M,,") + kBetween,
         L" 51.300000 N| 0.070000 W| -12.3 M| 5|10:10:10.000", 36610},
        // No fix: empty fields scan as zero, the letter is the next comma,
        // and the missing letters shift what follows.
        {"no fix", "$GPGGA,123519,,,,,0,00,,,M,,M,,*66\r\n" + kBetween,
         L" 0.000000 ,| 0.000000 0| 0.0 M| 0|12:35:19.000", 45319},
        // No sentence in 57 bytes or more: the fields are read from byte 6
        // of the buffer, here from an RMC sentence.
        {"no GGA in a long read", "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n",
         L" 1235.190000 A| 48.070038 N| 84.4 M| 0|00:00:00.000", -1},
        // The last sentence too close to the end gives way to the one before.
        {"58 bytes behind the last: it stands", kMunich + later.substr(0, 58),
         L" 51.070000 S| 1.310000 W| 100.0 M| 9|12:35:20.000", 45320},
        {"57 bytes behind the last: the one before", kMunich + later.substr(0, 57), munich, 45319},
        {"cut with none before", later.substr(0, 57), L"||||", -1, GgaParse::NoSentence},
        {"cut behind other sentences with none before", kBetween.substr(0, 30) + later.substr(0, 40), L"||||", -1,
         GgaParse::NoSentence},
        {"56 bytes", std::string(56, 'x'), L"||||", -1, GgaParse::NoSentence},
        // 57 bytes: position -1, and with no comma in the text the fields
        // are cut off, with no message.
        {"57 bytes", std::string(57, 'x'), L"", -1, GgaParse::FieldsCutOff},
        {"another sentence", "$GPRMC,1,A,2", L"||||", -1, GgaParse::NoSentence},
        // A name that starts within the read but runs past the text's end isn't one.
        {"the name cut", "$GPGG", L"||||", -1, GgaParse::NoSentence},
        // The text ends at the first zero byte: in front of the burst there
        // is no sentence and no comma in a long read; inside the altitude it
        // cuts the field; inside the dilution it takes the comma in front of
        // the altitude.
        {"a zero byte in front", std::string(1, '\0') + burst, L"", -1, GgaParse::FieldsCutOff},
        {"a zero byte in the altitude", zeroAfter(burst, "545.4"), L" 48.070038 N| 11.310000 E| 5.0 M| 8|12:35:19.000",
         45319},
        {"a zero byte in the dilution", zeroAfter(burst, "0.9"), L"", -1, GgaParse::FieldsCutOff},
    };
    // A missing comma fails without a message: the sentence cut in front of
    // each comma from the time's to the dilution's.
    size_t comma = kMunich.find(',');
    for (int field = 0; field < 8; ++field) {
        comma = kMunich.find(',', comma + 1);
        cases.push_back({"cut in front of comma " + std::to_string(field + 2), kMunich.substr(0, comma) + padding, L"",
                         -1, GgaParse::FieldsCutOff});
    }
    // One comma more and the altitude, empty, reads as zero.
    cases.push_back({"an empty altitude", kMunich.substr(0, comma + 1) + padding,
                     L" 48.070038 N| 11.310000 E| 0.0 M| 8|12:35:19.000", 45319});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Parsed parsed = Parse(c.bytes);
        ASSERT_EQ(parsed.outcome, c.outcome);
        if (c.outcome != GgaParse::FieldsCutOff) {
            EXPECT_EQ(Texts(parsed.reading), c.texts);
        }
        if (c.outcome == GgaParse::Read) {
            EXPECT_EQ(parsed.reading.timeFieldOffset, 7u);
            EXPECT_EQ(parsed.reading.timeOfDayKnown, c.seconds >= 0);
        }
        if (c.seconds >= 0) {
            EXPECT_NEAR(parsed.reading.timeOfDay, c.seconds, 1e-9);
        }
    }
}

TEST(GgaReading, TimeOfDayGoesIntoTodaysDateAndTheClockIsLeftAlone)
{
    const std::string sentence = Gga("031415.926,4807.038,N,01131.000,E,1,08,0.9,545.4,M,,M,,");
    Parsed parsed = Parse(sentence + kBetween);
    ASSERT_EQ(parsed.outcome, GgaParse::Read);
    EXPECT_EQ(testsupport::CalendarText(parsed.reading.time), "2031-07-14 03:14:15.926");
    // From the sentence's start to the end of the text.
    EXPECT_EQ(parsed.reading.sentenceBytes, sentence.size() + kBetween.size());
}

TEST(GgaReading, BytesLeftBehindAnEarlierReadLengthenTheText)
{
    // An earlier, failed reading left a burst in the buffer; the next read
    // brought fewer bytes, without a zero, and its text runs on into the old
    // one. The sentence is searched only among the bytes just read.
    std::string bytes = kMunich + kBetween;
    std::string fresh = Gga("130000,1111.1111,N,02222.2222,E,1,04,0.9,7.7,M,,M,,");
    std::copy(fresh.begin(), fresh.end(), bytes.begin());
    Parsed parsed = Parse(bytes, static_cast<long>(fresh.size()));
    ASSERT_EQ(parsed.outcome, GgaParse::Read);
    EXPECT_STREQ(parsed.reading.latitudeText, L" 11.111111 N");
    EXPECT_EQ(parsed.reading.sentenceBytes, bytes.size());
}

TEST(GgaReading, AReadingValueDropsOnlyTheLeadingBlank)
{
    EXPECT_STREQ(GpsReadingValue(L" 48.070038 N"), L"48.070038 N");
    EXPECT_STREQ(GpsReadingValue(L""), L"");
}

TEST(GpsProbe, AnswerIsTheNameAnywhereBeforeTheFirstZeroByte)
{
    struct Case {
        const char* what;
        std::string bytes;
        bool answered;
    };
    const Case cases[] = {
        {"a whole sentence", kMunich, true},
        {"the name alone, cut off", "xx$GPRMC,1,2\r\n$GPGGA", true},
        {"deep in the read", std::string(590, 'x') + "$GPGGA", true},
        {"other sentences only", "$GPRMC,123519,A,4807.038,N*6A\r\n$GPGSA,A,3*39\r\n", false},
        {"a zero byte before the name", "$GPRMC,1\r\n" + std::string(1, '\0') + "$GPGGA,123519,", false},
        {"garbage of a wrong rate", "\x80\xf8\xfe\xe0\x1c\x7f\xff\x03\xc0", false},
        {"nothing", "", false},
        {"lower case", "$gpgga,123519", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ProbeFindsGga(Buffer(c.bytes).data(), kGpsBufferSize), c.answered) << c.what;
}

TEST(GpsProbe, ReadSizeIsAnEighthOfTheRateAndAtLeast1000)
{
    const std::pair<uint32_t, uint32_t> cases[] = {{38400, 4800}, {4800, 1000}, {8007, 1000}, {115200, 14400}};
    for (auto [rate, size] : cases)
        EXPECT_EQ(GpsReadSizeForRate(rate), size) << rate;
}

TEST(GpsProbe, ConnectionLineNamesThePortNumberAndRate)
{
    EXPECT_EQ(GpsConnectText(0, 38400), L"COM1 at 38400 baud\r\n");
    EXPECT_EQ(GpsConnectText(8, 9600), L"COM9 at 9600 baud\r\n");
    EXPECT_EQ(GpsConnectText(11, 19200), L"COM12 at 19200 baud\r\n");
}

TEST(GgaRobustness, TenThousandBadBuffersNeverReadOutsideTheBuffer)
{
    GuardedBuffer guardedBehind(kGpsBufferSize, true);
    GuardedBuffer guardedInFront(kGpsBufferSize, false);
    ASSERT_NE(guardedBehind.data(), nullptr);
    ASSERT_NE(guardedInFront.data(), nullptr);
    Bytes bytes(8675309);
    SYSTEMTIME today{2031, 7, 1, 14, 0, 0, 0, 0};
    int outcomes[3] = {};
    for (int i = 0; i < 10000; ++i) {
        unsigned char* buffer = (i % 2 == 0) ? guardedBehind.data() : guardedInFront.data();
        std::string content;
        switch (bytes.Below(5)) {
        case 0:
            content = bytes.Random(bytes.Length(), "");
            break;
        case 1:
            content = bytes.Random(bytes.Length(), "$GPGA,,,,.0123456789NSEWM*\r\n-+ ");
            break;
        case 2:
            content = bytes.LongFields(bytes.Below(400));
            break;
        default:
            content = bytes.Mutated(bytes.Length());
            break;
        }
        size_t filled = std::min(content.size(), kGpsBufferSize);
        std::copy(content.begin(), content.begin() + filled, buffer);
        // Most reads land in a buffer zeroed behind them; some in one still
        // full from an earlier read, and some in one with no zero byte at all.
        size_t tail = bytes.Below(10) == 0 ? kGpsBufferSize - filled : 0;
        if (tail && bytes.Below(2))
            std::fill(buffer + filled, buffer + kGpsBufferSize, static_cast<unsigned char>('7'));
        size_t bytesRead = bytes.Below(3) == 0 ? bytes.Below(kGpsBufferSize + 5000) : content.size();

        GpsReading reading;
        GgaParse outcome = ParseGgaBuffer(buffer, kGpsBufferSize, bytesRead, today, reading);
        ASSERT_TRUE(outcome == GgaParse::Read || outcome == GgaParse::NoSentence || outcome == GgaParse::FieldsCutOff);
        ++outcomes[static_cast<int>(outcome)];
        ExpectTerminated(reading.latitudeText, kGpsPositionTextCapacity, "latitude", i);
        ExpectTerminated(reading.longitudeText, kGpsPositionTextCapacity, "longitude", i);
        ExpectTerminated(reading.altitudeText, kGpsShortTextCapacity, "altitude", i);
        ExpectTerminated(reading.satellitesText, kGpsShortTextCapacity, "satellites", i);
        ExpectTerminated(reading.timeText, kGpsTimeTextCapacity, "time", i);
        if (outcome == GgaParse::Read) {
            EXPECT_EQ(reading.timeFieldOffset, 7u);
        }
        ProbeFindsGga(buffer, kGpsBufferSize);

        std::fill(buffer, buffer + filled, 0);
        if (tail)
            std::fill(buffer + filled, buffer + kGpsBufferSize, 0);
    }
    // Each outcome came up often enough for the cases to mean something.
    EXPECT_GT(outcomes[static_cast<int>(GgaParse::Read)], 1000);
    EXPECT_GT(outcomes[static_cast<int>(GgaParse::NoSentence)], 500);
    EXPECT_GT(outcomes[static_cast<int>(GgaParse::FieldsCutOff)], 500);
}

TEST(GgaRobustness, ABufferWithNoZeroByteIsReadToItsEndAndNoFurther)
{
    GuardedBuffer guarded(kGpsBufferSize, true);
    ASSERT_NE(guarded.data(), nullptr);
    unsigned char* buffer = guarded.data();
    std::fill(buffer, buffer + kGpsBufferSize, static_cast<unsigned char>(','));
    // A sentence 60 bytes from the end whose latitude's digits run up to
    // the guard page.
    const std::string tail = "$GPGGA,," + std::string(52, '1');
    std::copy(tail.begin(), tail.end(), buffer + kGpsBufferSize - tail.size());
    GpsReading reading;
    EXPECT_EQ(ParseGgaBuffer(buffer, kGpsBufferSize, kGpsBufferSize + 100, SYSTEMTIME{}, reading),
              GgaParse::FieldsCutOff);
    EXPECT_TRUE(ProbeFindsGga(buffer, kGpsBufferSize));
}
