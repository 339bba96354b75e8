#include "video/device_scan_rules.h"

namespace {

DeviceScanVerdict Fault(const wchar_t* line)
{
    DeviceScanVerdict verdict;
    verdict.logicError = line;
    return verdict;
}

// Steps over a device that went away: the first record neither marked
// disconnected nor matched.
DeviceScanVerdict MarkRemoved(std::vector<VideoSourceInfo*>& sources)
{
    for (size_t i = 0; i < sources.size(); ++i) {
        VideoSourceInfo& source = *sources[i];
        if (source.isDisconnected || source.seenAttached)
            continue;
        source.isDisconnected = 1;
        DeviceScanVerdict verdict;
        verdict.index = static_cast<int32_t>(i);
        if (source.isIgnored) {
            verdict.result = IgnoredDeviceRemoved;
            return verdict;
        }
        int activities =
            (source.isActive ? 1 : 0) + (source.isManualRecording ? 1 : 0) + (source.isEventRecording ? 1 : 0);
        if (activities > 1) {
            // The record stays marked: a fault changes only what it had
            // changed when it was found.
            verdict.result = NothingToDo;
            verdict.logicError = L"Device connect / disconnect logic error - active flags count greater than 1\r\n";
            return verdict;
        }
        verdict.result = activities == 0 ? InactiveDeviceRemoved
            : source.isActive            ? ActiveDeviceRemoved
                                         : RecordingDeviceRemoved;
        return verdict;
    }
    return Fault(L"Device disconnect logic error - cannot find removed device in source vector\r\n");
}

DeviceScanVerdict MarkReturned(std::vector<VideoSourceInfo*>& sources)
{
    for (size_t i = 0; i < sources.size(); ++i) {
        VideoSourceInfo& source = *sources[i];
        if (!source.isDisconnected || !source.seenAttached)
            continue;
        source.isDisconnected = 0;
        source.baseFilter = nullptr;
        DeviceScanVerdict verdict;
        verdict.index = static_cast<int32_t>(i);
        if (source.isIgnored)
            verdict.result = IgnoredDeviceReturned;
        else if (source.isManualRecording || source.isEventRecording)
            verdict.result = RecordingDeviceReturned;
        else
            verdict.result = KnownDeviceReturned;
        return verdict;
    }
    return Fault(L"Device connect / disconnect logic error - expected to find a reattached device\r\n");
}

}  // namespace

bool PrepareDeviceScan(std::vector<VideoSourceInfo*>& sources, uint32_t& disconnected, const wchar_t*& logicError)
{
    disconnected = 0;
    logicError = nullptr;
    for (VideoSourceInfo* source : sources) {
        if (!source) {
            logicError = L"Logic error: pointer to VideoSourceInfo is NULL in UpdateSourceVideoInfoList\r\n";
            return false;
        }
        source->seenAttached = 0;
        if (source->isDisconnected)
            ++disconnected;
    }
    return true;
}

DeviceScanVerdict ClassifyDeviceScan(std::vector<VideoSourceInfo*>& sources, std::vector<std::wstring>& attached,
                                     uint32_t disconnected)
{
    // C: the known devices not accounted for by an attached one or a mark.
    // Above 0 a device went away, below 0 one came.
    int64_t change = static_cast<int64_t>(sources.size()) - static_cast<int64_t>(attached.size()) -
        static_cast<int64_t>(disconnected);
    if (change == 0)
        return {};

    for (VideoSourceInfo* source : sources) {
        source->seenAttached = 0;
        for (std::wstring& entry : attached) {
            if (!entry.empty() && entry == source->name) {
                entry.clear();
                source->seenAttached = 1;
                break;
            }
        }
    }
    int32_t unmatched = -1;
    for (size_t i = 0; i < attached.size() && unmatched < 0; ++i)
        if (!attached[i].empty())
            unmatched = static_cast<int32_t>(i);
    if (unmatched >= 0 && change >= 0)
        return Fault(L"Device connect / disconnect logic error - attached devices count problem\r\n");

    if (change > 0)
        return MarkRemoved(sources);
    if (unmatched >= 0) {
        DeviceScanVerdict verdict;
        verdict.result = NewDeviceAppended;
        verdict.newDeviceEntry = unmatched;
        return verdict;
    }
    return MarkReturned(sources);
}

uint32_t ChooseDeviceIndex(const std::vector<VideoSourceInfo*>& sources)
{
    uint32_t first = kNoSource;
    for (uint32_t i = 0; i < sources.size(); ++i) {
        const VideoSourceInfo& source = *sources[i];
        if (source.isIgnored || source.isDisconnected)
            continue;
        if (source.isDefault)
            return i;
        if (first == kNoSource)
            first = i;
    }
    return first;
}

void ChooseCurrentDevice()
{
    currentSourceIndex = ChooseDeviceIndex(videoSources);
}
