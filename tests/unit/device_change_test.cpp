// A device change that isn't a scan: which notifications are taken, and a recording's continuation file names.
#include "app/continuation_file.h"
#include "app/device_change.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

TEST(DeviceChange, OnlyDevNodesChangedIsTakenAndOnlyWhenNothingElseRuns)
{
    struct Row {
        WPARAM wParam;
        bool startingUp, cameraStarting, busy;
        bool taken;
    } rows[] = {
        {7, false, false, false, true},
        // DBT_DEVICEARRIVAL, DBT_DEVICEREMOVECOMPLETE, DBT_QUERYCHANGECONFIG: not the one.
        {0x8000, false, false, false, false},
        {0x8004, false, false, false, false},
        {0x0017, false, false, false, false},
        {7, true, false, false, false},
        {7, false, true, false, false},
        {7, false, false, true, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(DeviceChangeTaken(row.wParam, row.startingUp, row.cameraStarting, row.busy), row.taken)
            << row.wParam << row.startingUp << row.cameraStarting << row.busy;
}

TEST(DeviceChange, ContinuationFilesAreNamedFromTheFirstFile)
{
    const std::wstring longName(250, L'a'), longCut = longName + L"_10.a";
    struct Row {
        std::wstring first;
        uint32_t count;
        const wchar_t* path;  // null: refused
    } rows[] = {
        {L"VideoFiles\\x.avi", 1, L"VideoFiles\\x_1.avi"},
        {L".avi", 3, L"_3.avi"},
        // Cut to the room it has.
        {longName + L".avi", 10, longCut.c_str()},
        // The comparison is exact: upper case, another extension or none.
        {L"VideoFiles\\X.AVI", 1, nullptr},
        {L"VideoFiles\\x.avi.txt", 1, nullptr},
        {L"avi", 1, nullptr},
        {L"", 1, nullptr},
    };
    for (const Row& row : rows) {
        wchar_t out[256] = L"untouched";
        bool made = ContinuationFilePath(row.first.c_str(), row.count, out, 256);
        EXPECT_EQ(made, row.path != nullptr) << testing::PrintToString(row.first);
        EXPECT_EQ(std::wstring(out), row.path ? row.path : L"untouched") << testing::PrintToString(row.first);
    }
}

TEST(DeviceChange, ARestartGoesOnInTheNextContinuationThatHoldsNothing)
{
    struct Row {
        std::set<std::wstring> holding;  // files with data in them
        uint32_t count;  // the recording's continuation count before
        const wchar_t* path;  // null: none to be had
        uint32_t countAfter;
    } rows[] = {
        // Continuations left by earlier runs, or by a device that came back,
        // are passed over: no file that holds frames is opened anew.
        {{L"x.avi", L"x_1.avi", L"x_2.avi"}, 0, L"x_3.avi", 3},
        {{L"x.avi", L"x_2.avi"}, 0, L"x_1.avi", 1},
        {{L"x.avi", L"x_2.avi"}, 2, L"x_3.avi", 3},
    };
    for (const Row& row : rows) {
        uint32_t count = row.count;
        wchar_t out[64] = L"untouched";
        bool found = NextFreeContinuation(
            L"x.avi", count, [&](const wchar_t* path) { return row.holding.count(path) > 0; }, out, 64);
        EXPECT_TRUE(found);
        EXPECT_EQ(std::wstring(out), row.path);
        EXPECT_EQ(count, row.countAfter);
    }

    uint32_t count = 0;
    wchar_t out[64] = L"untouched";
    EXPECT_FALSE(NextFreeContinuation(L"x.AVI", count, [](const wchar_t*) { return false; }, out, 64));
    EXPECT_FALSE(NextFreeContinuation(L"x.avi", count, [](const wchar_t*) { return true; }, out, 64))
        << "every name taken";
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(std::wstring(out), L"untouched");
}
