// The disk that holds the video folder: a warning before a recording that
// won't fit on it, and a watch during a recording that stops it before the
// disk is full, so that the file can still be finished and its report
// written.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// Posted to the main window by the watch, from its timer's thread.
constexpr UINT kDiskFullMessage = WM_APP + 0x101;

// The folder recordings go to, as a recording's path names it.
std::wstring VideoFolder();

// The line that warns of a recording that needs more than is free, empty
// when it fits. Both figures in whole megabytes.
std::wstring RecordingSpaceWarning(uint64_t neededBytes, uint64_t freeBytes, const std::wstring& folder);

// What a recording keeps free on its disk: room for the frames on their way
// to the file while the watch looks once more, the file's index and its
// report, and some to spare.
uint64_t RecordingReserveBytes(uint64_t bytesPerSecond, uint64_t secondsRecorded);

// Warns, with a time stamp, when a recording of that long in the current
// format won't fit on the disk of the video folder.
void WarnIfRecordingWontFit(uint64_t durationMs);

// The watch runs while a recording does: each second, and at once when a
// write to the file fails, it compares the free space with the reserve.
void StartDiskWatch();
void StopDiskWatch();
