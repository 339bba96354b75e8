#include "support/recorded_frames.h"

#include <cstdlib>

namespace testsupport {

long MissingStampedFrames(const std::vector<synthcam::FrameStamp>& stamps)
{
    long missing = 0;
    for (size_t i = 1; i < stamps.size(); ++i) {
        if (stamps[i].counter <= stamps[i - 1].counter)
            return -1;
        missing += static_cast<long>(stamps[i].counter - stamps[i - 1].counter - 1);
    }
    return missing;
}

long ReportedDroppedFrames(const std::string& report)
{
    static const char kLine[] = "Number of dropped frames:";
    size_t at = report.find(kLine);
    if (at == std::string::npos)
        return -1;
    const char* digits = report.c_str() + at + sizeof(kLine) - 1;
    while (*digits == ' ')
        ++digits;
    if (*digits < '0' || *digits > '9')
        return -1;
    return std::strtol(digits, nullptr, 10);
}

}  // namespace testsupport
