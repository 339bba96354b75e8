// The rules of the event queue over plain values: admission with the
// overlap margin, the stopped-event match, the countdown's deadline and
// texts, the event report, and the names of recorded files.
#pragma once

#include "base/ticks.h"
#include "events/event_file.h"

#include <cstdint>
#include <string>
#include <vector>

// An event the user stopped by hand in this run.
struct StoppedEventKey {
    SYSTEMTIME eventTime;
    SYSTEMTIME duration;
};

enum AdmitResult : int { EventAdmitted = 0, EventTooLate = 1, EventOverlaps = 2 };

// Adds a record to a list kept latest first. An event whose time has begun
// keeps only its remaining time and is refused with 10 seconds or less left;
// one that starts within 30 seconds after the end of its earlier neighbour
// is refused as overlapping.
AdmitResult AdmitEventInto(std::vector<EventRecord*>& latestFirst, EventRecord* record, uint64_t nowTicks);

// Whether the record is one the user stopped. Each key compared takes the
// record's year along the way, and the durations are compared only when
// that year isn't 0.
bool MatchesStoppedEvent(std::vector<StoppedEventKey>& stopped, const EventRecord& record);

// Local time, in FILETIME ticks, at which the camera restart begins: the
// nominal start in local time by the bias measured at start-up, less half
// a second.
uint64_t CountdownDeadlineTicks(uint64_t startTicks, int32_t utcOffsetMinutes);

// "JAN " to "DEC ", three capitals and a blank; empty for any other number.
const wchar_t* MonthName(int month);

// The countdown's value for the time left to the deadline.
std::wstring CountdownLeftText(int64_t leftTicks);
// The UTC clock as the countdown shows it.
std::wstring ClockText(const SYSTEMTIME& utc);

// "    Start time:\tNOV 22, 2026  12:00:00\r\n" and its like.
std::wstring EventTimeLine(const wchar_t* label, const SYSTEMTIME& time);
std::wstring EventTimeLine(const wchar_t* label, uint64_t ticks);
// The block "Current Event Information:" of an event's times.
std::wstring EventReportText(const EventRecord& record);

// folder + asteroid "_" + star "_" + global prefix "_" + video prefix "_" +
// mm_dd_yyyy_hh_mm_ss.avi; empty parts leave no underscore. A manual
// recording has no asteroid, star or global prefix.
std::wstring VideoFilePath(const std::wstring& folder, const wchar_t* asteroid, const wchar_t* star,
                           const wchar_t* globalPrefix, const wchar_t* videoPrefix, const SYSTEMTIME& utc);
