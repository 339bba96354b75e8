#include "video/device_names.h"

#include <cwchar>

namespace {

bool Plain(wchar_t c)
{
    return c >= 32 && c <= 126;
}

}  // namespace

bool NeedsCleaning(const wchar_t* name)
{
    for (; *name; ++name)
        if (!Plain(*name))
            return true;
    return false;
}

void CleanDeviceName(wchar_t* name)
{
    size_t length = wcslen(name);
    for (size_t position = 0; position < length; ++position) {
        if (Plain(name[position]))
            continue;
        // The rest moves left, terminator included.
        wmemmove(name + position, name + position + 1, length - position);
        --length;
    }
}
