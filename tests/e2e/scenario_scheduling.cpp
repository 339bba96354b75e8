// Scheduling inside the program, as a user does it: the Schedule Event
// window makes and edits event files, and the View, Edit, Delete Events
// list shows, sorts and deletes them.
#include <gtest/gtest.h>

#include <algorithm>

#include "e2e/program_run.h"
#include "e2e/remote_controls.h"
#include "support/ffprobe.h"
#include "ui/commands.h"
#include "ui/control_ids.h"

using namespace e2e;

namespace {

constexpr int kAsteroidEdit = kScheduleAsteroidEdit, kStarEdit = kScheduleStarEdit, kCommentEdit = kScheduleCommentEdit;
constexpr int kHibernateBox = kScheduleHibernateBox, kShutdownBox = kScheduleShutdownBox;
constexpr int kShowExpiredBox = kEventListShowExpiredBox, kAscendingBox = kEventListAscendingBox;
constexpr int kEditButton = kEventListEditButton, kDeleteButton = kEventListDeleteButton;
constexpr int kEventSecondsField = 5;

struct Scheduling : ProgramRun {
    HWND schedule = nullptr;
    HWND eventPicker = nullptr;
    HWND durationPicker = nullptr;
    HWND list = nullptr;
    HWND listWindow = nullptr;

    bool Start()
    {
        if (!devices.Add(L"Sky Cam", L"webcam") || !ProgramRun::Start())
            return false;
        schedule = Window(L"ScheduleEvents");
        listWindow = Window(L"ViewEvents");
        if (!schedule || !listWindow)
            return false;
        eventPicker = FindChild(schedule, L"SysDateTimePick32");
        durationPicker = GetWindow(eventPicker, GW_HWNDNEXT);
        while (durationPicker && ClassName(durationPicker) != L"SysDateTimePick32")
            durationPicker = GetWindow(durationPicker, GW_HWNDNEXT);
        list = FindChild(listWindow, L"SysListView32");
        return eventPicker && durationPicker && list;
    }
    HWND Item(HWND window, int id) const { return GetDlgItem(window, id); }

    void OpenSchedule() const { SendCommand(Main(), IDM_SCHEDULE); }
    void OpenList() const { SendCommand(Main(), IDM_EDIT_AND_DELETE); }

