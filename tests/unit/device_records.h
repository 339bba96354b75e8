// Device records for the rules over the device list, freed with their holder:
// names with flags by letter, and groups of frame rates with formats of given
// sizes.
#pragma once

#include <cwchar>
#include <memory>
#include <string>
#include <vector>

#include "video/video_sources.h"

struct DeviceRecords {
    std::vector<std::unique_ptr<VideoSourceInfo>> owned;
    std::vector<VideoSourceInfo*> sources;
    std::vector<std::unique_ptr<VideoFormatsByFrameRate>> groups;
    std::vector<std::unique_ptr<VideoFormat>> formats;

    DeviceRecords(std::initializer_list<std::pair<const wchar_t*, const char*>> list = {})
    {
        for (const auto& [name, flags] : list)
            Add(name, flags);
    }

    // Flags by letter: A active, M manual recording, E event recording,
    // I ignored, D disconnected, F default.
    VideoSourceInfo& Add(const wchar_t* name, const char* flags = "")
    {
        auto source = std::make_unique<VideoSourceInfo>();
        wcscpy(source->name, name);
        for (const char* flag = flags; *flag; ++flag) {
            source->isActive |= *flag == 'A';
            source->isManualRecording |= *flag == 'M';
            source->isEventRecording |= *flag == 'E';
            source->isIgnored |= *flag == 'I';
            source->isDisconnected |= *flag == 'D';
            source->isDefault |= *flag == 'F';
        }
        sources.push_back(source.get());
        owned.push_back(std::move(source));
        return *owned.back();
    }

    // One mark a device, '1' where the flag is set.
    std::string Flags(int32_t VideoSourceInfo::*flag) const
    {
        std::string marks;
        for (const VideoSourceInfo* source : sources)
            marks += source->*flag ? '1' : '0';
        return marks;
    }

    // The first device, made when there is none.
    VideoSourceInfo& First() { return sources.empty() ? Add(L"Grabber") : *sources[0]; }

    // A group of the first device with formats of the given sizes.
    DeviceRecords& Group(uint32_t rate, std::vector<std::pair<int32_t, int32_t>> sizes, bool enabled = true)
    {
        auto group = std::make_unique<VideoFormatsByFrameRate>();
        group->enabled = enabled ? 1 : 0;
        group->frameRate = rate;
        swprintf(group->frameRateText, kFrameRateTextCapacity, L"%u", rate);
        for (auto [width, height] : sizes) {
            auto format = std::make_unique<VideoFormat>();
            format->width = width;
            format->height = height;
            format->frameRate = rate;
            group->formats.push_back(format.get());
            formats.push_back(std::move(format));
        }
        First().frameRates.push_back(group.get());
        groups.push_back(std::move(group));
        return *this;
    }
};
