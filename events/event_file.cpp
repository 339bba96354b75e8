#include "events/event_file.h"

#include <cwchar>

#include "base/com_ptr.h"
#include "base/name_text.h"
#include "base/report.h"
#include "base/ticks.h"
#include "base/time_text.h"
#include "persistence/xml_document.h"

const wchar_t* const kEventFieldNames[14] = {
    L"EventYear",      L"EventMonth",     L"EventDay",  L"EventHour",     L"EventMinute",
    L"EventSecond",    L"DurationHour",   L"DurationMinute", L"DurationSecond", L"Hibernate",
    L"Shutdown",       L"Comment",        L"AsteroidName",   L"StarName",
};

namespace {

struct FieldSlot {
    wchar_t* text;
    int capacity;
};

void FieldSlots(EventFileText& text, FieldSlot (&slots)[14])
{
    wchar_t* numbers[11] = {text.eventYear,      text.eventMonth,     text.eventDay,     text.eventHour,
                            text.eventMinute,    text.eventSecond,    text.durationHour, text.durationMinute,
                            text.durationSecond, text.hibernate,      text.shutdown};
    for (int i = 0; i < 11; ++i)
        slots[i] = {numbers[i], kEventNumberCapacity};
    slots[11] = {text.comment, kEventCommentCapacity};
    slots[12] = {text.asteroidName, kEventNameCapacity};
    slots[13] = {text.starName, kEventNameCapacity};
}

void CopyBounded(wchar_t* field, int capacity, const wchar_t* value)
{
    wcsncpy(field, value, static_cast<size_t>(capacity - 1));
    field[capacity - 1] = 0;
}

// "%2hu" (or "%4hu"): leading blanks skipped, at most that many digits.
bool ScanNumber(const wchar_t* text, const wchar_t* format, WORD& value)
{
    unsigned short scanned = 0;
    if (swscanf(text, format, &scanned) != 1)
        return false;
    value = scanned;
    return true;
}

}  // namespace

wchar_t* EventFieldByName(EventFileText& text, const wchar_t* name, int* capacity)
{
    FieldSlot slots[14];
    FieldSlots(text, slots);
    for (int i = 0; i < 14; ++i) {
        if (wcscmp(name, kEventFieldNames[i]) == 0) {
            if (capacity)
                *capacity = slots[i].capacity;
            return slots[i].text;
        }
    }
    return nullptr;
}

void FormatEventNumbers(EventFileText& text, const SYSTEMTIME& eventTime, const SYSTEMTIME& duration)
{
    swprintf(text.eventYear, kEventNumberCapacity, L"%4hu", eventTime.wYear);
    swprintf(text.eventMonth, kEventNumberCapacity, L"%2hu", eventTime.wMonth);
    swprintf(text.eventDay, kEventNumberCapacity, L"%2hu", eventTime.wDay);
    swprintf(text.eventHour, kEventNumberCapacity, L"%2hu", eventTime.wHour);
    swprintf(text.eventMinute, kEventNumberCapacity, L"%2hu", eventTime.wMinute);
    swprintf(text.eventSecond, kEventNumberCapacity, L"%2hu", eventTime.wSecond);
    swprintf(text.durationHour, kEventNumberCapacity, L"%2hu", duration.wHour);
    swprintf(text.durationMinute, kEventNumberCapacity, L"%2hu", duration.wMinute);
    swprintf(text.durationSecond, kEventNumberCapacity, L"%2hu", duration.wSecond);
}

std::wstring EventFileName(const EventFileText& text, const wchar_t* globalPrefix, const SYSTEMTIME& eventTime)
{
    return JoinNamePrefixes(L"Events\\", {text.asteroidName, text.starName, globalPrefix}) +
           TimeFileName(eventTime, L".mef");
}

int WriteEventFile(const wchar_t* path, const EventFileText* text)
{
    if (!path || !text)
        return 0;
    // A copy whose every field ends within its capacity, whatever the
    // caller left in it.
    EventFileText fields = *text;
    FieldSlot slots[14];
    FieldSlots(fields, slots);
    for (FieldSlot& slot : slots)
        slot.text[slot.capacity - 1] = 0;
    std::wstring xml;
    HRESULT result = BuildXmlText(
        L"MAVU Event File Version 2.1",
        [&](IXMLDOMDocument* document, IXMLDOMElement* root) {
            for (int i = 0; i < 14; ++i) {
                HRESULT added = AddKeyValue(document, root, kEventFieldNames[i], slots[i].text);
                if (added != S_OK)
                    return added;
            }
            return S_OK;
        },
        xml);
    if (result != S_OK)
        return 0;
    return WriteXmlFile(xml, path);
}

