// Readings of the open link against the synthetic receiver's scripts: what
// the platform's serial reads bring, and what the reading makes of it.
#include <gtest/gtest.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "e2e/harness.h"
#include "gps/gps_link.h"
#include "gps/clock_check.h"
#include "gps/gps_reader.h"
#include "gps_fixture.h"
#include "support/handle_count.h"

namespace {

class GpsReadingTest : public GpsFixture {
protected:
    // The receiver on COM3, its clock that many seconds ahead, and the link to it.
    void Connect(int baud, const std::string& script, double clockAheadSeconds = 0)
    {
        ASSERT_TRUE(receiver.Start(3, baud, script, false, clockAheadSeconds));
        ASSERT_EQ(ConnectGps(nullptr), 1);
        testsupport::TakeReportedLines();
    }

    // Switches the script and lets a burst of the old one pass.
    void ChangeScript(const std::string& script)
    {
        ASSERT_TRUE(receiver.SetScript(script));
        ASSERT_TRUE(receiver.WaitLogged("script " + script, 3000));
        GpsReading reading;
        ReadGpsSentence(reading);
        testsupport::TakeReportedLines();
    }
};

}  // namespace

// Steady bursts give the position sent. Each read starts in the silence
// between bursts and so takes a whole burst: a zero byte at the burst's
// start ends the text there, which fails silently as a missing comma; a
// burst shorter than a GGA sentence with none in it says so each time (a
// longer one is parsed from its start all the same). Silence reports every
// failed attempt of the retries.
TEST_F(GpsReadingTest, EachScriptsBurstsEndInTheirOutcome)
{
    const struct {
        const char* script;
        const wchar_t* line;  // said at each failed reading
    } kCases[] = {
        {"zerobyte", nullptr},
        {"nogga", L"Cannot find GPGGA string\r\n"},
    };
    Connect(4800, "steady");
    GpsReading steady;
    ASSERT_EQ(ReadGpsWithRetry(steady), 1);
    EXPECT_STREQ(steady.latitudeText, L" 48.070038 N");
    EXPECT_STREQ(steady.altitudeText, L" 545.4 M");
    // The receiver's clock is the computer's: the sentence's time is today's.
    SYSTEMTIME now{};
    GetSystemTime(&now);
    EXPECT_EQ(steady.time.wYear, now.wYear);
    EXPECT_LE(std::abs((steady.time.wHour * 60 + steady.time.wMinute) - (now.wHour * 60 + now.wMinute)), 1);
    // The buffer is cleared behind the reading.
    for (uint32_t i = 0; i < gpsReadSize + 20; ++i)
        ASSERT_EQ(gpsBuffer[i], 0) << "byte " << i;
    EXPECT_TRUE(Lines().empty());

    for (const auto& c : kCases) {
        SCOPED_TRACE(c.script);
        ChangeScript(c.script);
        for (int i = 0; i < 3; ++i) {
            GpsReading reading;
            EXPECT_EQ(ReadGpsSentence(reading), 0);
        }
        EXPECT_EQ(Lines(), std::vector<std::wstring>(c.line ? 3 : 0, c.line ? c.line : L""));
    }

    ChangeScript("silence");
    // Small reads, so that 101 empty ones pass quickly: each waits 2 ms a byte.
    gpsReadSize = 5;
    GpsReading reading;
    EXPECT_EQ(ReadGpsWithRetry(reading), 0);
    std::vector<std::wstring> lines = Lines();
    EXPECT_EQ(lines.size(), 101u);
    for (const std::wstring& line : lines)
        EXPECT_EQ(line, L"Zero bytes read for GPS values refresh\r\n");
}

TEST_F(GpsReadingTest, BurstFarLargerThanTheReadIsReadInPiecesOfTheReadSize)
{
    Connect(38400, "flood");
    // Each piece holds whole sentences with altitudes counting up; the last
    // whole one of the piece is taken.
    std::vector<std::wstring> altitudes;
    for (int i = 0; i < 3; ++i) {
        GpsReading reading;
        ASSERT_EQ(ReadGpsWithRetry(reading), 1);
        std::wstring altitude = reading.altitudeText;
        EXPECT_EQ(altitude.substr(altitude.size() - 4), L".0 M") << testing::PrintToString(altitude);
        altitudes.push_back(altitude);
    }
    EXPECT_NE(altitudes[0], altitudes[1]);
}

