// The report channel of a test program that has no User Messages window:
// every reported line is kept, in order, for the test to read.
#pragma once

#include <string>
#include <vector>

namespace testsupport {

struct ReportedLine {
    std::wstring text;
    bool withTimeStamp;
};

// The lines reported since the last call, oldest first.
std::vector<ReportedLine> TakeReportedLines();

}  // namespace testsupport
