// Bad bytes from the serial line, of every length up to past the program's buffer, read through the GGA rules with a
// guard page right before or after the buffer, so that a single read outside it ends the test program.
#include <gtest/gtest.h>

#include <windows.h>

#include <cwchar>
#include <random>
#include <string>

#include "gps/gga_reading.h"
#include "gps/gps_link.h"
#include "gps/gps_probe.h"
#include "support/guarded_buffer.h"

namespace {

const std::string kBurst = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n"
                           "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n"
                           "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

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
            bytes += kBurst;
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
