// What each kind of synthetic device offers: its formats in the order its
// pin lists them, its picture properties, whether it has an analog decoder
// and which standards that decoder reports, and its pins.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace synthcam {

enum class Subtype { YUY2, UYVY, RGB24, ARGB32, RGB32 };

struct FormatSpec {
    Subtype subtype;
    int width;
    int height;
    LONGLONG avgTimePerFrame;  // 100 ns units; 0 where the device doesn't say
};

struct PropertySpec {
    long property;  // VideoProcAmpProperty
    long minimum;
    long maximum;
    long step;
    long defaultValue;
    bool automatic;  // the device reports it as on automatic
};

struct Profile {
    const wchar_t* name;
    std::vector<FormatSpec> formats;
    std::vector<PropertySpec> properties;  // empty: no IAMVideoProcAmp at all
    bool droppedFrames = true;             // IAMDroppedFrames on the capture pin
    bool analog = false;                   // IAMAnalogVideoDecoder
    long initialStandard = 0;              // AnalogVideoStandard the decoder starts with
    long availableStandards = 0;
    bool previewPin = false;               // a separate "Preview" pin
};

// The profile of that name, or nullptr.
const Profile* FindProfile(const std::wstring& name);
const std::vector<Profile>& AllProfiles();

// The standard family a decoder setting belongs to: 'N' (NTSC), 'P' (PAL),
// 'S' (SECAM) or 0.
char StandardFamily(long standard);

// Row stride and image size as a pin describes them in its BITMAPINFOHEADER.
int BitsPerPixel(Subtype subtype);
int RowStride(Subtype subtype, int width);
int ImageSize(Subtype subtype, int width, int height);
GUID SubtypeGuid(Subtype subtype);
DWORD SubtypeCompression(Subtype subtype);
const wchar_t* SubtypeName(Subtype subtype);

}  // namespace synthcam
