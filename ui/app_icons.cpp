#include "ui/app_icons.h"

AppIcons appIcons;

namespace {

HICON LoadIconFile(const wchar_t* path)
{
    return static_cast<HICON>(LoadImageW(nullptr, path, IMAGE_ICON, 0, 0, LR_LOADFROMFILE));
}

}  // namespace

void LoadAppIcons()
{
    appIcons.logoLarge = LoadIconFile(L"MavuVideoIcons\\MAVU_logo_large.ico");
    appIcons.logoSmall = LoadIconFile(L"MavuVideoIcons\\MAVU_logo_small.ico");
    appIcons.stop = LoadIconFile(L"MavuVideoIcons\\stop64x.ico");
    appIcons.record = LoadIconFile(L"MavuVideoIcons\\record56x.ico");
    appIcons.folder = LoadIconFile(L"MavuVideoIcons\\folder32x.ico");
    appIcons.folderClear = LoadIconFile(L"MavuVideoIcons\\folderClear32x.ico");
}
