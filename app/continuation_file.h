// The files of a recording whose device went away and came back: the first
// file's name with "_1", "_2", ... before its ".avi".
#pragma once

#include <cstddef>
#include <cstdint>

// Writes the path of continuation `count` of the recording whose first file
// is `firstPath` into `out` (room for `capacity` characters, terminator
// included, cut to fit). False, with `out` untouched, when the first path
// doesn't end in ".avi" exactly, lower case.
bool ContinuationFilePath(const wchar_t* firstPath, uint32_t count, wchar_t* out, size_t capacity);
