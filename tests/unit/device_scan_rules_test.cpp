// The classing of a device change: which device a scan deals with, what it marks, and the faults it reports.
#include "video/device_scan_rules.h"

#include <gtest/gtest.h>

#include "device_records.h"

namespace {

struct Scan : DeviceRecords {
    DeviceScanVerdict Run(std::vector<std::wstring> attached)
    {
        uint32_t disconnected = 0;
        const wchar_t* fault = nullptr;
        EXPECT_TRUE(PrepareDeviceScan(sources, disconnected, fault));
        return ClassifyDeviceScan(sources, attached, disconnected);
    }
};

}  // namespace

TEST(DeviceScanRules, EachKindOfRemovalAndReturnGivesItsResultAndMarksTheDevice)
{
    struct Row {
        const char* flags;  // of the device "Cam"; a second device "Other" stays attached
        bool attached;  // "Cam" is in the list
        ConnectResult result;
        int32_t disconnectedAfter;
    } rows[] = {
        {"A", false, ActiveDeviceRemoved, 1},
        {"M", false, RecordingDeviceRemoved, 1},
        {"E", false, RecordingDeviceRemoved, 1},
        {"", false, InactiveDeviceRemoved, 1},
        {"I", false, IgnoredDeviceRemoved, 1},
        // Ignored comes before the activity flags.
        {"IA", false, IgnoredDeviceRemoved, 1},
        {"MD", true, RecordingDeviceReturned, 0},
        {"ED", true, RecordingDeviceReturned, 0},
        {"D", true, KnownDeviceReturned, 0},
        {"ID", true, IgnoredDeviceReturned, 0},
        // Nothing changed: a known device still attached, or still away.
        {"A", true, NothingToDo, 0},
        {"D", false, NothingToDo, 1},
    };
    for (const Row& row : rows) {
        Scan scan;
        scan.Add(L"Other");
        scan.Add(L"Cam", row.flags);
        scan.sources[1]->baseFilter = reinterpret_cast<IBaseFilter*>(0x1234);
        std::vector<std::wstring> attached{L"Other"};
        if (row.attached)
            attached.push_back(L"Cam");
        DeviceScanVerdict verdict = scan.Run(attached);
        EXPECT_EQ(verdict.result, row.result) << row.flags;
        EXPECT_EQ(verdict.logicError, nullptr) << row.flags;
        EXPECT_EQ(verdict.index, row.result == NothingToDo ? -1 : 1) << row.flags;
        EXPECT_EQ(scan.sources[1]->isDisconnected, row.disconnectedAfter) << row.flags;
        // A device that comes back is bound afresh by name; its old filter
        // is let go without a release.
        bool returned = row.result == RecordingDeviceReturned || row.result == KnownDeviceReturned ||
            row.result == IgnoredDeviceReturned;
        EXPECT_EQ(scan.sources[1]->baseFilter == nullptr, returned) << row.flags;
        EXPECT_EQ(scan.sources[0]->isDisconnected, 0);
    }
}

TEST(DeviceScanRules, ANewDeviceIsTheFirstAttachedEntryWithoutARecord)
{
    Scan scan;
    scan.Add(L"Cam", "A");
    DeviceScanVerdict verdict = scan.Run({L"Cam", L"New One", L"Newer"});
    // Two came at once: C is -2, and the first entry without a record is
    // the one dealt with.
    EXPECT_EQ(verdict.result, NewDeviceAppended);
    EXPECT_EQ(verdict.newDeviceEntry, 1);
    EXPECT_EQ(verdict.index, -1);
    EXPECT_EQ(verdict.logicError, nullptr);
}

TEST(DeviceScanRules, TwoRemovalsInOneScanHandleOnlyTheFirst)
{
    Scan scan;
    scan.Add(L"Cam", "A");
    scan.Add(L"Spare");
    scan.Add(L"Third");
    DeviceScanVerdict verdict = scan.Run({L"Cam"});
    EXPECT_EQ(verdict.result, InactiveDeviceRemoved);
    EXPECT_EQ(verdict.index, 1);
    EXPECT_EQ(scan.sources[1]->isDisconnected, 1);
    // The second stays as if attached until the next scan finds it.
    EXPECT_EQ(scan.sources[2]->isDisconnected, 0);
    verdict = scan.Run({L"Cam"});
    EXPECT_EQ(verdict.result, InactiveDeviceRemoved);
    EXPECT_EQ(verdict.index, 2);
    EXPECT_EQ(scan.Run({L"Cam"}).result, NothingToDo);
}

