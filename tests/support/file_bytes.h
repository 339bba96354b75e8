// Whole files as bytes, for tests that check what is on disk to the byte.
#pragma once

#include <string>

std::string ReadFileBytes(const std::wstring& path);
// Replaces the file; false when it couldn't be written whole.
bool WriteFileBytes(const std::wstring& path, const std::string& bytes);
