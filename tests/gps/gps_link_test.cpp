// The search for the receiver on the prefix's COM ports, against the
// synthetic receiver on a pty: which ports and rates are tried, in what
// order, with what notice, and what the platform's serial port gives.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gps/gps_link.h"
#include "gps_fixture.h"

namespace {

std::vector<bool> notices;

void RecordNotice(bool show)
{
    notices.push_back(show);
}

class GpsLinkTest : public GpsFixture {
protected:
    void SetUp() override
    {
        GpsFixture::SetUp();
        notices.clear();
    }
};

}  // namespace

TEST_F(GpsLinkTest, ReceiverAt4800IsFoundAtItsFourthRateThenRememberedUntilItNoLongerAnswers)
{
    ASSERT_TRUE(receiver.Start(3, 4800, "steady"));
    ASSERT_EQ(ConnectGps(RecordNotice), 1);
    EXPECT_EQ(notices, (std::vector<bool>{true, false})) << "the full scan runs with the notice up";
    EXPECT_EQ(gpsLink.portIndex, 2);
    EXPECT_EQ(gpsLink.baudIndex, 3);
    EXPECT_TRUE(GpsLinkOpen());
    EXPECT_EQ(gpsReadSize.load(), 1000u);
    std::vector<testsupport::ReportedLine> lines = testsupport::TakeReportedLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, L"COM3 at 4800 baud\r\n");
    EXPECT_FALSE(lines[0].withTimeStamp);
    // The receiver saw its port opened at each rate in turn; the three wrong
    // ones read garbage and were closed again.
    EXPECT_EQ(receiver.ClosedAtRates(), (std::vector<int>{38400, 19200, 9600}));

    // Connecting while connected: Wine doesn't refuse a second opening of a
    // port that is open, so the remembered pair answers again, and the
    // earlier handle is replaced without being lost.
    HANDLE first = gpsLink.portHandle;
    ASSERT_EQ(ConnectGps(RecordNotice), 1);
    EXPECT_NE(gpsLink.portHandle.load(), first);
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(first, &flags)) << "the earlier handle is closed";

    // A remembered pair that no longer answers starts the full scan.
    CloseGps();
    ASSERT_TRUE(receiver.Start(5, 9600, "steady"));
    notices.clear();
    Lines();
    ASSERT_EQ(ConnectGps(RecordNotice), 1);
    EXPECT_EQ(notices, (std::vector<bool>{true, false}));
    EXPECT_EQ(gpsLink.portIndex, 4);
    EXPECT_EQ(gpsLink.baudIndex, 2);
    EXPECT_EQ(Lines(), (std::vector<std::wstring>{L"COM5 at 9600 baud\r\n"}));
}

TEST_F(GpsLinkTest, ReceiverOnCom10IsNotFoundAndNothingChanges)
{
    ASSERT_TRUE(receiver.Start(10, 4800, "steady"));
    EXPECT_EQ(ConnectGps(RecordNotice), 0);
    EXPECT_EQ(notices, (std::vector<bool>{true, false}));
    EXPECT_FALSE(GpsLinkOpen());
    EXPECT_EQ(gpsLink.portIndex, -1);
    EXPECT_EQ(gpsLink.baudIndex, -1);
    EXPECT_TRUE(Lines().empty()) << "no line for a failed trial";
    for (const std::string& event : receiver.PortEvents())
        EXPECT_EQ(event.rfind("open", 0), std::string::npos) << "COM10 is never opened: " << event;
}
