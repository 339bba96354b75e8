// The bounded scans of the receiver's text: numbers read as the platform's C library reads them, never past the end.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <random>
#include <vector>
#include <string>

#include "gps/nmea_scan.h"

namespace {

ByteText Text(const std::string& bytes)
{
    return ByteText{reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()};
}

using Sscanf = int(__cdecl*)(const char*, const char*, ...);

// The C runtime of the platform, as a program built against it would call it.
Sscanf PlatformSscanf()
{
    static HMODULE runtime = LoadLibraryW(L"msvcrt.dll");
    return runtime ? reinterpret_cast<Sscanf>(reinterpret_cast<void*>(GetProcAddress(runtime, "sscanf"))) : nullptr;
}

}  // namespace

// Numbers and the GGA clock read as the platform's sscanf reads "%d.%d" and
// "%2hu%2hu%2hu.%3hu": fields of every kind first, then random ones.
TEST(NmeaScan, NumbersReadAsThePlatformsSscanfReadsThem)
{
    Sscanf platform = PlatformSscanf();
    ASSERT_NE(platform, nullptr);
    // "\240" is a no-break space in front of 12.
    std::vector<std::string> texts = {"4807.038",    "123519.5", " \r\n 12", "12.-5", "12. 5",
                                      "12 .5",       "-5",       "+7",       "- 5",   "99999999999",
                                      "-2147483649", "1e3",      ",",        "",      "\24012"};
    const char alphabet[] = "0123456789012345678901234567890123456789+-. ,\t\nx";
    std::mt19937 random(20240615);
    for (int i = 0; i < 20000; ++i) {
        std::string text(random() % 16, ' ');
        for (char& c : text)
            c = alphabet[random() % (sizeof alphabet - 1)];
        texts.push_back(text);
    }
    for (const std::string& text : texts) {
        int whole = 0, decimals = 0;
        platform(text.c_str(), "%d.%d", &whole, &decimals);
        WholeAndDecimals number = ScanWholeAndDecimals(Text(text), 0);
        ASSERT_EQ(number.whole, whole) << "[" << text << "]";
        ASSERT_EQ(number.decimals, decimals) << "[" << text << "]";
        unsigned short clock[4] = {};
        platform(text.c_str(), "%2hu%2hu%2hu.%3hu", &clock[0], &clock[1], &clock[2], &clock[3]);
        GgaClock scanned = ScanGgaClock(Text(text), 0);
        ASSERT_EQ(scanned.hours, clock[0]) << "[" << text << "]";
        ASSERT_EQ(scanned.minutes, clock[1]) << "[" << text << "]";
        ASSERT_EQ(scanned.seconds, clock[2]) << "[" << text << "]";
        ASSERT_EQ(scanned.decimals, clock[3]) << "[" << text << "]";
    }
}

TEST(NmeaScan, TheTextsEndStopsEveryScan)
{
    // Digits lie behind the end: none of them is read.
    std::string bytes = "12,4807.038";
    ByteText cut{reinterpret_cast<const unsigned char*>(bytes.data()), 4};
    WholeAndDecimals number = ScanWholeAndDecimals(cut, 3);
    EXPECT_EQ(number.whole, 4);
    EXPECT_EQ(number.decimals, 0);
    EXPECT_EQ(FindByte(cut, 0, ','), 2u);
    EXPECT_EQ(FindByte(cut, 3, ','), kNotFound);
    EXPECT_EQ(FindByte(cut, 4, '4'), kNotFound);
    // Positions past the end read as the end.
    EXPECT_EQ(ScanWholeAndDecimals(cut, 100).whole, 0);
    EXPECT_EQ(FindByte(cut, kNotFound, ','), kNotFound);
    size_t at = 9;
    EXPECT_FALSE(MatchByte(cut, at, '.'));
    EXPECT_EQ(TextLength(reinterpret_cast<const unsigned char*>("ab\0cd"), 5), 2u);
    EXPECT_EQ(TextLength(reinterpret_cast<const unsigned char*>("abcde"), 3), 3u);
}
