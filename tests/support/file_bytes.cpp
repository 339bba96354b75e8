#include "support/file_bytes.h"

#include <fstream>
#include <sstream>

std::string ReadFileBytes(const std::wstring& path)
{
    std::ifstream file(path.c_str(), std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

bool WriteFileBytes(const std::wstring& path, const std::string& bytes)
{
    std::ofstream file(path.c_str(), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file);
}