int ReadEventFile(const wchar_t* path, EventFileText& text)
{
    ComPtr<IXMLDOMDocument> document;
    if (CreateXmlDocument(document.Put()) != S_OK)
        return 0;
    FieldSlot slots[14];
    FieldSlots(text, slots);
    for (FieldSlot& slot : slots)
        slot.text[0] = 0;

    if (LoadXmlDocument(document.Get(), path) != S_OK)
        return 0;
    HRESULT walked = WalkXmlKeys(document.Get(), AttributeRule::AtLeastOne, [&](const wchar_t* name, const wchar_t* value) {
        int capacity = 0;
        if (wchar_t* field = EventFieldByName(text, name, &capacity))
            CopyBounded(field, capacity, value);
    });
    document.Reset();
    if (walked != S_OK)
        return 0;

    // A search opened and closed on the file at once: a failing close (also
    // of the failed search of a file that has gone meanwhile) is the sign
    // that editing the file would trip over.
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileExW(path, FindExInfoBasic, &found, FindExSearchNameMatch, nullptr, 0);
    if (search && !FindClose(search))
        ReportUserMessage(L"WARNING: unable to close an Event file - this may result in modify or delete issues", true);
    return 1;
}

void ComputeEventTimesAt(EventRecord& record, const SYSTEMTIME& eventTime, const SYSTEMTIME& duration,
                         uint64_t nowTicks)
{
    record.durationTicks =
        ((static_cast<uint64_t>(duration.wHour) * 60 + duration.wMinute) * 60 + duration.wSecond) * kTicksPerSecond;
    uint64_t eventTicks = SystemTimeToTicks(eventTime);
    uint64_t half = record.durationTicks >> 1;
    record.startTicks = eventTicks - half;
    record.endTicks = eventTicks + half;
    record.nowTicks = nowTicks;
    record.expired = nowTicks >= record.endTicks ? 1 : 0;
}

void ComputeEventTimes(EventRecord& record, const SYSTEMTIME& eventTime, const SYSTEMTIME& duration)
{
    ComputeEventTimesAt(record, eventTime, duration, UtcNowTicks());
}

void ParseEventRecordAt(EventRecord& record, uint64_t nowTicks)
{
    record.duration = {};
    record.eventTime = {};
    const EventFileText& text = record.text;
    bool complete = ScanNumber(text.durationHour, L"%2hu", record.duration.wHour) &&
                    ScanNumber(text.durationMinute, L"%2hu", record.duration.wMinute) &&
                    ScanNumber(text.durationSecond, L"%2hu", record.duration.wSecond) &&
                    ScanNumber(text.eventYear, L"%4hu", record.eventTime.wYear) &&
                    ScanNumber(text.eventMonth, L"%2hu", record.eventTime.wMonth) &&
                    ScanNumber(text.eventDay, L"%2hu", record.eventTime.wDay) &&
                    ScanNumber(text.eventHour, L"%2hu", record.eventTime.wHour) &&
                    ScanNumber(text.eventMinute, L"%2hu", record.eventTime.wMinute) &&
                    ScanNumber(text.eventSecond, L"%2hu", record.eventTime.wSecond);
    record.hibernate = wcscmp(text.hibernate, L"TRUE") == 0;
    record.shutdown = wcscmp(text.shutdown, L"TRUE") == 0;

    FILETIME check{};
    if (!complete || !SystemTimeToFileTime(&record.eventTime, &check)) {
        // A file without its numbers, or with an impossible date, is kept in
        // the list as over and done: it can never be armed.
        record.startTicks = record.endTicks = record.durationTicks = 0;
        record.nowTicks = nowTicks;
        record.expired = 1;
        return;
    }
    ComputeEventTimesAt(record, record.eventTime, record.duration, nowTicks);
}

void ParseEventRecord(EventRecord& record)
{
    ParseEventRecordAt(record, UtcNowTicks());
}
