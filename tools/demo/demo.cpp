// The main job, as tools/run.sh shows it: a synthetic camera stands in for
// the USB camera, an event file schedules a moment 40 seconds ahead with a
// 10-second duration, and MAVU Video Capture counts down, records the event
// into an AVI with its report, and goes back to preview. A screenshot is
// taken during the recording. With --keep the program stays open on the
// display afterwards until it is closed.
#include <cstdio>
#include <cwchar>

#include <objbase.h>

#include "e2e/harness.h"
#include "tools/synthcam/registry.h"

using namespace e2e;

namespace {

const wchar_t kCamera[] = L"MAVU Rehearsal Camera";

bool TitleIs(HWND window, const wchar_t* title)
{
    return WindowText(window) == title;
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    bool keep = argc > 1 && std::wcscmp(argv[1], L"--keep") == 0;
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    while (synthcam::RemoveDevice(kCamera) == S_OK) {
    }
    if (FAILED(synthcam::AddDevice(kCamera, L"webcam", L"ntsc", synthcam::DllBesideProgram()))) {
        std::fprintf(stderr, "cannot register the synthetic camera\n");
        return 1;
    }

    std::wstring folder = MakeWorkFolder(L"demo");
    // This platform's EVR takes no YUY2: the picture goes through VMR9.
    WriteOptions(folder, Option("DefaultRenderer", "VMR9"));
    SYSTEMTIME moment = UtcInSeconds(40);
    WriteEvent(folder, L"Rehearsal_Star_demo", moment, 10, "Rehearsal", "Star");
    std::printf("Event scheduled at %02u:%02u:%02u UTC, 10 seconds centred on it\n", moment.wHour, moment.wMinute,
                moment.wSecond);
    std::fflush(stdout);

    Program program(folder);
    if (!program.Start() || !program.WaitReady()) {
        std::fprintf(stderr, "MAVU Video Capture did not start\n");
        return 1;
    }
    HWND main = program.MainWindow();
    if (!WaitUntil([&] { return TitleIs(main, L"MAVU Video Capture -- Recording in progress"); }, 90000, 100)) {
        std::fprintf(stderr, "the event recording did not begin\nUser Messages:\n%s\n", Narrow(program.Messages()).c_str());
        program.Kill();
        return 1;
    }
    std::printf("Recording the event...\n");
    std::fflush(stdout);
    Sleep(3000);
    bool pictured = TakeScreenshot("demo-recording");
    bool ended = WaitUntil(
        [&] {
            return TitleIs(main, L"MAVU Video Capture Version 2.1") &&
                   !ListFiles(folder + L"\\VideoFiles", L"*.txt").empty();
        },
        60000, 200);

    std::vector<std::wstring> videos = ListFiles(folder + L"\\VideoFiles", L"*.avi");
    std::vector<std::wstring> reports = ListFiles(folder + L"\\VideoFiles", L"*.txt");
    std::string where = std::string(MAVU_BINARY_DIR_UNIX) + "/e2e-work/demo/VideoFiles/";
    std::printf("\nUser Messages:\n%s\n", Narrow(program.Messages()).c_str());
    for (const std::wstring& video : videos)
        std::printf("Video:      %s%s\n", where.c_str(), Narrow(video).c_str());
    for (const std::wstring& report : reports) {
        std::printf("Report:     %s%s\n", where.c_str(), Narrow(report).c_str());
        std::printf("%s\n", ReadFileBytes(folder + L"\\VideoFiles\\" + report).c_str());
    }
    if (pictured)
        std::printf("Screenshot: %s/screenshots/demo-recording.png\n", MAVU_BINARY_DIR_UNIX);

    DWORD code = 0;
    if (keep) {
        std::printf("MAVU Video Capture stays open; close it to end.\n");
        std::fflush(stdout);
        program.WaitExit(INFINITE, &code);
    } else {
        PostCommand(main, 33099);  // File, Exit
        program.WaitExit(15000, &code);
    }
    synthcam::RemoveDevice(kCamera);
    return ended && !videos.empty() && !reports.empty() ? 0 : 1;
}
