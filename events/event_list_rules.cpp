#include "events/event_list_rules.h"

#include "base/ticks.h"
#include "events/event_rules.h"

namespace {

// "hh:mm:ss" of three number fields as the files hold them ("%2hu"): a
// blank in front of a digit becomes 0.
std::wstring ClockOfFields(const wchar_t* hour, const wchar_t* minute, const wchar_t* second)
{
    std::wstring text;
    for (const wchar_t* field : {hour, minute, second}) {
        if (!text.empty())
            text += L':';
        for (const wchar_t* c = field; *c; ++c)
            text += *c == L' ' && c[1] ? L'0' : *c;
    }
    return text;
}

}  // namespace

std::array<std::wstring, kEventListColumns> EventListCells(const EventRecord& record, const std::wstring& fileName,
                                                           bool textRead)
{
    std::array<std::wstring, kEventListColumns> cells;
    const EventFileText& text = record.text;
    if (textRead) {
        cells[0] = std::wstring(L" ") + MonthName(record.eventTime.wMonth) + text.eventDay + L", " + text.eventYear;
        cells[1] = L" " + ClockOfFields(text.eventHour, text.eventMinute, text.eventSecond);
        cells[2] = ClockOfFields(text.durationHour, text.durationMinute, text.durationSecond);
        cells[3] = text.comment;
        cells[4] = record.hibernate ? kEventListMark : L"";
        cells[5] = record.shutdown ? kEventListMark : L"";
    }
    cells[6] = record.expired ? kEventListMark : L"";
    cells[7] = fileName;
    return cells;
}

std::vector<size_t> EventListOrder(const std::vector<uint64_t>& startTicks, bool ascending)
{
    std::vector<bool> used(startTicks.size(), false);
    std::vector<size_t> order;
    for (size_t round = 0; round < startTicks.size(); ++round) {
        size_t choice = 0;
        while (used[choice])
            ++choice;
        for (size_t later = choice + 1; later < startTicks.size(); ++later) {
            if (used[later])
                continue;
            bool takesOver = ascending ? startTicks[later] <= startTicks[choice] : startTicks[later] >= startTicks[choice];
            if (takesOver)
                choice = later;
        }
        used[choice] = true;
        order.push_back(choice);
    }
    return order;
}

bool EventTimeFarEnoughAhead(uint64_t pickedTicks, uint64_t nowTicks)
{
    return pickedTicks >= nowTicks && pickedTicks - nowTicks >= 5 * kTicksPerSecond;
}
