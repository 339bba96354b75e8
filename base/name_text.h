// The parts of file names that users type: the characters allowed in them,
// and how they join a folder before the time part of a name.
#pragma once

#include <initializer_list>
#include <string>

// Removes, in place, every character but the letters a to z and A to Z, the
// digits, hyphen, blank and underscore; with allowComment also { } ( ) [ ]
// . : + # and *. Returns 1 when it removed anything, else 0.
int FilterNameCharacters(wchar_t* text, bool allowComment);

// The global event file prefix from a computer's name: its allowed
// characters, in lower case, at most 12. `removed` tells whether the filter
// took characters out.
std::wstring HostNamePrefix(const wchar_t* computerName, bool* removed);

// The pattern of a file name with a prefix: "prefix_" when there is one,
// then "mm_dd_yyyy_hh_mm_ss" and the extension.
std::wstring NamePattern(const wchar_t* prefix, const wchar_t* extension);

// The folder, then each prefix that isn't empty followed by "_".
std::wstring JoinNamePrefixes(const std::wstring& folder, std::initializer_list<const wchar_t*> prefixes);
