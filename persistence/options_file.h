// Reading and writing the options file, "MAVU_options_capture.xml" in the
// current directory, with "MAVU_options.xml" as a read-only fallback.
#pragma once

#include <string>

#include "persistence/options.h"
#include "video/video_configuration.h"

// Reads the options file (or the fallback) into the record. 1 if a file was
// loaded, 0 otherwise; the defaults then stand.
int LoadOptions();

// Stores one key's value in its field. Texts longer than their field are cut
// at its capacity; numbers that don't scan leave the field as it was.
void ParseOptionKey(const wchar_t* name, Options& record, const wchar_t* value);

// Splits a VConfig value into its eleven fields. False when it has fewer
// than eleven or an empty eleventh; the eleventh takes all that remains.
bool SplitVConfig(const wchar_t* value, VideoConfiguration& configuration);
// Splits "subtype|codec" at the first '|'. False when there is none.
bool SplitSubtypeCodecPair(const wchar_t* value, std::wstring& subtypeName, std::wstring& codecName);

// The whole document text that SaveOptions writes.
int BuildOptionsText(std::wstring& text);
// Writes every key. 1 on success; on failure nothing is written.
int SaveOptions();
// SaveOptions, with the warning when it fails.
int SaveOptionsOrWarn();
