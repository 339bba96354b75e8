// The program's name and version, as About says them and the frame-time
// record's first line repeats them. The version number comes from the build
// (the project's version in CMakeLists.txt).
#pragma once

#ifndef MAVU_VERSION
#error "MAVU_VERSION comes from the build"
#endif

#define MAVU_PROGRAM_VERSION_TEXT "MAVU Video Capture Version " MAVU_VERSION
#define MAVU_WIDEN2(text) L##text
#define MAVU_WIDEN(text) MAVU_WIDEN2(text)

constexpr const char kProgramVersionText[] = MAVU_PROGRAM_VERSION_TEXT;
constexpr const wchar_t kProgramVersionWideText[] = MAVU_WIDEN(MAVU_PROGRAM_VERSION_TEXT);
