#include "ui/fonts.h"

#include "base/report.h"

HFONT appFonts[AppFontCount];

namespace {

struct FontSpec {
    const wchar_t* face;
    int height;
    const wchar_t* failure;
};

const FontSpec kFonts[AppFontCount] = {
    {L"Consolas", 18, L"WARNING: cannot create font for codec or camera lists\r\n"},
    {L"Consolas", 20, L"WARNING: cannot create font for codec or camera lists\r\n"},
    {L"Tahoma", 72, L"WARNING: cannot create font for countdown window\r\n"},
    {L"Consolas", 16, L"WARNING: cannot create font for event list\r\n"},
    {L"Consolas", 28, L"WARNING: cannot create font for hibernation | shutdown countdown\r\n"},
    {L"Consolas", 48, L"WARNING: cannot create font for event countdown\r\n"},
    {L"Lucida Console", 48, L"WARNING: cannot create Lucida Console font for event countdown\r\n"},
    {L"Tahoma", 20, L"WARNING: cannot create font for dialog buttons\r\n"},
    {L"Tahoma", 18, L"WARNING: cannot create font for dialog static text\r\n"},
    {L"Tahoma", 16, L"WARNING: cannot create small font for dialog buttons and static text\r\n"},
};

}  // namespace

void CreateAppFonts()
{
    for (int i = 0; i < AppFontCount; ++i) {
        appFonts[i] = CreateFontW(kFonts[i].height, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, kFonts[i].face);
        if (!appFonts[i])
            ReportUserMessage(kFonts[i].failure, false);
    }
}