TEST(DeviceScanRules, OfTwoDevicesOfOneNameTheSecondRecordIsTheOneMarked)
{
    Scan scan;
    scan.Add(L"Twin Cam", "A");
    scan.Add(L"Twin Cam");
    // Whichever was pulled, the first record keeps the one entry.
    DeviceScanVerdict verdict = scan.Run({L"Twin Cam"});
    EXPECT_EQ(verdict.result, InactiveDeviceRemoved);
    EXPECT_EQ(verdict.index, 1);
    EXPECT_EQ(scan.sources[0]->seenAttached, 1);
    EXPECT_EQ(scan.sources[1]->seenAttached, 0);
    verdict = scan.Run({L"Twin Cam", L"Twin Cam"});
    EXPECT_EQ(verdict.result, KnownDeviceReturned);
    EXPECT_EQ(verdict.index, 1);
}

TEST(DeviceScanRules, FaultsGiveTheirLineAndNothingToDo)
{
    struct Case {
        const char* what;
        std::vector<std::pair<const wchar_t*, const char*>> devices;
        std::vector<std::wstring> attached;
        bool miscounted;  // the count of marked devices disagrees with the marks
        const wchar_t* fault;
    };
    const Case kCases[] = {
        // The removed device is marked all the same.
        {"two activity flags on the removed device",
         {{L"Cam", "AM"}},
         {},
         false,
         L"Device connect / disconnect logic error - active flags count greater than 1\r\n"},
        {"two went and a stranger came",
         {{L"Cam", "A"}, {L"Spare", ""}},
         {L"Stranger"},
         false,
         L"Device connect / disconnect logic error - attached devices count problem\r\n"},
        {"more attached than known, but none marked away",
         {{L"Cam", "A"}},
         {L"Cam", L""},
         false,
         L"Device connect / disconnect logic error - expected to find a reattached device\r\n"},
        {"a device seems gone, but every record is matched or marked",
         {{L"Cam", "D"}},
         {},
         true,
         L"Device disconnect logic error - cannot find removed device in source vector\r\n"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        Scan scan;
        for (auto [name, flags] : c.devices)
            scan.Add(name, flags);
        std::vector<std::wstring> attached = c.attached;
        DeviceScanVerdict verdict = c.miscounted ? ClassifyDeviceScan(scan.sources, attached, 0) : scan.Run(attached);
        EXPECT_EQ(verdict.result, NothingToDo);
        EXPECT_STREQ(verdict.logicError, c.fault);
        EXPECT_TRUE(!c.attached.empty() || scan.sources[0]->isDisconnected) << "the removed device is marked";
    }
}

TEST(DeviceScanRules, AnEmptyRecordStopsTheScanBeforeAnythingIsCleared)
{
    VideoSourceInfo cam{};
    cam.seenAttached = 1;
    std::vector<VideoSourceInfo*> sources{nullptr, &cam};
    uint32_t disconnected = 7;
    const wchar_t* fault = nullptr;
    EXPECT_FALSE(PrepareDeviceScan(sources, disconnected, fault));
    EXPECT_STREQ(fault, L"Logic error: pointer to VideoSourceInfo is NULL in UpdateSourceVideoInfoList\r\n");
    EXPECT_EQ(cam.seenAttached, 1);
}

TEST(DeviceScanRules, TheChosenDeviceIsTheFirstDefaultElseTheFirstUsable)
{
    struct Row {
        std::vector<const char*> flags;
        uint32_t chosen;
    } rows[] = {
        {{}, kNoSource},      {{""}, 0},       {{"", "F"}, 1}, {{"F", "F"}, 0}, {{"I", ""}, 1}, {{"D", "I"}, kNoSource},
        {{"DF", "", "F"}, 2}, {{"IF", ""}, 1},
    };
    for (const Row& row : rows) {
        Scan scan;
        for (const char* flags : row.flags)
            scan.Add(L"Cam", flags);
        EXPECT_EQ(ChooseDeviceIndex(scan.sources), row.chosen) << row.flags.size();
    }
}
