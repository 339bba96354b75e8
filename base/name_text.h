// The parts of file names that users type: the characters allowed in them,
// and how they join a folder before the time part of a name.
#pragma once

#include <initializer_list>
#include <string>

// Removes, in place, every character but the letters a to z and A to Z, the
// digits, hyphen, blank and underscore; with allowComment also { } ( ) [ ]
// . : + # and *. Returns 1 when it removed anything, else 0.
int FilterNameCharacters(wchar_t* text, bool allowComment);

// The folder, then each prefix that isn't empty followed by "_".
std::wstring JoinNamePrefixes(const std::wstring& folder, std::initializer_list<const wchar_t*> prefixes);
