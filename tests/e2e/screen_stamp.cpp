#include "e2e/screen_stamp.h"

#include <windows.h>

#include "e2e/harness.h"

namespace e2e {

bool ReadStampOnScreen(const std::string& name, int x, int y, int scale, synthcam::FrameStamp* stamp)
{
    if (!TakeScreenshot(name))
        return false;
    // The stamp's cells are 4 pixels wide on any frame 256 or more wide:
    // 64 cells over 8 rows, shown `scale` times bigger, cut out and brought
    // back to the camera's own size.
    int width = synthcam::kStampCells * 4;
    int height = synthcam::kStampRows;
    std::string png = std::string(MAVU_BINARY_DIR_UNIX) + "/screenshots/" + name + ".png";
    std::string gray = png + ".gray";
    std::string windowsGray = "Z:" + gray;
    DeleteFileA(windowsGray.c_str());
    RunUnix("convert '" + png + "' -crop " + std::to_string(width * scale) + "x" + std::to_string(height * scale) +
            "+" + std::to_string(x) + "+" + std::to_string(y) + " -sample " + std::to_string(width) + "x" +
            std::to_string(height) + "! -colorspace gray -depth 8 gray:'" + gray + ".part' && mv '" + gray +
            ".part' '" + gray + "'");
    if (!WaitUntil([&] { return GetFileAttributesA(windowsGray.c_str()) != INVALID_FILE_ATTRIBUTES; }, 30000))
        return false;
    std::string bytes = ReadBytes(std::wstring(windowsGray.begin(), windowsGray.end()));
    if (bytes.size() < static_cast<size_t>(width * height))
        return false;
    return synthcam::ReadStampFromLuma(reinterpret_cast<const uint8_t*>(bytes.data()), width, 640, stamp);
}

bool Direct3DRendersWithVulkan()
{
    wchar_t value[32] = L"";
    DWORD size = sizeof value;
    return RegGetValueW(HKEY_CURRENT_USER, L"Software\\Wine\\Direct3D", L"renderer", RRF_RT_REG_SZ, nullptr, value,
                        &size) == ERROR_SUCCESS &&
           _wcsicmp(value, L"vulkan") == 0;
}

}  // namespace e2e