    // The event moment as a user sets it: the picker a second short of it,
    // then its seconds raised by the keyboard, which the program is told of.
    // The seconds field wraps within its minute (59 steps up to 00 of the
    // same minute), so the time set first is the moment with the seconds one
    // below, in the moment's own minute.
    void PickEventTime(const SYSTEMTIME& moment) const
    {
        SYSTEMTIME before = moment;
        before.wSecond = static_cast<WORD>((moment.wSecond + 59) % 60);
        SetPickerTime(eventPicker, before);
        StepPickerFieldUp(eventPicker, kEventSecondsField);
    }
    void SetDuration(WORD hours, WORD minutes, WORD seconds) const
    {
        SYSTEMTIME duration{2026, 1, 4, 1, hours, minutes, seconds, 0};
        SetPickerTime(durationPicker, duration);
    }
    void Type(int id, const wchar_t* text) const
    {
        SendMessageW(Item(schedule, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }
    std::vector<std::wstring> EventFiles() const { return ListFiles(folder + L"\\Events", L"*.mef"); }
    // Presses Delete and waits for the question; null when none comes.
    HWND AskToDelete() const
    {
        PostMessageW(Item(listWindow, kDeleteButton), BM_CLICK, 0, 0);
        return WaitForWindow(program->ProcessId(), L"#32770", L"Attention");
    }
};

}  // namespace

// A default duration saved in its window is the duration a new event starts with. A time before the window
// opened greys Schedule again. Four seconds ahead is too soon: the line, the picker back at the present, the
// window open, and no new file. Characters outside the allowed set are taken out again as they are typed, with the
// line for names or the line for comments.
// Then editing to a new time makes a file of the new name and removes the old;
// editing without a change writes the same name again.
TEST(Scheduling, TheDefaultDurationTooSoonAnEventDisallowedCharactersAndEditingAnEventReplacesItsFile)
{
    Scheduling run;
    SYSTEMTIME moment = UtcInSeconds(3600);
    WriteEvent(run.folder, L"Ceres_" + TimeName(moment), moment, 20, "Ceres", "");
    ASSERT_TRUE(run.Start());
    HWND window = run.Open(IDM_DURATION_DEFAULT, L"DefaultDuration");
    ASSERT_NE(window, nullptr);
    HWND picker = GetDlgItem(window, kDurationPicker);
    SYSTEMTIME shown{};
    ASSERT_TRUE(PickerTime(picker, &shown));
    EXPECT_EQ(shown.wHour * 3600 + shown.wMinute * 60 + shown.wSecond, 600) << "ten minutes until set";
    SYSTEMTIME twenty{1943, 5, 1, 3, 0, 0, 20, 0};
    ASSERT_TRUE(SetPickerTime(picker, twenty));
    Click(GetDlgItem(window, kDurationSaveButton));
    ASSERT_TRUE(run.program->WaitForMessage(L"Default recording duration saved in options file\r\n", 3000));
    EXPECT_FALSE(IsVisible(window));
    EXPECT_NE(run.OptionsFile().find(Option("DefaultDuration", "00:00:20")), std::string::npos) << run.OptionsFile();

    run.OpenSchedule();
    ASSERT_TRUE(PickerTime(run.durationPicker, &shown));
    EXPECT_EQ(shown.wHour * 3600 + shown.wMinute * 60 + shown.wSecond, 20);
    HWND scheduleButton = run.Item(run.schedule, kScheduleButton);
    EXPECT_FALSE(IsEnabled(scheduleButton));
    run.PickEventTime(UtcInSeconds(4));
    EXPECT_TRUE(IsEnabled(scheduleButton));
    run.PickEventTime(UtcInSeconds(-120));
    EXPECT_FALSE(IsEnabled(scheduleButton)) << "a time before the window opened";
    run.PickEventTime(UtcInSeconds(4));
    ASSERT_TRUE(IsEnabled(scheduleButton));
    Click(scheduleButton);
    ASSERT_TRUE(run.program->WaitForMessage(
        L"Event time must be at least 5 seconds after\r\nthe current time to allow for camera restart\r\n", 5000));
    EXPECT_TRUE(IsVisible(run.schedule));
    EXPECT_EQ(run.EventFiles(), Rows{L"Ceres_" + TimeName(moment) + L".mef"});
    ASSERT_TRUE(PickerTime(run.eventPicker, &shown));
    bool present = false;
    for (int apart = -2; apart <= 2; ++apart)
        present = present || TimeName(UtcInSeconds(apart)) == TimeName(shown);
    EXPECT_TRUE(present) << Narrow(TimeName(shown)) << ": the picker shows the present";

    run.Type(kStarEdit, L"TYC/12");
    EXPECT_EQ(WindowText(run.Item(run.schedule, kStarEdit)), L"TYC12");
    ASSERT_TRUE(run.program->WaitForMessage(
        L"Allowed characters are 'a' thru 'z', 'A' thru 'Z', '0' thru '9', '-', '_' or blank\r\n", 3000));
    run.Type(kCommentEdit, L"a/b (c) [d]");
    EXPECT_EQ(WindowText(run.Item(run.schedule, kCommentEdit)), L"ab (c) [d]");
    ASSERT_TRUE(run.program->WaitForMessage(
        L"Allowed characters are 'a' thru 'z', 'A' thru 'Z', '0' thru '9', or {}()[].:_-+#* or blank\r\n", 3000));
    // The same comment text in a name field loses its brackets too.
    run.Type(kAsteroidEdit, L"ab (c)");
    EXPECT_EQ(WindowText(run.Item(run.schedule, kAsteroidEdit)), L"ab c");

    run.OpenList();
    ASSERT_EQ(ListViewRowCount(run.list), 1);
    ClickListViewRow(run.list, 0);
    EXPECT_TRUE(IsEnabled(run.Item(run.listWindow, kEditButton)));
    Click(run.Item(run.listWindow, kEditButton));
    ASSERT_TRUE(IsVisible(run.schedule));
    EXPECT_EQ(WindowText(run.schedule), L"Edit Event");
    EXPECT_EQ(WindowText(run.Item(run.schedule, kAsteroidEdit)), L"Ceres");
    ASSERT_TRUE(PickerTime(run.eventPicker, &shown));
    EXPECT_EQ(TimeName(shown), TimeName(moment));

    // Without a change: the same name.
    Click(run.Item(run.schedule, kScheduleButton));
    ASSERT_TRUE(WaitUntil([&] { return !IsVisible(run.schedule); }, 5000));
    EXPECT_EQ(run.EventFiles(), Rows{L"Ceres_" + TimeName(moment) + L".mef"});

    // To a new time: a file of the new name, and the old one gone.
    ClickListViewRow(run.list, 0);
    Click(run.Item(run.listWindow, kEditButton));
    SYSTEMTIME later = UtcInSeconds(7200);
    run.PickEventTime(later);
    Click(run.Item(run.schedule, kScheduleButton));
    ASSERT_TRUE(WaitUntil([&] { return !IsVisible(run.schedule); }, 5000));
    const std::wstring renamed = L"Ceres_" + TimeName(later) + L".mef";
    EXPECT_EQ(run.EventFiles(), Rows{renamed});
    EXPECT_EQ(ListViewText(run.list, 0, 7), renamed);
}

// The rows and their cells, in both orders, with and without expired events; an unreadable file is a row of its
// own. Two events listed, one selected: the plural question, as it counts rows; No keeps them, Yes deletes the armed
// one and arms the next. A file the platform won't delete (read-only) gets the warning, once for that file; the other
// selected file goes, and nothing else is lost. One row left: the singular question.
TEST(Scheduling, TheListSortsShowsItsCellsAndDeletesAskingByTheRowsWarningOfAFileThatCannotGoAndArmingTheNext)
{
    Scheduling run;
    SYSTEMTIME early{2040, 5, 0, 3, 1, 2, 3, 0};
    SYSTEMTIME late{2040, 12, 0, 24, 21, 0, 59, 0};
    SYSTEMTIME past{2020, 1, 0, 9, 8, 7, 6, 0};
    WriteEvent(run.folder, L"early", early, 3725, "A", "B", true, false);
    const std::wstring readOnly = WriteEvent(run.folder, L"late", late, 10, "", "", false, true);
    WriteEvent(run.folder, L"past", past, 60, "", "");
    WriteFileBytes(run.folder + L"\\Events\\broken.mef", "<Root><EventYear Value=\"2040\"");
    ASSERT_TRUE(SetFileAttributesW(readOnly.c_str(), FILE_ATTRIBUTE_READONLY));
    ASSERT_TRUE(run.Start());
    ASSERT_TRUE(run.WaitTitle(kPendingTitle, 5000));
    run.OpenList();
    std::vector<std::vector<std::wstring>> rows = ListViewRows(run.list, 8);
    ASSERT_EQ(rows.size(), 2u) << "expired events are left out";
    const std::wstring check = L"\u2713";
    EXPECT_EQ(rows[0], (std::vector<std::wstring>{L" DEC 24, 2040", L" 21:00:59", L"00:00:10", L"", L"", check, L"",
                                                  L"late.mef"}));
    EXPECT_EQ(rows[1], (std::vector<std::wstring>{L" MAY  3, 2040", L" 01:02:03", L"01:02:05", L"", check, L"", L"",
                                                  L"early.mef"}));

    Click(run.Item(run.listWindow, kAscendingBox));
    EXPECT_EQ(ListViewText(run.list, 0, 7), L"early.mef");

    Click(run.Item(run.listWindow, kShowExpiredBox));
    rows = ListViewRows(run.list, 8);
    ASSERT_EQ(rows.size(), 4u);
    // The unreadable file counts as expired; its times are the zero time,
    // the earliest of all.
    EXPECT_EQ(rows[0], (std::vector<std::wstring>{L"", L"", L"", L"", L"", L"", check, L"broken.mef"}));
    EXPECT_EQ(rows[1][7], L"past.mef");
    EXPECT_EQ(rows[1][6], check);

    TakeScreenshot("event-list");
    Click(run.Item(run.listWindow, kShowExpiredBox));
    ASSERT_EQ(ListViewRowCount(run.list), 2);

    // Earliest first: early, the armed one, and late, the read-only one.
    ClickListViewRow(run.list, 0);
    EXPECT_EQ(ListViewSelectedCount(run.list), 1);
    HWND box = run.AskToDelete();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(MessageBoxText(box), L"You are about to delete event files.  Continue?");
    AnswerMessageBox(box, IDNO);
    Sleep(500);
    EXPECT_EQ(run.EventFiles().size(), 4u);

    int loads = run.Count(L"Current Event Information:");
    AnswerMessageBox(run.AskToDelete(), IDYES);
    ASSERT_TRUE(WaitUntil([&] { return run.EventFiles().size() == 3; }, 5000));
    ASSERT_TRUE(WaitUntil([&] { return run.Count(L"Current Event Information:") == loads + 1; }, 5000));
    EXPECT_EQ(WindowText(run.Main()), kPendingTitle) << "the next event is armed";
    ASSERT_EQ(ListViewRowCount(run.list), 1);
    EXPECT_EQ(ListViewText(run.list, 0, 7), L"late.mef");
    EXPECT_FALSE(IsEnabled(run.Item(run.listWindow, kEditButton)));
    EXPECT_FALSE(IsEnabled(run.Item(run.listWindow, kDeleteButton)));

    // With the expired ones: broken, past and late, the last two selected.
    Click(run.Item(run.listWindow, kShowExpiredBox));
    ASSERT_EQ(ListViewRowCount(run.list), 3);
    ClickListViewRow(run.list, 1);
    ClickListViewRow(run.list, 2, true);
    EXPECT_EQ(ListViewSelectedCount(run.list), 2);
    EXPECT_EQ(WindowText(FindChild(run.listWindow, L"Static", L"multiple events selected")),
              L"multiple events selected");
    EXPECT_FALSE(IsEnabled(run.Item(run.listWindow, kEditButton)));
    AnswerMessageBox(run.AskToDelete(), IDYES);
    ASSERT_TRUE(run.program->WaitForMessage(
        L"WARNING: unable to delete one or more selected event files - write protected?\r\n", 5000));
    ASSERT_TRUE(WaitUntil([&] { return run.EventFiles().size() == 2; }, 5000));
    std::vector<std::wstring> files = run.EventFiles();
    std::sort(files.begin(), files.end());
    EXPECT_EQ(files, (std::vector<std::wstring>{L"broken.mef", L"late.mef"}));
    EXPECT_EQ(run.Count(L"WARNING: unable to delete"), 1);

    // One row listed: the singular question; the last event's delete ends its countdown.
    Click(run.Item(run.listWindow, kShowExpiredBox));
    ASSERT_TRUE(SetFileAttributesW(readOnly.c_str(), FILE_ATTRIBUTE_NORMAL));
    ClickListViewRow(run.list, 0);
    box = run.AskToDelete();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(MessageBoxText(box), L"You are about to delete an event file.  Continue?");
    AnswerMessageBox(box, IDYES);
    ASSERT_TRUE(WaitUntil([&] { return run.EventFiles().size() == 1; }, 5000));
    ASSERT_TRUE(run.WaitTitle(kMainTitle, 5000));
}

// A new event made with the mouse and keyboard: the file of the exact name and bytes, the lines and the countdown.
// While it records, the two windows that stand open act on the folder and the countdown only: a delete that
// removes nothing, the save of another event, and the delete of that one (which cancels its countdown) leave the
// event to end at its time with its file and report.
TEST(Scheduling, AnEventScheduledInTheWindowIsWrittenArmedAndRecordedToItsEndThroughDeletesAndASaveMeanwhile)
{
    Scheduling run;
    ASSERT_TRUE(run.Start());
    run.OpenSchedule();
    ASSERT_TRUE(IsVisible(run.schedule));
    EXPECT_EQ(WindowText(run.schedule), L"Schedule Event");
    HWND button = run.Item(run.schedule, kScheduleButton);
    SYSTEMTIME moment = UtcInSeconds(25);
    run.PickEventTime(moment);
    run.SetDuration(0, 0, 8);
    run.Type(kAsteroidEdit, L"Vesta");
    run.Type(kStarEdit, L"TYC1234");
    run.Type(kCommentEdit, L"Rehearsal (dry run)");
    Click(run.Item(run.schedule, kShutdownBox));
    Click(run.Item(run.schedule, kHibernateBox));
    // The two power requests exclude each other.
    EXPECT_EQ(SendMessageW(run.Item(run.schedule, kShutdownBox), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    Click(run.Item(run.schedule, kHibernateBox));
    TakeScreenshot("schedule-event");
    Click(button);

    ASSERT_TRUE(WaitUntil([&] { return !IsVisible(run.schedule); }, 5000));
    std::wstring name = L"Vesta_TYC1234_" + TimeName(moment);
    ASSERT_EQ(run.EventFiles(), Rows{name + L".mef"});
    const std::wstring file = run.folder + L"\\Events\\" + name + L".mef";
    EXPECT_EQ(ReadFileBytes(file), EventFileBytes(moment, 8, "Vesta", "TYC1234", false, false, "Rehearsal (dry run)"));
    ASSERT_TRUE(run.program->WaitForMessage(L"Scheduled an event recording:  " + name + L"\r\n", 5000));
    ASSERT_TRUE(run.program->WaitForMessage(L"    " + name, 5000));
    EXPECT_EQ(WindowText(run.Main()), kPendingTitle);

    ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY));
    // Both are opened before the recording greys their menu items.
    run.OpenList();
    run.OpenSchedule();
    ASSERT_TRUE(run.WaitTitle(kRecordingTitle, 30000));
    // The recording begins half a second ahead of the event's start: until
    // then a reload would find the event still to come and arm it again.
    Sleep(1500);

    ClickListViewRow(run.list, 0);
    AnswerMessageBox(run.AskToDelete(), IDYES);
    ASSERT_TRUE(run.program->WaitForMessage(
        L"WARNING: unable to delete one or more selected event files - write protected?\r\n", 5000));
    EXPECT_EQ(WindowText(run.Main()), kRecordingTitle);
    run.PickEventTime(UtcInSeconds(3600));
    Click(run.Item(run.schedule, kScheduleButton));
    ASSERT_TRUE(WaitUntil([&] { return run.Count(L"Scheduled an event recording:  ") == 2; }, 5000));
    ASSERT_TRUE(WaitUntil([&] { return run.EventFiles().size() == 2; }, 5000));
    // Latest first: the new event, then the one recording.
    ClickListViewRow(run.list, 0);
    AnswerMessageBox(run.AskToDelete(), IDYES);
    ASSERT_TRUE(WaitUntil([&] { return run.EventFiles().size() == 1; }, 5000));
    EXPECT_EQ(WindowText(run.Main()), kRecordingTitle) << "only the countdown was cancelled";

    // The event ends on its own, about 4 s after its moment, with an event's report; the recording is named by the
    // event and its nominal start, 4 s before the moment, and holds about 8 s at 30 frames a second.
    const std::wstring recorded = L"Vesta_TYC1234_" + TimeName(Shifted(moment, -4)) + L".avi";
    ASSERT_EQ(run.Recordings(), Rows{recorded}) << Narrow(run.program->Messages());
    EXPECT_EQ(run.ReportOf(recorded).rfind("Event recording: ", 0), 0u) << run.ReportOf(recorded);
    testsupport::ProbedVideo video = testsupport::ProbeVideo(Narrow(run.VideoPath(recorded)));
    ASSERT_TRUE(video.ok) << video.raw;
    EXPECT_GT(video.frames, 6 * 30);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}
