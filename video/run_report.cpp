#include "video/run_report.h"

#include <windows.h>

#include <cstdio>
#include <fstream>

namespace {

constexpr int kNarrowCapacity = 1024;

std::wstring Number(long value)
{
    wchar_t text[16];
    std::swprintf(text, 16, L"%d", static_cast<int>(value));
    return text;
}

void AddGpsLine(std::wstring& report, const wchar_t* label, const std::wstring& value, const wchar_t* missing)
{
    if (!value.empty())
        report += std::wstring(label) + value + L"\r\n";
    else
        report += missing;
}

const wchar_t* StandardText(int32_t standard)
{
    switch (standard) {
    case 3:
        return L"Unknown\r\n";
    case 2:
        return L"Digital\r\n";
    case 0:
        return L"NTSC\r\n";
    default:
        return L"PAL\r\n";
    }
}

const wchar_t* RendererText(int32_t choice)
{
    switch (choice) {
    case 0:
        return L"EVR";
    case 1:
        return L"VMR9";
    case 2:
        return L"VMR7";
    default:
        return L"None - video display off during recording";
    }
}

// Bytes that the first `length` characters take in the ANSI code page.
int NarrowLength(const wchar_t* text, int length)
{
    return WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
}

}  // namespace

std::wstring BuildRunReport(const RunReportInput& input)
{
    std::wstring report;
    if (input.eventRecording)
        report += L"Event recording: " + input.eventName + L"\r\n";
    else
        report += L"Manual recording\r\n";
    report += input.startLine + L"\r\n";
    report += input.stopLine + L"\r\n";
    report += L"Video file:  ";
    if (input.useCurrentDirectory)
        report += input.currentDirectory + L"\\";
    report += input.filePath;
    if (input.hasFrameCounts) {
        report += L"\r\nNumber of recorded frames:  " + Number(input.recordedFrames);
        report += L"\r\nNumber of dropped frames:  " + Number(input.droppedFrames) + L"\r\n";
    } else {
        report += L"\r\nTotal frame count and dropped frame count are not avaiable\r\n";
    }
    if (input.gpsSnapshotValid) {
        AddGpsLine(report, L"Latitude: ", input.latitude, L"Latitude value not available\r\n");
        AddGpsLine(report, L"Longitude: ", input.longitude, L"Longitude value not available\r\n");
        AddGpsLine(report, L"Altitude: ", input.altitude, L"Altitude value not available\r\n");
        AddGpsLine(report, L"Number of satellites: ", input.satellites, L"Number of satellites not available\r\n");
    }
    report += L"Video source device: " + input.deviceName + L"\r\n";
    report += std::wstring(L"Source device format: ") + StandardText(input.deviceStandard);
    report += L"Frame rate: " + input.frameRateText + L"\r\n";
    report += L"Frame size: " + input.formatName + L"\r\n";
    report += L"Format subtype: " + input.subtypeName + L"\r\n";
    report += L"Codec: " + input.codecName + L"\r\n";
    report += std::wstring(L"Video renderer: ") + RendererText(input.rendererChoice) + L"\r\n";
    return report;
}

std::wstring RunReportPath(const std::wstring& recordingPath)
{
    for (size_t i = recordingPath.size(); i-- > 1;) {
        if (recordingPath[i] == L'.')
            return recordingPath.substr(0, i) + L".txt";
    }
    return {};
}

std::string NarrowReportText(const std::wstring& text, bool* usedDefault)
{
    // The longest beginning of the text that fits the buffer with its
    // terminator: a report too long for it comes out unfinished.
    int length = static_cast<int>(text.size());
    if (length > 0 && NarrowLength(text.c_str(), length) > kNarrowCapacity - 1) {
        int low = 0, high = length;
        while (low < high) {
            int middle = low + (high - low + 1) / 2;
            if (NarrowLength(text.c_str(), middle) <= kNarrowCapacity - 1)
                low = middle;
            else
                high = middle - 1;
        }
        length = low;
    }
    std::string narrow(static_cast<size_t>(length > 0 ? NarrowLength(text.c_str(), length) : 0), '\0');
    BOOL defaulted = FALSE;
    if (!narrow.empty())
        WideCharToMultiByte(CP_ACP, 0, text.c_str(), length, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                            &defaulted);
    *usedDefault = defaulted != FALSE;
    return narrow;
}

void WriteRunReportText(const std::string& narrowPath, const std::string& narrowText)
{
    // Text mode: each line end of the text gains a carriage return on its
    // way out, as the stream's default mode does on this platform.
    std::ofstream file(narrowPath);
    file << narrowText;
    file.close();
}
