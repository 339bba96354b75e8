// The folder of the program, found from its own path, and the default
// folders for videos and logs beneath it.
#pragma once

#include <string>

// The module path cut where the word "MAVU" (case-sensitive) is last found,
// looking backwards from ten characters before the end; the whole path when
// it isn't found. Always ends in a backslash.
std::wstring ProgramFolderFromModulePath(const std::wstring& modulePath);

// Finds the program folder and makes the two default folders, reporting and
// greying the menus when one can't be made.
void CreateDefaultFolders();
