// The rules of the two event windows over plain values: what each cell of
// the event list shows, the order of its rows, and how far ahead an event
// must lie to be scheduled.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "events/event_file.h"

constexpr int kEventListColumns = 8;
// The mark of a set flag in the list: a check mark.
constexpr wchar_t kEventListMark[] = L"\u2713";

// Date, time, duration, comment, hibernate, shut down, expired, and the
// hidden file name. A file whose text couldn't be read shows only its
// expired mark and its name.
std::array<std::wstring, kEventListColumns> EventListCells(const EventRecord& record, const std::wstring& fileName,
                                                           bool textRead);

// The row order by start time: a selection sort that, with `ascending`,
// takes a later item when its start is at or before the present choice,
// else at or after it; ties thus go to the later item. Indexes into
// `startTicks`.
std::vector<size_t> EventListOrder(const std::vector<uint64_t>& startTicks, bool ascending);

// An event time may be scheduled only 5 seconds or more after now, so that
// the camera has time to restart.
bool EventTimeFarEnoughAhead(uint64_t pickedTicks, uint64_t nowTicks);
