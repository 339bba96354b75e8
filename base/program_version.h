// The program's name and version, as About says them and the frame-time
// record's first line repeats them.
#pragma once

#define MAVU_PROGRAM_VERSION_TEXT "MAVU Video Capture Version 2.1"
#define MAVU_WIDEN2(text) L##text
#define MAVU_WIDEN(text) MAVU_WIDEN2(text)

constexpr const char kProgramVersionText[] = MAVU_PROGRAM_VERSION_TEXT;
constexpr const wchar_t kProgramVersionWideText[] = MAVU_WIDEN(MAVU_PROGRAM_VERSION_TEXT);
