#include "e2e/screen_stamp.h"

#include <string>

#include <gtest/gtest.h>

#include <windows.h>

#include "e2e/harness.h"

namespace e2e {

namespace {

// Cuts a rectangle out of a screenshot into raw bytes of the given ImageMagick
// form ("gray", "rgb"), after any further operations, and reads them back.
bool CutScreenshot(const std::string& name, const std::string& crop, const std::string& operations,
                   const std::string& form, size_t wantedBytes, std::string* bytes)
{
    if (!TakeScreenshot(name))
        return false;
    std::string png = std::string(MAVU_BINARY_DIR_UNIX) + "/screenshots/" + name + ".png";
    std::string cut = png + "." + form;
    std::string windowsCut = "Z:" + cut;
    DeleteFileA(windowsCut.c_str());
    RunUnix("convert '" + png + "' -crop " + crop + " " + operations + " -depth 8 " + form + ":'" + cut +
            ".part' && mv '" + cut + ".part' '" + cut + "'");
    if (!WaitUntil([&] { return GetFileAttributesA(windowsCut.c_str()) != INVALID_FILE_ATTRIBUTES; }, 30000))
        return false;
    *bytes = ReadFileBytes(std::wstring(windowsCut.begin(), windowsCut.end()));
    return bytes->size() >= wantedBytes;
}

std::string Crop(int x, int y, int width, int height)
{
    return std::to_string(width) + "x" + std::to_string(height) + "+" + std::to_string(x) + "+" + std::to_string(y);
}

// Whether the prefix's Direct3D uses its Vulkan renderer, which draws into
// child windows (through a copy) wherever it runs.
bool Direct3DRendersWithVulkan()
{
    // Wine takes WINE_D3D_CONFIG ("renderer=gl,...") before the registry.
    char config[256] = "";
    if (GetEnvironmentVariableA("WINE_D3D_CONFIG", config, sizeof config) < sizeof config) {
        std::string settings = std::string(",") + config;
        size_t at = settings.find(",renderer=");
        if (at != std::string::npos)
            return settings.compare(at + 10, 6, "vulkan") == 0;
    }
    wchar_t value[32] = L"";
    DWORD size = sizeof value;
    return RegGetValueW(HKEY_CURRENT_USER, L"Software\\Wine\\Direct3D", L"renderer", RRF_RT_REG_SZ, nullptr, value,
                        &size) == ERROR_SUCCESS &&
           _wcsicmp(value, L"vulkan") == 0;
}

}  // namespace

bool ReadStampOnScreen(const std::string& name, int x, int y, int scale, synthcam::FrameStamp* stamp)
{
    // The stamp's cells are 4 pixels wide on any frame 256 or more wide:
    // 64 cells over 8 rows, shown `scale` times bigger, cut out and brought
    // back to the camera's own size.
    int width = synthcam::kStampCells * 4;
    int height = synthcam::kStampRows;
    std::string bytes;
    if (!CutScreenshot(name, Crop(x, y, width * scale, height * scale),
                       "-sample " + std::to_string(width) + "x" + std::to_string(height) + "! -colorspace gray",
                       "gray", static_cast<size_t>(width * height), &bytes))
        return false;
    return synthcam::ReadStampFromLuma(reinterpret_cast<const uint8_t*>(bytes.data()), width, 640, stamp);
}

bool ReadScreenRgb(const std::string& name, int x, int y, int width, int height, std::string* rgb)
{
    return CutScreenshot(name, Crop(x, y, width, height), "", "rgb", static_cast<size_t>(width * height * 3), rgb);
}

int WarningPixels(const std::string& name, HWND clipping)
{
    RECT picture = WindowRect(clipping);
    std::string rgb;
    if (!ReadScreenRgb(name, picture.left, picture.top, picture.right - picture.left, picture.bottom - picture.top,
                       &rgb))
        return -1;
    int count = 0;
    for (size_t i = 0; i + 2 < rgb.size(); i += 3)
        count += static_cast<uint8_t>(rgb[i]) > 200 && static_cast<uint8_t>(rgb[i + 1]) < 80 &&
                 static_cast<uint8_t>(rgb[i + 2]) > 200;
    return count;
}

const char kNoPictureHere[] =
    "Direct3D draws no picture into the program's main window here (its OpenGL path into a child window)";

bool PictureShowsIn(HWND clipping)
{
    RECT picture = WindowRect(clipping);
    synthcam::FrameStamp stamp{};
    if (!ReadStampOnScreen("picture-check", picture.left + 2, picture.top + 1, 1, &stamp))
        return false;
    // The window's own grey background reads as every cell set.
    bool grey = stamp.counter == 0xFFFFFFu && stamp.utcMs == 0xFFFFFFFFFFull;
    if (grey && Direct3DRendersWithVulkan())
        ADD_FAILURE() << "the clipping window is grey though Direct3D renders with Vulkan";
    return !grey;
}

}  // namespace e2e
