// Repairs a recording cut short in place, on disk: the plan of
// video/avi_repair_plan.h read from and written to the file itself.
#pragma once

#include <windows.h>

#include "video/avi_repair_plan.h"

#include <cstdint>
#include <string>

enum class AviRepairResult {
    NotOurRecording,  // another program's file, by its name: not opened
    LeftComplete,  // a finished recording: untouched
    NothingRecoverable,  // untouched
    Repaired,
};

struct AviRepairOutcome {
    AviRepairResult result = AviRepairResult::NotOurRecording;
    uint32_t frames = 0;  // frames the repaired file holds
    AviDataEnd end = AviDataEnd::EndOfFile;
    uint64_t lengthBefore = 0;
    uint64_t lengthAfter = 0;
};

// Only a recording of the program's own name (IsRecordingFileName) is
// touched. Opens the file (read and write, others may read), plans its
// repair and, when there is one, writes it in place, cuts the file to its
// new length and flushes it. A complete file or one with nothing to recover
// is left as it is. Never creates or deletes a file.
//
// S_OK when the outcome is told; a failure code of the platform when the
// file couldn't be opened, read or written. A plan whose walk stopped at a
// failed read is not applied (E_FAIL): it would cut off what couldn't be
// read. A write that fails midway leaves the provisional header in place
// (the header is written last), so the repair can be run again.
HRESULT RepairAviFile(const std::wstring& path, AviRepairOutcome* outcome);
