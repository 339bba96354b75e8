// Which files in a folder are recordings the program itself named, so that
// a repair never touches a file of anyone else's.
#pragma once

#include <string>

// True for the program's own recording names: any prefixes, each ending in
// "_", then "MM_DD_YYYY_HH_MM_SS" (as TimeFileName writes it), then
// optionally "_N" for continuation N (1, 2, ...), then ".avi" in lower case.
// A name with a folder is judged by what follows its last slash.
bool IsRecordingFileName(const std::wstring& fileName);
