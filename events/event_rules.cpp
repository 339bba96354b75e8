#include "events/event_rules.h"

#include "base/name_text.h"
#include "base/time_text.h"

#include <cstdio>

namespace {

constexpr uint64_t kTenSeconds = 10 * kTicksPerSecond;
constexpr uint64_t kOverlapMargin = 30 * kTicksPerSecond;

const wchar_t* const kMonthNames[13] = {L"",     L"JAN ", L"FEB ", L"MAR ", L"APR ", L"MAY ", L"JUN ",
                                        L"JUL ", L"AUG ", L"SEP ", L"OCT ", L"NOV ", L"DEC "};

bool SameClock(const SYSTEMTIME& a, const SYSTEMTIME& b)
{
    return a.wSecond == b.wSecond && a.wMinute == b.wMinute && a.wHour == b.wHour;
}

void AddPart(std::wstring& text, int value, const wchar_t* one, const wchar_t* many)
{
    if (value == 0)
        return;
    wchar_t number[16];
    std::swprintf(number, 16, L"%d ", value);
    text += number;
    text += value == 1 ? one : many;
}

}  // namespace

const wchar_t* MonthName(int month)
{
    return month >= 1 && month <= 12 ? kMonthNames[month] : L"";
}

AdmitResult AdmitEventInto(std::vector<EventRecord*>& latestFirst, EventRecord* record, uint64_t nowTicks)
{
    if (record->startTicks <= nowTicks) {
        if (nowTicks + kTenSeconds >= record->endTicks)
            return EventTooLate;
        record->durationTicks = record->endTicks - nowTicks;
    }
    if (latestFirst.empty()) {
        latestFirst.push_back(record);
        return EventAdmitted;
    }
    for (auto it = latestFirst.begin(); it != latestFirst.end(); ++it) {
        EventRecord* earlier = *it;
        if (earlier->startTicks >= record->endTicks)
            continue;
        if (record->startTicks < earlier->endTicks + kOverlapMargin)
            return EventOverlaps;
        latestFirst.insert(it, record);
        return EventAdmitted;
    }
    latestFirst.push_back(record);
    return EventAdmitted;
}

bool MatchesStoppedEvent(std::vector<StoppedEventKey>& stopped, const EventRecord& record)
{
    for (StoppedEventKey& key : stopped) {
        const SYSTEMTIME& time = record.eventTime;
        if (!SameClock(key.eventTime, time) || key.eventTime.wDay != time.wDay || key.eventTime.wMonth != time.wMonth)
            continue;
        key.eventTime.wYear = time.wYear;
        if (key.eventTime.wYear != 0 && !SameClock(key.duration, record.duration))
            continue;
        return true;
    }
    return false;
}

uint64_t CountdownDeadlineTicks(uint64_t startTicks, int32_t utcOffsetMinutes)
{
    uint64_t start = SystemTimeToTicks(TicksToSystemTime(startTicks));
    int64_t offset = static_cast<int64_t>(utcOffsetMinutes) * 600000000ll;
    uint64_t local = SystemTimeToTicks(TicksToSystemTime(static_cast<uint64_t>(static_cast<int64_t>(start) - offset)));
    return local - 5000000ull;
}

std::wstring CountdownLeftText(int64_t leftTicks)
{
    wchar_t text[32];
    if (leftTicks > static_cast<int64_t>(kTicksPerDay)) {
        long long days = leftTicks / static_cast<int64_t>(kTicksPerDay);
        if (days >= 100)
            return L"> 100 days";
        if (days == 1)
            return L"> 1 day ";
        std::swprintf(text, 32, L"> %lld days", days);
        return text;
    }
    SYSTEMTIME left = TicksToSystemTime(static_cast<uint64_t>(leftTicks < 0 ? 0 : leftTicks));
    std::swprintf(text, 32, L"%2.2d:%2.2d:%2.2d", left.wHour, left.wMinute, left.wSecond);
    return text;
}

std::wstring ClockText(const SYSTEMTIME& utc)
{
    wchar_t text[16];
    std::swprintf(text, 16, L"%2.2d:%2.2d:%2.2d", utc.wHour, utc.wMinute, utc.wSecond);
    return text;
}

std::wstring EventTimeLine(const wchar_t* label, const SYSTEMTIME& time)
{
    wchar_t text[96];
    std::swprintf(text, 96, L"%hu, %hu  %2.2hu:%2.2hu:%2.2hu\r\n", time.wDay, time.wYear, time.wHour, time.wMinute,
                  time.wSecond);
    const wchar_t* month = MonthName(time.wMonth);
    return std::wstring(label) + month + text;
}

std::wstring EventTimeLine(const wchar_t* label, uint64_t ticks)
{
    return EventTimeLine(label, TicksToSystemTime(ticks));
}

std::wstring EventReportText(const EventRecord& record)
{
    std::wstring text = L"Current Event Information:\n";
    text += EventTimeLine(L"    Start time:\t", record.startTicks);
    text += EventTimeLine(L"    Event time:\t", record.eventTime);
    text += EventTimeLine(L"    End time:\t", record.endTicks);
    text += L"    Recording duration: ";
    AddPart(text, record.duration.wHour, L"hour  ", L"hours  ");
    AddPart(text, record.duration.wMinute, L"minute  ", L"minutes  ");
    AddPart(text, record.duration.wSecond, L"second", L"seconds");
    text += L"\r\n";
    return text;
}

std::wstring VideoFilePath(const std::wstring& folder, const wchar_t* asteroid, const wchar_t* star,
                           const wchar_t* globalPrefix, const wchar_t* videoPrefix, const SYSTEMTIME& utc)
{
    return JoinNamePrefixes(folder, {asteroid, star, globalPrefix, videoPrefix}) + TimeFileName(utc, L".avi");
}
