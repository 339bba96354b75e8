// The files of a recording whose device went away and came back: the first
// file's name with "_1", "_2", ... before its ".avi".
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

// Writes the path of continuation `count` of the recording whose first file
// is `firstPath` into `out` (room for `capacity` characters, terminator
// included, cut to fit). False, with `out` untouched, when the first path
// doesn't end in ".avi" exactly, lower case.
bool ContinuationFilePath(const wchar_t* firstPath, uint32_t count, wchar_t* out, size_t capacity);

// The first continuation of the recording whose first file is `firstPath`,
// numbered after `count`, that `holdsData` finds empty: where a recording
// goes on when its present file already holds frames, which are never
// overwritten. On success the path is in `out` and `count` is its number.
// False, with both untouched, when the first path has no continuations or
// none is free among the next ten thousand.
bool NextFreeContinuation(const wchar_t* firstPath, uint32_t& count,
                          const std::function<bool(const wchar_t*)>& holdsData, wchar_t* out, size_t capacity);

// Whether a file exists there with anything in it.
bool FileHoldsData(const wchar_t* path);
