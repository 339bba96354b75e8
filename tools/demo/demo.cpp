// Runs MAVU Video Capture once, as tools/run.sh shows it on a machine without
// a display: starts it in a fresh folder, waits for start-up, takes a
// screenshot, closes it and says where everything is.
#include <cstdio>

#include "e2e/harness.h"

using namespace e2e;

int main()
{
    const std::wstring name = L"demo";
    Program program(MakeWorkFolder(name));
    if (!program.Start() || !program.WaitReady()) {
        std::fprintf(stderr, "MAVU Video Capture did not start\n");
        return 1;
    }
    bool pictured = TakeScreenshot("demo-startup");
    std::printf("User Messages:\n%s\n", Narrow(program.Messages()).c_str());

    PostCommand(program.MainWindow(), 33099);  // File, Exit
    DWORD code = 1;
    program.WaitExit(10000, &code);

    std::printf("Program folder: %s/e2e-work/demo\n", MAVU_BINARY_DIR_UNIX);
    if (pictured)
        std::printf("Screenshot:     %s/screenshots/demo-startup.png\n", MAVU_BINARY_DIR_UNIX);
    std::printf("Exit code:      %lu\n", code);
    return code == 0 ? 0 : 1;
}
