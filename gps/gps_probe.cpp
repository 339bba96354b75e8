#include "gps/gps_probe.h"

#include <cwchar>

#include "gps/gga_reading.h"
#include "gps/nmea_scan.h"

bool ProbeFindsGga(const unsigned char* buffer, size_t capacity)
{
    size_t length = TextLength(buffer, capacity);
    return FindLastGga(buffer, length, static_cast<int64_t>(length)) >= 0;
}

uint32_t GpsReadSizeForRate(uint32_t rate)
{
    uint32_t size = rate / 8;
    return size < 1000 ? 1000 : size;
}

std::wstring GpsConnectText(int portIndex, uint32_t rate)
{
    wchar_t text[200];
    std::swprintf(text, 200, portIndex < 10 ? L"COM%1d at %d baud\r\n" : L"COM%2d at %d baud\r\n", portIndex + 1,
                  static_cast<int>(rate));
    return text;
}
