#include "tools/synthcam/profiles.h"

#include <dshow.h>
#include <uuids.h>

namespace synthcam {
namespace {

constexpr LONGLONG k30 = 333333;
constexpr LONGLONG k2997 = 333667;
constexpr LONGLONG k25 = 400000;
constexpr LONGLONG k15 = 666667;
constexpr LONGLONG k10 = 1000000;

std::vector<PropertySpec> WebcamProperties(bool brightnessAuto)
{
    return {
        {VideoProcAmp_Brightness, -64, 64, 1, 0, brightnessAuto},
        {VideoProcAmp_Contrast, 0, 100, 1, 50, false},
        {VideoProcAmp_Hue, -180, 180, 1, 0, false},
        {VideoProcAmp_Saturation, 0, 100, 1, 64, false},
        {VideoProcAmp_Sharpness, 0, 7, 1, 3, false},
        {VideoProcAmp_Gain, 0, 100, 1, 0, false},
    };
}

std::vector<PropertySpec> GrabberProperties()
{
    return {
        {VideoProcAmp_Brightness, 0, 255, 1, 128, false},
        {VideoProcAmp_Contrast, 0, 255, 1, 128, false},
        {VideoProcAmp_Hue, -128, 127, 1, 0, false},
        {VideoProcAmp_Saturation, 0, 255, 1, 128, false},
    };
}

std::vector<FormatSpec> WebcamFormats()
{
    return {
        {Subtype::YUY2, 640, 480, k30},    {Subtype::YUY2, 1280, 720, k10},  {Subtype::YUY2, 320, 240, k30},
        {Subtype::YUY2, 160, 120, k30},    {Subtype::YUY2, 640, 480, k15},   {Subtype::RGB24, 640, 480, k30},
        {Subtype::RGB24, 1280, 720, k10},  {Subtype::ARGB32, 640, 480, k30}, {Subtype::RGB24, 352, 288, k30},
        {Subtype::YUY2, 800, 600, k15},
    };
}

std::vector<FormatSpec> GrabberFormats()
{
    return {
        {Subtype::YUY2, 720, 480, k2997}, {Subtype::YUY2, 720, 576, k25},   {Subtype::YUY2, 640, 480, k2997},
        {Subtype::YUY2, 640, 480, k25},   {Subtype::YUY2, 320, 240, k2997}, {Subtype::YUY2, 720, 240, k2997},
    };
}

constexpr long kNtscAndPal = AnalogVideo_NTSC_M | AnalogVideo_PAL_B | AnalogVideo_PAL_D | AnalogVideo_PAL_I |
                             AnalogVideo_PAL_M | AnalogVideo_PAL_N;

std::vector<Profile> MakeProfiles()
{
    std::vector<Profile> profiles;
    profiles.push_back({L"webcam", WebcamFormats(), WebcamProperties(false)});
    {
        Profile grabber{L"usb2820", GrabberFormats(), GrabberProperties()};
        grabber.analog = true;
        grabber.initialStandard = AnalogVideo_NTSC_M;
        grabber.availableStandards = kNtscAndPal;
        profiles.push_back(grabber);
        grabber.name = L"usb2861";
        profiles.push_back(grabber);
        // A grabber whose formats at 25 frames hold no 720x576.
        grabber.name = L"grabber480";
        grabber.formats = {
            {Subtype::YUY2, 720, 480, k2997}, {Subtype::YUY2, 640, 480, k2997}, {Subtype::YUY2, 640, 480, k25}};
        profiles.push_back(grabber);
    }
    {
        Profile bare{L"bare", {{Subtype::YUY2, 640, 480, k30}, {Subtype::YUY2, 320, 240, k30}}, {}};
        bare.droppedFrames = false;
        profiles.push_back(bare);
    }
    profiles.push_back({L"small", {{Subtype::YUY2, 320, 240, k30}, {Subtype::YUY2, 320, 240, k15}},
                        WebcamProperties(false)});
    {
        Profile pald{L"pald", {{Subtype::YUY2, 720, 576, k25}, {Subtype::YUY2, 640, 480, k25}}, GrabberProperties()};
        pald.analog = true;
        pald.initialStandard = AnalogVideo_PAL_D;
        pald.availableStandards = kNtscAndPal;
        profiles.push_back(pald);
    }
    {
        Profile preview{L"preview", {{Subtype::YUY2, 640, 480, k30}, {Subtype::RGB24, 640, 480, k30}},
                        WebcamProperties(false)};
        preview.previewPin = true;
        profiles.push_back(preview);
    }
    profiles.push_back({L"zerorate", {{Subtype::YUY2, 640, 480, 0}, {Subtype::RGB24, 640, 480, 0}},
                        WebcamProperties(false)});
    profiles.push_back({L"uyvy", {{Subtype::UYVY, 640, 480, k30}, {Subtype::UYVY, 720, 576, k25}},
                        WebcamProperties(false)});
    profiles.push_back({L"autobright", WebcamFormats(), WebcamProperties(true)});
    profiles.push_back({L"hd", {{Subtype::YUY2, 1920, 1080, k30}, {Subtype::ARGB32, 1920, 1080, k30}, {Subtype::RGB32, 1920, 1080, k30},
                                {Subtype::RGB24, 1280, 720, k30}},
                        WebcamProperties(false)});
    return profiles;
}

}  // namespace

const std::vector<Profile>& AllProfiles()
{
    static const std::vector<Profile> profiles = MakeProfiles();
    return profiles;
}

const Profile* FindProfile(const std::wstring& name)
{
    for (const Profile& profile : AllProfiles())
        if (name == profile.name)
            return &profile;
    return nullptr;
}

char StandardFamily(long standard)
{
    if (standard & (AnalogVideo_NTSC_M | AnalogVideo_NTSC_M_J | AnalogVideo_NTSC_433))
        return 'N';
    if (standard & (AnalogVideo_PAL_B | AnalogVideo_PAL_D | AnalogVideo_PAL_G | AnalogVideo_PAL_H |
                    AnalogVideo_PAL_I | AnalogVideo_PAL_M | AnalogVideo_PAL_N | AnalogVideo_PAL_60 |
                    AnalogVideo_PAL_N_COMBO))
        return 'P';
    if (standard & AnalogVideo_SECAM_Mask)
        return 'S';
    return 0;
}

int BitsPerPixel(Subtype subtype)
{
    switch (subtype) {
    case Subtype::YUY2:
    case Subtype::UYVY:
        return 16;
    case Subtype::RGB24:
        return 24;
    case Subtype::ARGB32:
    case Subtype::RGB32:
        return 32;
    }
    return 16;
}

int RowStride(Subtype subtype, int width)
{
    return ((BitsPerPixel(subtype) * width + 31) / 8) & ~3;
}

int ImageSize(Subtype subtype, int width, int height)
{
    return RowStride(subtype, width) * (height < 0 ? -height : height);
}

GUID SubtypeGuid(Subtype subtype)
{
    switch (subtype) {
    case Subtype::YUY2:
        return MEDIASUBTYPE_YUY2;
    case Subtype::UYVY:
        return MEDIASUBTYPE_UYVY;
    case Subtype::RGB24:
        return MEDIASUBTYPE_RGB24;
    case Subtype::ARGB32:
        return MEDIASUBTYPE_ARGB32;
    case Subtype::RGB32:
        return MEDIASUBTYPE_RGB32;
    }
    return GUID_NULL;
}

DWORD SubtypeCompression(Subtype subtype)
{
    switch (subtype) {
    case Subtype::YUY2:
        return MAKEFOURCC('Y', 'U', 'Y', '2');
    case Subtype::UYVY:
        return MAKEFOURCC('U', 'Y', 'V', 'Y');
    default:
        return BI_RGB;
    }
}

const wchar_t* SubtypeName(Subtype subtype)
{
    switch (subtype) {
    case Subtype::YUY2:
        return L"YUY2";
    case Subtype::UYVY:
        return L"UYVY";
    case Subtype::RGB24:
        return L"RGB24";
    case Subtype::ARGB32:
        return L"ARGB32";
    case Subtype::RGB32:
        return L"RGB32";
    }
    return L"?";
}

}  // namespace synthcam
