// The disk of the video folder: a warning when an event won't fit, and a
// disk that fills during a recording, which stops the recording in time for
// its file and report and leaves the program and the next events running.
#include <gtest/gtest.h>

#include "e2e/program_run.h"

using namespace e2e;

namespace {

constexpr wchar_t kSpaceWarning[] = L"WARNING: the recording needs about ";

uint64_t FreeMb(const std::wstring& folder)
{
    ULARGE_INTEGER available{};
    return GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr) ? available.QuadPart >> 20 : 0;
}

// A volume of its own for the video folder: a tmpfs of that many megabytes,
// mounted over the folder for the test and taken away after it.
class SmallVolume {
public:
    SmallVolume(const std::wstring& folder, int megabytes) : folder_(folder)
    {
        CreateDirectoryW(folder.c_str(), nullptr);
        unixFolder_ = testsupport::UnixPath(Narrow(folder));
        RunUnix("mount -t tmpfs -o size=" + std::to_string(megabytes) + "m mavu-test '" + unixFolder_ + "'");
        mounted_ = WaitUntil([&] { return FreeMb(folder_) > 0 && FreeMb(folder_) <= static_cast<uint64_t>(megabytes); },
                             5000);
    }
    ~SmallVolume()
    {
        if (mounted_)
            RunUnix("umount -l '" + unixFolder_ + "'");
    }
    bool Mounted() const { return mounted_; }

private:
    std::wstring folder_;
    std::string unixFolder_;
    bool mounted_ = false;
};

}  // namespace

TEST(Disk, AFullDiskStopsTheRecordingWithItsFileAndReportAndTheNextEventRecords)
{
    ProgramRun run;
    const std::wstring& folder = run.folder;
    std::wstring videos = folder + L"\\small";
    SmallVolume volume(videos, 200);
    if (!volume.Mounted())
        GTEST_SKIP() << "a tmpfs can't be mounted here (the test needs root)";
    // 640x480 YUY2 at 30 a second is 18 MB a second: 30 s need 530 MB, and
    // 5 s fit.
    WriteEvent(folder, L"a_big", UtcInSeconds(25), 30, "Big");
    WriteEvent(folder, L"b_small", UtcInSeconds(75), 5, "Small");
    ASSERT_TRUE(run.StartWithSkyCam(Option("VideoDirectory", Narrow(videos + L"\\").c_str())));
    Program& program = *run.program;
    HWND main = program.MainWindow();
    // Armed, the big event is warned of, with both figures and the folder.
    std::wstring messages = program.Messages();
    size_t warning = messages.find(kSpaceWarning);
    ASSERT_NE(warning, std::wstring::npos) << Narrow(messages);
    std::wstring line = messages.substr(warning, messages.find(L'\r', warning) - warning);
    EXPECT_NE(line.find(L" MB, but only "), std::wstring::npos) << Narrow(line);
    EXPECT_NE(line.find(L" MB are free for the video folder \"" + videos + L"\\\""), std::wstring::npos)
        << Narrow(line);

    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
    std::wstring full = L"WARNING: the disk of the video folder \"" + videos + L"\\\" is full: the recording was stopped";
    ASSERT_TRUE(program.WaitForMessage(full, 30000)) << Narrow(program.Messages());
    std::vector<std::wstring> files = ListFiles(videos, L"*.avi");
    ASSERT_EQ(files.size(), 1u);
    std::wstring avi = videos + L"\\" + files[0];
    std::wstring report = avi.substr(0, avi.size() - 4) + L".txt";
    ASSERT_TRUE(WaitUntil([&] { return GetFileAttributesW(report.c_str()) != INVALID_FILE_ATTRIBUTES; }, 5000));
    std::string reportText = ReadFileBytes(report);
    EXPECT_NE(reportText.find("Number of recorded frames:  "), std::string::npos) << reportText;
    testsupport::ProbedVideo probed = testsupport::ProbeVideo(Narrow(avi));
    ASSERT_TRUE(probed.ok) << probed.raw;
    EXPECT_GT(probed.frames, 100);
    std::printf("full disk: %d frames in the file, %llu MB left free\n", probed.frames,
                static_cast<unsigned long long>(FreeMb(videos)));
    // The program still answers, and the event still counts as recording
    // until its end.
    EXPECT_TRUE(Answers(main));
    EXPECT_EQ(WindowText(main), kRecordingTitle);

    // Space again before the next event: it records, and fits without a word.
    ASSERT_TRUE(DeleteFileW(avi.c_str()));
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) != kRecordingTitle; }, 40000));
    EXPECT_EQ(ReadFileBytes(report), reportText) << "the event's end leaves the report alone";
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) == kRecordingTitle; }, 40000));
    ASSERT_TRUE(WaitUntil([&] { return WindowText(main) != kRecordingTitle; }, 20000));
    ASSERT_TRUE(WaitUntil([&] { return ListFiles(videos, L"Small_*.txt").size() == 1; }, 10000));
    files = ListFiles(videos, L"*.avi");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].rfind(L"Small_", 0), 0u) << Narrow(files[0]);
    testsupport::ProbedVideo next = testsupport::ProbeVideo(Narrow(videos + L"\\" + files[0]));
    EXPECT_TRUE(next.ok) << next.raw;
    EXPECT_GT(next.frames, 120);
    // Twice for the big event, armed and started; never for the small one.
    EXPECT_EQ(program.CountMessages(kSpaceWarning), 2) << Narrow(program.Messages());
    program.Kill();
}
