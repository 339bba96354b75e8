// A scheduled event: one small XML file in "Events\", its in-memory record,
// and the arithmetic that centres the recording on the predicted moment.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

constexpr int kEventNumberCapacity = 10;
constexpr int kEventCommentCapacity = 37;
constexpr int kEventNameCapacity = 22;

// The fourteen fields of an event file, as text, in file order.
struct EventFileText {
    wchar_t eventYear[kEventNumberCapacity];
    wchar_t eventMonth[kEventNumberCapacity];
    wchar_t eventDay[kEventNumberCapacity];
    wchar_t eventHour[kEventNumberCapacity];
    wchar_t eventMinute[kEventNumberCapacity];
    wchar_t eventSecond[kEventNumberCapacity];
    wchar_t durationHour[kEventNumberCapacity];
    wchar_t durationMinute[kEventNumberCapacity];
    wchar_t durationSecond[kEventNumberCapacity];
    wchar_t hibernate[kEventNumberCapacity];
    wchar_t shutdown[kEventNumberCapacity];
    wchar_t comment[kEventCommentCapacity];
    wchar_t asteroidName[kEventNameCapacity];
    wchar_t starName[kEventNameCapacity];
};

struct EventRecord {
    SYSTEMTIME eventTime;  // predicted moment, UTC
    SYSTEMTIME duration;   // hour, minute, second only
    uint64_t startTicks;   // eventTime less half the duration
    uint64_t endTicks;     // eventTime plus half the duration
    uint64_t durationTicks;
    uint64_t nowTicks;     // UTC when the fields were computed
    int32_t hibernate;
    int32_t shutdown;
    int32_t expired;
    EventFileText text;
};

// Element names of the fourteen fields, in file order.
extern const wchar_t* const kEventFieldNames[14];
// The field of a name (exact, case-sensitive), with its capacity; null when
// the name isn't one of the fourteen.
wchar_t* EventFieldByName(EventFileText& text, const wchar_t* name, int* capacity);

// Fills the text fields from an event time and duration as the Schedule
// Event window does: "%4hu" for the year, "%2hu" for the others.
void FormatEventNumbers(EventFileText& text, const SYSTEMTIME& eventTime, const SYSTEMTIME& duration);

// "Events\" + asteroid "_" + star "_" + global prefix "_" + mm_dd_yyyy_hh_mm_ss.mef
// of the predicted moment; empty parts leave no underscore.
std::wstring EventFileName(const EventFileText& text, const wchar_t* globalPrefix, const SYSTEMTIME& eventTime);

// 1 on success, 0 on failure (nothing written, an old file stays whole).
int WriteEventFile(const wchar_t* path, const EventFileText* text);
// Fills text from a file; 1 when the document was walked, 0 otherwise. All
// fields start empty; values longer than a field are cut at its capacity.
int ReadEventFile(const wchar_t* path, EventFileText& text);

// From record.text: event time, duration, flags, and the times. A record
// whose numbers are missing or not a valid time is expired and never armed.
void ParseEventRecord(EventRecord& record);
void ParseEventRecordAt(EventRecord& record, uint64_t nowTicks);

// durationTicks, startTicks, endTicks, nowTicks, expired. The duration is
// whole seconds, so halving it is exact.
void ComputeEventTimes(EventRecord& record, const SYSTEMTIME& eventTime, const SYSTEMTIME& duration);
void ComputeEventTimesAt(EventRecord& record, const SYSTEMTIME& eventTime, const SYSTEMTIME& duration,
                         uint64_t nowTicks);
