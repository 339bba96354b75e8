// The run report's text and its file name.
#include "video/run_report.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

TEST(RunReport, LinesFollowTheRecordingKindCountsAndGps)
{
    RunReportInput input;
    input.startLine = L"Start recording at 01:02:03 (UTC)";
    input.stopLine = L"Stop recording at 01:02:13 (UTC)";
    input.useCurrentDirectory = true;
    input.currentDirectory = L"C:\\obs";
    input.filePath = L"VideoFiles\\a.avi";
    input.hasFrameCounts = true;
    input.recordedFrames = 0;
    input.droppedFrames = 0;
    input.deviceName = L"Cam";
    input.deviceStandard = 1;
    input.frameRateText = L"25";
    input.formatName = L"720 x 576";
    input.subtypeName = L"YUY2";
    input.codecName = L"NONE";
    input.rendererChoice = 3;
    EXPECT_EQ(BuildRunReport(input),
              L"Manual recording\r\nStart recording at 01:02:03 (UTC)\r\nStop recording at 01:02:13 (UTC)\r\n"
              L"Video file:  C:\\obs\\VideoFiles\\a.avi\r\nNumber of recorded frames:  0\r\n"
              L"Number of dropped frames:  0\r\nVideo source device: Cam\r\nSource device format: PAL\r\n"
              L"Frame rate: 25\r\nFrame size: 720 x 576\r\nFormat subtype: YUY2\r\nCodec: NONE\r\n"
              L"Video renderer: None - video display off during recording\r\n");

    // An event's heading has no name behind it; no counts without the
    // interface; GPS lines for a snapshot with a value missing.
    input.eventRecording = true;
    input.useCurrentDirectory = false;
    input.hasFrameCounts = false;
    input.gpsSnapshotValid = true;
    input.latitude = L"52.1";
    input.longitude = L"-4.2";
    input.satellites = L"7";
    input.deviceStandard = 3;
    input.rendererChoice = 1;
    std::wstring text = BuildRunReport(input);
    EXPECT_EQ(text.substr(0, 19), L"Event recording: \r\n");
    EXPECT_NE(text.find(L"Video file:  VideoFiles\\a.avi\r\nTotal frame count and dropped frame count are not "
                        L"avaiable\r\nLatitude: 52.1\r\nLongitude: -4.2\r\nAltitude value not available\r\n"
                        L"Number of satellites: 7\r\nVideo source device: Cam\r\nSource device format: Unknown\r\n"),
              std::wstring::npos)
        << testing::PrintToString(text);
    EXPECT_NE(text.find(L"Video renderer: VMR9\r\n"), std::wstring::npos);
}

TEST(RunReport, PathTakesTxtAtTheLastDotOrNothing)
{
    EXPECT_EQ(RunReportPath(L"VideoFiles\\a.b.avi"), L"VideoFiles\\a.b.txt");
    EXPECT_EQ(RunReportPath(L"C:\\v.d\\file"), L"C:\\v.txt");
    EXPECT_EQ(RunReportPath(L"noextension"), L"");
    // The first character isn't looked at.
    EXPECT_EQ(RunReportPath(L".avi"), L"");
    EXPECT_EQ(RunReportPath(L""), L"");
}

TEST(RunReport, WrittenInTextModeWithEveryLineEndDoubledCarriageReturn)
{
    TempFolder folder;
    std::wstring path = folder.File(L"report.txt");
    bool defaulted = true;
    std::string narrowPath = NarrowReportText(path, &defaulted);
    EXPECT_FALSE(defaulted);
    std::string text = NarrowReportText(L"Manual recording\r\nCodec: NONE\r\n", &defaulted);
    EXPECT_FALSE(defaulted);
    WriteRunReportText(narrowPath, text);
    EXPECT_EQ(ReadFileBytes(path), "Manual recording\r\r\nCodec: NONE\r\r\n");
    // A name with no narrow form is written with the default character and
    // told.
    text = NarrowReportText(L"Video source device: \u4e2d\r\n", &defaulted);
    EXPECT_TRUE(defaulted);
    WriteRunReportText(narrowPath, text);
    EXPECT_EQ(ReadFileBytes(path), "Video source device: ?\r\r\n");
}

TEST(RunReport, TextPastTheBufferIsCutWhereTheBufferFills)
{
    bool defaulted = true;
    EXPECT_EQ(NarrowReportText(std::wstring(1023, L'a'), &defaulted), std::string(1023, 'a'));
    EXPECT_FALSE(defaulted);
    EXPECT_EQ(NarrowReportText(std::wstring(1024, L'b'), &defaulted), std::string(1023, 'b'));
    EXPECT_EQ(NarrowReportText(std::wstring(5000, L'c') + L"\u4e2d", &defaulted), std::string(1023, 'c'));
    EXPECT_FALSE(defaulted) << "the character past the cut is never converted";
    EXPECT_EQ(NarrowReportText(L"", &defaulted), "");
}
