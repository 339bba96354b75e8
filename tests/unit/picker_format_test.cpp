// Month names in date-time picker formats: "MMM" rewritten as text, and a real picker showing the abbreviated month.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

#include "ui/picker_format.h"

namespace {

struct MonthTextCase {
    const wchar_t* format;
    const wchar_t* month;
    const wchar_t* expected;
};

const MonthTextCase kMonthTextCases[] = {
    {L"MMM d',' yyyy   HH':'mm':'ss", L"Nov", L"'Nov' d',' yyyy   HH':'mm':'ss"},
    // Other month pictures and quoted M's stay.
    {L"MMMM MM M", L"Nov", L"MMMM MM M"},
    {L"'MMM' MMM", L"Jan", L"'MMM' 'Jan'"},
    {L"d MMM, MMM", L"Mai", L"d 'Mai', 'Mai'"},
    // A quote in the name is doubled inside the quotes.
    {L"MMM yyyy", L"O'c", L"'O''c' yyyy"},
};

TEST(PickerFormat, ThreeMsBecomeTheMonthAsQuotedText)
{
    for (const MonthTextCase& c : kMonthTextCases)
        EXPECT_EQ(FormatWithMonthText(c.format, c.month), c.expected) << static_cast<const void*>(c.format);
}

std::wstring AbbreviatedMonth(WORD month)
{
    wchar_t name[64] = L"";
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SABBREVMONTHNAME1 + month - 1, name, 64);
    return name;
}

std::wstring Shown(HWND picker)
{
    wchar_t text[128] = L"";
    GetWindowTextW(picker, text, 128);
    return text;
}

// Whatever this platform's picker does with "MMM", the picker shows the
// abbreviated month, and follows the date into another month.
TEST(PickerFormat, APickerShowsTheAbbreviatedMonthAndFollowsTheDate)
{
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_DATE_CLASSES};
    ASSERT_TRUE(InitCommonControlsEx(&controls));
    HWND picker = CreateWindowExW(0, DATETIMEPICK_CLASSW, L"", WS_POPUP, 0, 0, 300, 30, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(picker, nullptr);
    SYSTEMTIME time{2026, 11, 0, 26, 19, 36, 5, 0};
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
    PickerFormat format{picker, L"MMM d',' yyyy   HH':'mm':'ss"};
    ApplyPickerFormat(format);
    EXPECT_EQ(Shown(picker), AbbreviatedMonth(11) + L" 26, 2026   19:36:05") << "written out: " << format.monthAsText;

    time.wMonth = 5;
    time.wDay = 3;
    SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
    FollowPickerMonth(format);
    EXPECT_EQ(Shown(picker), AbbreviatedMonth(5) + L" 3, 2026   19:36:05");
    DestroyWindow(picker);
}

}  // namespace
