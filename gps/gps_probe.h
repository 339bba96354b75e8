// The rules of the search for a receiver: the rates tried, what counts as an
// answer, how much one reading asks for at a rate, and the line that names
// the port found. Nothing here touches a port.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Line speeds in the order they are tried on each port.
constexpr uint32_t kGpsRates[] = {38400, 19200, 9600, 4800};
constexpr int kGpsRateCount = 4;
// COM1 to COM9.
constexpr int kGpsPortCount = 9;
// What the probe asks of a port in one read.
constexpr uint32_t kGpsProbeBytes = 600;

// A port answered if the buffer's text, up to its first zero byte, holds
// "$GPGGA" anywhere; the sentence needn't be complete. Text at a wrong rate
// is garbage and fails here, and so does a zero byte in front of the name.
bool ProbeFindsGga(const unsigned char* buffer, size_t capacity);

// Bytes one reading asks for: an eighth of the rate, at least 1,000.
uint32_t GpsReadSizeForRate(uint32_t rate);

// "COM3 at 4800 baud\r\n" for port index 2 at 4800.
std::wstring GpsConnectText(int portIndex, uint32_t rate);
