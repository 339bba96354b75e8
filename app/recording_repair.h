// Recordings cut short by a crash, a kill or a power cut, found and mended
// when the program starts again, before any event can record.
#pragma once

#include <cstdint>
#include <string>

// The report written beside a mended recording: what is known of it.
std::wstring BuildRepairedRecordingReport(const std::wstring& videoPath, uint32_t frames);

// The User Messages line that names a mended recording and its frames.
std::wstring RepairedRecordingLine(const std::wstring& videoPath, uint32_t frames);

// Looks at every AVI file of the program's own naming in the folder (the
// video folder, ending in a backslash) and mends each that was left
// unfinished, writing its report and telling User Messages. Files of other
// names and finished recordings are left as they are.
void RepairCutRecordings(const std::wstring& folder);
