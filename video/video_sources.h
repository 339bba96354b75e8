// Records of the video capture devices the program knows, their formats and
// the user's choice among them. A selection is always three indexes: device,
// frame-rate group, format.
#pragma once

#include <windows.h>
#include <dshow.h>

#include <cstdint>
#include <vector>

enum VideoSubtype : int32_t {
    SubtypeMJPG = 0,
    SubtypeRGB24 = 1,
    SubtypeUYVY = 2,
    SubtypeYUY2 = 3,
    SubtypeARGB32 = 4,
    SubtypeOther = 5,
    SubtypeNoFormat = 6,
};

enum DeviceStandard : int32_t {
    StandardNTSC = 0,
    StandardPAL = 1,
    StandardDigital = 2,
    StandardUnknown = 3,
};

// The mark for a property without a value.
constexpr int32_t kNoValue = static_cast<int32_t>(0x80000000u);

constexpr int kVideoFormatNameCapacity = 256;
constexpr int kFrameRateTextCapacity = 10;
constexpr int kSourceNameCapacity = 256;

struct VideoFormat {
    AM_MEDIA_TYPE* mediaType;  // owned; handed to IAMStreamConfig::SetFormat
    wchar_t videoFormatName[kVideoFormatNameCapacity];
    int32_t width;
    int32_t height;  // sign kept: negative is top-down
    uint32_t frameRate;
    VideoSubtype subtype;
};

struct VideoFormatsByFrameRate {
    int32_t enabled;
    uint32_t frameRate;
    wchar_t frameRateText[kFrameRateTextCapacity];
    uint32_t currentFormatIndex;
    std::vector<VideoFormat*> formats;
};

struct DeviceProperty {
    int32_t available;
    int32_t value;
    int32_t minimum;
    int32_t maximum;
    int32_t step;
    int32_t defaultValue;
};

struct VideoSourceInfo {
    int32_t isDefault;
    int32_t isIgnored;
    int32_t hasConfiguration;
    int32_t isDisconnected;
    int32_t isActive;
    int32_t isManualRecording;
    int32_t isEventRecording;
    int32_t seenAttached;
    int32_t autoDetect;
    int32_t autoDetectCapable;
    IBaseFilter* baseFilter;
    DeviceStandard deviceStandard;
    DeviceProperty brightness, contrast, hue, saturation, sharpness, gain;
    VideoSubtype savedSubtype;
    uint32_t currentFrameRateIndex;
    std::vector<VideoFormatsByFrameRate*> frameRates;
    wchar_t name[kSourceNameCapacity];
    uint32_t continuationCount;
    wchar_t manualFilePath[kSourceNameCapacity];
};

// Every accepted device; elements are only appended, so an index stays valid
// for the run.
extern std::vector<VideoSourceInfo*> videoSources;
// The device in use; all ones means none.
extern uint32_t currentSourceIndex;
constexpr uint32_t kNoSource = 0xFFFFFFFFu;

// The device in use, or null.
VideoSourceInfo* CurrentSource();
// The device in use is marked as recording, by hand or for an event.
bool CurrentSourceRecording();

// The format at the three indexes of a device, or null when any index is out
// of range (for a given device only the two lower indexes are tested).
const VideoFormat* SelectedFormatOf(const VideoSourceInfo* source);
const VideoFormat* CurrentVideoFormat();
// The subtype of the current format; SubtypeNoFormat when there is none.
VideoSubtype CurrentSubtype();
// Its name into `text` (capacity at least 8), empty when there is no format.
void CurrentSubtypeName(wchar_t* text);

// "MJPG", "RGB24", "UYVY", "YUY2", "ARGB32"; a single blank for anything else.
const wchar_t* SubtypeName(int32_t subtype);
// Exact, case-sensitive; anything unknown gives SubtypeOther.
VideoSubtype SubtypeFromName(const wchar_t* name);
