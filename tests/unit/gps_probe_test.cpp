// What counts as a receiver's answer, and what the search makes of the rate it was found at.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gps/gps_link.h"
#include "gps/gps_probe.h"

namespace {

bool Probe(const std::string& bytes)
{
    std::vector<unsigned char> buffer(kGpsBufferSize, 0);
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    return ProbeFindsGga(buffer.data(), buffer.size());
}

}  // namespace

TEST(GpsProbe, AnswerIsTheNameAnywhereBeforeTheFirstZeroByte)
{
    struct Case {
        const char* what;
        std::string bytes;
        bool answered;
    };
    const Case cases[] = {
        {"a whole sentence", "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n", true},
        {"the name alone, cut off", "xx$GPRMC,1,2\r\n$GPGGA", true},
        {"deep in the read", std::string(590, 'x') + "$GPGGA", true},
        {"other sentences only", "$GPRMC,123519,A,4807.038,N*6A\r\n$GPGSA,A,3*39\r\n", false},
        {"a zero byte before the name", "$GPRMC,1\r\n" + std::string(1, '\0') + "$GPGGA,123519,", false},
        {"garbage of a wrong rate", "\x80\xf8\xfe\xe0\x1c\x7f\xff\x03\xc0", false},
        {"nothing", "", false},
        {"lower case", "$gpgga,123519", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Probe(c.bytes), c.answered) << c.what;
}

TEST(GpsProbe, ReadSizeIsAnEighthOfTheRateAndAtLeast1000)
{
    const std::pair<uint32_t, uint32_t> cases[] = {{38400, 4800}, {19200, 2400}, {9600, 1200},
                                                   {4800, 1000},  {8007, 1000},  {115200, 14400}};
    for (auto [rate, size] : cases)
        EXPECT_EQ(GpsReadSizeForRate(rate), size) << rate;
}

TEST(GpsProbe, ConnectionLineNamesThePortNumberAndRate)
{
    EXPECT_EQ(GpsConnectText(2, 4800), L"COM3 at 4800 baud\r\n");
    EXPECT_EQ(GpsConnectText(0, 38400), L"COM1 at 38400 baud\r\n");
    EXPECT_EQ(GpsConnectText(8, 9600), L"COM9 at 9600 baud\r\n");
    EXPECT_EQ(GpsConnectText(11, 19200), L"COM12 at 19200 baud\r\n");
}
