#include "app/recording_repair.h"

#include <windows.h>

#include <vector>

#include "base/report.h"
#include "video/avi_repair_file.h"
#include "video/recording_file_name.h"
#include "video/run_report.h"

std::wstring BuildRepairedRecordingReport(const std::wstring& videoPath, uint32_t frames)
{
    std::wstring report = L"Recording cut short, repaired when the program started again\r\n";
    report += L"Video file:  " + videoPath + L"\r\n";
    report += L"Number of recorded frames:  " + std::to_wstring(frames) + L"\r\n";
    report += L"The program or the computer stopped during the recording: frames after the last one in the file "
              L"were not recorded.\r\n";
    return report;
}

std::wstring RepairedRecordingLine(const std::wstring& videoPath, uint32_t frames)
{
    return L"WARNING: recording \"" + videoPath + L"\" was cut short and has been repaired: " +
        std::to_wstring(frames) + (frames == 1 ? L" frame recovered\r\n" : L" frames recovered\r\n");
}

void RepairCutRecordings(const std::wstring& folder)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW((folder + L"*.avi").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && IsRecordingFileName(found.cFileName))
            names.push_back(found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);

    for (const std::wstring& name : names) {
        std::wstring path = folder + name;
        AviRepairOutcome outcome;
        HRESULT hr = RepairAviFile(path, &outcome);
        if (FAILED(hr)) {
            ReportUserMessage((L"WARNING: recording \"" + path +
                               L"\" looks cut short but could not be read or repaired\r\n").c_str(),
                              true);
            continue;
        }
        if (outcome.result == AviRepairResult::NothingRecoverable) {
            ReportUserMessage((L"WARNING: recording \"" + path + L"\" was cut short before its first frame\r\n").c_str(),
                              true);
            continue;
        }
        if (outcome.result != AviRepairResult::Repaired)
            continue;
        ReportUserMessage(RepairedRecordingLine(path, outcome.frames).c_str(), true);
        std::wstring reportPath = RunReportPath(path);
        if (reportPath.empty())
            continue;
        bool defaulted = false;
        std::string narrowPath = NarrowReportText(reportPath, &defaulted);
        std::string narrowText = NarrowReportText(BuildRepairedRecordingReport(path, outcome.frames), &defaulted);
        WriteRunReportText(narrowPath, narrowText);
    }
}
