#include "ui/device_choice_rules.h"

#include <cwchar>

DeviceRowMaps MapDeviceRows(const std::vector<VideoSourceInfo*>& sources)
{
    DeviceRowMaps maps;
    for (size_t index = 0; index < sources.size(); ++index) {
        const VideoSourceInfo* source = sources[index];
        if (!source || source->isDisconnected)
            continue;
        std::vector<DeviceRow>& rows = source->isIgnored ? maps.ignored : maps.devices;
        rows.push_back({static_cast<int>(rows.size()), static_cast<uint32_t>(index)});
    }
    return maps;
}

uint32_t SourceAtRow(const std::vector<DeviceRow>& rows, int row)
{
    for (const DeviceRow& entry : rows)
        if (entry.row == row)
            return entry.sourceIndex;
    return kNoSource;
}

int RowOfSource(const std::vector<DeviceRow>& rows, uint32_t sourceIndex)
{
    for (const DeviceRow& entry : rows)
        if (entry.sourceIndex == sourceIndex)
            return entry.row;
    return -1;
}

std::wstring DeviceFormatTitleAtRow(const std::vector<VideoSourceInfo*>& sources, const DeviceRowMaps& maps,
                                    uint32_t currentIndex)
{
    std::wstring title;
    uint32_t shown =
        currentIndex > static_cast<uint32_t>(INT32_MAX) ? kNoSource : SourceAtRow(maps.devices, currentIndex);
    if (shown != kNoSource && shown < sources.size() && sources[shown])
        title = sources[shown]->name;
    return title + L" Properties";
}

void SetDefaultDevice(std::vector<VideoSourceInfo*>& sources, uint32_t index, bool checked)
{
    if (index >= sources.size() || !sources[index])
        return;
    if (checked) {
        for (VideoSourceInfo* source : sources)
            if (source)
                source->isDefault = 0;
        sources[index]->isDefault = 1;
    } else {
        sources[index]->isDefault = 0;
    }
}

void MarkOnlyCurrentActive(std::vector<VideoSourceInfo*>& sources, uint32_t currentIndex)
{
    for (size_t index = 0; index < sources.size(); ++index) {
        VideoSourceInfo* source = sources[index];
        if (!source)
            continue;
        bool recording = source->isManualRecording || source->isEventRecording;
        source->isActive = index == currentIndex && !recording && !source->isDisconnected ? 1 : 0;
    }
}

void CollectDeviceChoice(const std::vector<VideoSourceInfo*>& sources, Options& record)
{
    record.ExcludedVideoSource.clear();
    for (const VideoSourceInfo* source : sources) {
        if (!source)
            continue;
        if (source->isDefault) {
            wcsncpy(record.DefaultVideoSource, source->name, kDeviceNameCapacity - 1);
            record.DefaultVideoSource[kDeviceNameCapacity - 1] = 0;
        }
        if (source->isIgnored)
            record.ExcludedVideoSource.push_back(source->name);
    }
}
