#include "support/report_lines.h"

#include <mutex>

#include "base/report.h"

namespace {

std::mutex linesLock;
std::vector<testsupport::ReportedLine> lines;

}  // namespace

void ReportUserMessage(const wchar_t* text, bool withTimeStamp)
{
    std::lock_guard<std::mutex> hold(linesLock);
    lines.push_back({text, withTimeStamp});
}

namespace testsupport {

std::vector<ReportedLine> TakeReportedLines()
{
    std::lock_guard<std::mutex> hold(linesLock);
    std::vector<ReportedLine> taken;
    taken.swap(lines);
    return taken;
}

}  // namespace testsupport