TEST_F(GpsReadingTest, HangUpGivesEmptyReadsAndClosingLeavesNoHandleBehind)
{
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    long before = testsupport::ProcessHandleCount(GetCurrentProcessId());
    ASSERT_GT(before, 0);
    ASSERT_EQ(ConnectGps(nullptr), 1);
    GpsReading reading;
    ASSERT_EQ(ReadGpsWithRetry(reading), 1);
    ASSERT_TRUE(receiver.HangUp());
    testsupport::TakeReportedLines();
    // The line is gone: the platform's read waits out its timeout and
    // brings nothing, each time.
    for (int i = 0; i < 2; ++i) {
        ULONGLONG started = GetTickCount64();
        EXPECT_EQ(ReadGpsSentence(reading), 0);
        EXPECT_GE(GetTickCount64() - started, 1500u);
    }
    std::vector<testsupport::ReportedLine> lines = testsupport::TakeReportedLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].text, L"Zero bytes read for GPS values refresh\r\n");
    EXPECT_TRUE(lines[0].withTimeStamp);
    CloseGps();
    EXPECT_EQ(testsupport::ProcessHandleCount(GetCurrentProcessId()), before);
    // A closed link fails without reading, and with no line.
    EXPECT_EQ(ReadGpsWithRetry(reading), 0);
    EXPECT_TRUE(Lines().empty());
}

// Each reading sets the GGA's time against the computer's when the burst
// began: a receiver 3 s ahead is reported once, as the computer being
// behind; one in step, or one whose sentences carry no time, is not.
TEST_F(GpsReadingTest, EachReadingChecksTheComputerClockAndAnOffsetBeyondASecondIsToldOnce)
{
    struct Case {
        const char* script;
        double ahead;
        bool warned;
    } cases[] = {
        {"steady", 3.0, true},
        {"steady", 0.0, false},
        {"notime", 3.0, false},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.script) + " " + std::to_string(each.ahead));
        Connect(4800, each.script, each.ahead);
        // Readings at different moments of the bursts, one after the port
        // has gathered five seconds of them as between two refreshes of the
        // GPS window: a sentence that was waiting isn't timed, one that came
        // during the read is.
        long before = LastGpsClockOffset().measurements;
        for (DWORD pause : {0u, 230u, 1300u, 5200u, 460u, 0u}) {
            Sleep(pause);
            GpsReading reading;
            ASSERT_EQ(ReadGpsWithRetry(reading), 1);
        }
        GpsClockOffset offset = LastGpsClockOffset();
        if (each.script == std::string("steady")) {
            std::printf("receiver %.1f s ahead: %ld of 6 readings timed, the last computer minus GPS %.3f s\n",
                        each.ahead, offset.measurements - before, offset.seconds);
            EXPECT_GT(offset.measurements, before);
            EXPECT_NEAR(offset.seconds, -each.ahead, 0.3);
        } else {
            EXPECT_EQ(offset.measurements, before) << "a sentence without a time is never compared";
        }
        std::vector<std::wstring> lines = Lines();
        size_t warnings = 0;
        for (const std::wstring& line : lines) {
            if (line.rfind(L"WARNING: computer clock is ", 0) != 0)
                continue;
            ++warnings;
            double seconds = 0;
            wchar_t side[16] = {};
            ASSERT_EQ(swscanf(line.c_str(), L"WARNING: computer clock is %lf s %15ls GPS time", &seconds, side), 2);
            EXPECT_STREQ(side, L"behind");
            EXPECT_NEAR(seconds, each.ahead, 0.3);
        }
        EXPECT_EQ(warnings, each.warned ? 1u : 0u) << lines.size() << " lines";
        receiver.Stop();
        CloseGps();
    }
}
