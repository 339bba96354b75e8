// The report of a recording: a text file beside the video, with the same
// name and the extension .txt, that records what was recorded and how many
// frames were lost.
#pragma once

#include <cstdint>
#include <string>

#include "base/flag.h"

constexpr int kGpsSnapshotTextCapacity = 32;
constexpr int kEventRecordingNameCapacity = 38;

// What the GPS receiver gave when a recording began; an empty text is a
// value not available.
struct GpsSnapshot {
    Flag valid{0};
    wchar_t latitude[kGpsSnapshotTextCapacity] = L"";
    wchar_t longitude[kGpsSnapshotTextCapacity] = L"";
    wchar_t altitude[kGpsSnapshotTextCapacity] = L"";
    wchar_t satellites[kGpsSnapshotTextCapacity] = L"";
};

// What the application knows of a recording that its report tells: the
// event's name and the position at its start.
struct RecordingNotes {
    const wchar_t* eventName = L"";
    const GpsSnapshot* gps = nullptr;
};

struct RunReportInput {
    bool eventRecording = false;
    std::wstring eventName;
    std::wstring startLine;
    std::wstring stopLine;
    bool useCurrentDirectory = false;
    std::wstring currentDirectory;  // without the closing backslash
    std::wstring filePath;
    bool hasFrameCounts = false;
    long recordedFrames = 0;  // since the start's baseline
    long droppedFrames = 0;
    bool gpsSnapshotValid = false;
    std::wstring latitude, longitude, altitude, satellites;  // empty: not available
    std::wstring deviceName;
    int32_t deviceStandard = 3;
    std::wstring frameRateText;
    std::wstring formatName;
    std::wstring subtypeName;
    std::wstring codecName;  // "NONE" when no codec stands for the subtype
    int32_t rendererChoice = 0;
};

std::wstring BuildRunReport(const RunReportInput& input);

// The report's path: the recording's with ".txt" at its last dot, searched
// from the end down to the second character; empty when there is none.
std::wstring RunReportPath(const std::wstring& recordingPath);

// The text in the system's ANSI code page, at most 1,023 bytes: a longer
// report is cut where the buffer fills. `usedDefault` tells whether a
// character had no narrow form.
std::string NarrowReportText(const std::wstring& text, bool* usedDefault);

// Writes the narrow text through a text-mode stream, replacing an older file.
void WriteRunReportText(const std::string& narrowPath, const std::string& narrowText);
