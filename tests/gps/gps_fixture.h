// What the tests of the GPS link share: each starts with the link closed and
// no port remembered, with the synthetic receiver at hand and the reported
// lines emptied.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gps/gps_link.h"
#include "support/report_lines.h"
#include "support/synthetic_gps.h"

class GpsFixture : public testing::Test {
protected:
    void SetUp() override
    {
        CloseGps();
        gpsLink.portIndex = -1;
        gpsLink.baudIndex = -1;
        testsupport::TakeReportedLines();
    }
    void TearDown() override { CloseGps(); }

    // The texts reported since the last call.
    static std::vector<std::wstring> Lines()
    {
        std::vector<std::wstring> texts;
        for (const testsupport::ReportedLine& line : testsupport::TakeReportedLines())
            texts.push_back(line.text);
        return texts;
    }

    testsupport::SyntheticGps receiver;
};
