// Damaged event and options files: each is read without a crash or an overflow, and ends in its one defined outcome.
#include <gtest/gtest.h>

#include <cwchar>
#include <functional>

#include "base/ticks.h"
#include "events/event_file.h"
#include "persistence/options_file.h"
#include "support/temp_folder.h"
#include "ui/user_messages.h"
#include "video/codecs.h"

namespace {

const std::string kHeader = "<?xml version='1.0'?>\r\n<!--test-->\r\n<Root>\r\n";
const std::string kFooter = "</Root>\r\n";

std::string Key(const std::string& name, const std::string& value)
{
    return "\t<" + name + " Value=\"" + value + "\"/>\r\n";
}

// A complete event, far in the future, with one field replaced or left out.
std::string EventWith(const std::string& field, const std::string& replacement)
{
    const std::pair<const char*, const char*> fields[] = {
        {"EventYear", "2040"},     {"EventMonth", " 5"},     {"EventDay", " 3"},
        {"EventHour", " 1"},       {"EventMinute", " 2"},    {"EventSecond", " 3"},
        {"DurationHour", " 0"},    {"DurationMinute", "10"}, {"DurationSecond", " 0"},
        {"Hibernate", "FALSE"},    {"Shutdown", "FALSE"},    {"Comment", "c"},
        {"AsteroidName", "a"},     {"StarName", "s"},
    };
    std::string body;
    for (const auto& [name, value] : fields) {
        if (field == name)
            body += replacement;
        else
            body += Key(name, value);
    }
    return kHeader + body + kFooter;
}

std::string Garbage(size_t size)
{
    std::string bytes(size, '\0');
    uint32_t state = 12345;
    for (char& byte : bytes) {
        state = state * 1103515245 + 12345;
        byte = static_cast<char>(state >> 16);
    }
    return bytes;
}

struct EventCase {
    const char* what;
    std::string bytes;
    int read;  // ReadEventFile's result
    std::function<void(const EventRecord&)> check;
};

void Expired(const EventRecord& record)
{
    EXPECT_EQ(record.expired, 1);
    EXPECT_EQ(record.startTicks, 0u);
    EXPECT_EQ(record.endTicks, 0u);
}

void Armable(const EventRecord& record)
{
    EXPECT_EQ(record.expired, 0);
    EXPECT_EQ(record.endTicks - record.startTicks, record.durationTicks);
}

}  // namespace

TEST(BadInput, DamagedEventFilesHaveDefinedOutcomes)
{
    const std::string hugeComment(100000, 'c');
    std::string manyUnknown = kHeader;
    while (manyUnknown.size() < 5 * 1024 * 1024)
        manyUnknown += Key("Unknown", std::string(200, 'u'));
    manyUnknown += EventWith("", "").substr(kHeader.size());

    const EventCase cases[] = {
        {"empty file", "", 0, Expired},
        {"binary garbage", Garbage(4096), 0, Expired},
        {"truncated in an element", EventWith("", "").substr(0, 120), 0, Expired},
        {"missing year", EventWith("EventYear", ""), 1, Expired},
        {"missing duration seconds", EventWith("DurationSecond", ""), 1, Expired},
        {"month 13", EventWith("EventMonth", Key("EventMonth", "13")), 1, Expired},
        {"30 February", EventWith("EventDay", Key("EventDay", "30")).replace(
             EventWith("", "").find("EventMonth Value=\" 5\""), 21, "EventMonth Value=\" 2\""), 1, Expired},
        {"hour 24", EventWith("EventHour", Key("EventHour", "24")), 1, Expired},
        {"letters for a number", EventWith("EventMinute", Key("EventMinute", "ab")), 1, Expired},
        {"oversize comment", EventWith("Comment", Key("Comment", hugeComment)), 1,
         [](const EventRecord& record) {
             Armable(record);
             EXPECT_EQ(wcslen(record.text.comment), static_cast<size_t>(kEventCommentCapacity - 1));
         }},
        {"oversize names", EventWith("StarName", Key("StarName", std::string(5000, 's'))), 1,
         [](const EventRecord& record) {
             EXPECT_EQ(wcslen(record.text.starName), static_cast<size_t>(kEventNameCapacity - 1));
         }},
        {"oversize year digits", EventWith("EventYear", Key("EventYear", "2040" + std::string(3000, '0'))), 1,
         [](const EventRecord& record) {
             Armable(record);
             EXPECT_EQ(record.eventTime.wYear, 2040);
         }},
        {"lower-case TRUE", EventWith("Hibernate", Key("Hibernate", "true")), 1,
         [](const EventRecord& record) { EXPECT_EQ(record.hibernate, 0); }},
        {"nested element inside a key", EventWith("EventDay", "\t<EventDay Value=\" 3\"><x/></EventDay>\r\n"), 1,
         Armable},
        {"five megabytes of unknown keys", manyUnknown, 1, Armable},
        {"duration of 99 hours", EventWith("DurationHour", Key("DurationHour", "99")), 1,
         [](const EventRecord& record) { EXPECT_EQ(record.durationTicks, (99ull * 3600 + 10 * 60) * kTicksPerSecond); }},
        {"UTF-16 mark before garbage", "\xFF\xFE" + Garbage(4095), 0, Expired},
        {"UTF-8 mark before garbage", "\xEF\xBB\xBF" + Garbage(4096), 0, Expired},
        {"a NUL behind the root", EventWith("", "") + std::string(1, '\0') + "<x/>", 0, Expired},
        {"invalid UTF-8 behind a mark", "\xEF\xBB\xBF" + EventWith("Comment", Key("Comment", "a\xC3(\xFF")), 1,
         [](const EventRecord& record) {
             Armable(record);
             EXPECT_STREQ(record.text.comment, L"a\uFFFD(\uFFFD");
         }},
        {"declaration without its end", "<?xml version='1.0' encoding='UTF-8'" + std::string(100000, ' '), 0, Expired},
    };

    TempFolder folder;
    const uint64_t now = SystemTimeToTicks(SYSTEMTIME{2026, 11, 0, 22, 12, 0, 0, 0});
    int index = 0;
    for (const EventCase& c : cases) {
        SCOPED_TRACE(c.what);
        std::wstring path = folder.File(L"bad" + std::to_wstring(index++) + L".mef");
        WriteFileBytes(path, c.bytes);
        EventRecord record{};
        EXPECT_EQ(ReadEventFile(path.c_str(), record.text), c.read);
        ParseEventRecordAt(record, now);
        c.check(record);
    }
    EXPECT_TRUE(TakeQueuedUserMessages().empty());
}

namespace {

struct OptionsCase {
    const char* what;
    std::string bytes;
    int loaded;
    std::function<void()> check;
};

void Defaults()
{
    EXPECT_STREQ(options.VideoNamePrefix, L"");
    EXPECT_STREQ(options.EventPendingDisplay, L"COUNTDOWN");
    EXPECT_EQ(options.PixelSaturationValue, -1);
    EXPECT_EQ(options.windows[MainWindowKey].savedLeft, kNoPosition);
    EXPECT_EQ(options.DefaultRenderer, 0);
}

std::string OptionsText(const std::string& keys)
{
    return kHeader + keys + kFooter;
}

}  // namespace

TEST(BadInput, DamagedOptionsFilesHaveDefinedOutcomes)
{
    std::string huge = kHeader;
    while (huge.size() < 5 * 1024 * 1024)
        huge += Key("Unknown", std::string(500, 'u'));
    huge += Key("VideoNamePrefix", "late") + kFooter;

    const OptionsCase cases[] = {
        {"empty file", "", 0, Defaults},
        {"binary garbage", Garbage(8192), 0, Defaults},
        {"truncated", OptionsText(Key("VideoNamePrefix", "abc")).substr(0, 60), 0, Defaults},
        {"no attribute", OptionsText("\t<PixelSaturationValue/>\r\n"), 1, Defaults},
        {"oversize prefix", OptionsText(Key("VideoNamePrefix", std::string(500, 'p'))), 1,
         [] { EXPECT_EQ(wcslen(options.VideoNamePrefix), static_cast<size_t>(kShortTextCapacity - 1)); }},
        {"oversize folder", OptionsText(Key("VideoDirectory", std::string(5000, 'd'))), 1,
         [] { EXPECT_EQ(wcslen(options.VideoDirectory), static_cast<size_t>(kPathCapacity - 1)); }},
        {"oversize device name", OptionsText(Key("DefaultVideoSource", std::string(2000, 'n')) +
                                         Key("ExcludedVideoSource", std::string(2000, 'x'))),
         1,
         [] {
             EXPECT_EQ(wcslen(options.DefaultVideoSource), static_cast<size_t>(kDeviceNameCapacity - 1));
             ASSERT_EQ(options.ExcludedVideoSource.size(), 1u);
             EXPECT_EQ(options.ExcludedVideoSource[0].size(), static_cast<size_t>(kDeviceNameCapacity - 1));
         }},
        {"oversize duration text", OptionsText(Key("DefaultDuration", std::string(300, '9'))), 1,
         [] { EXPECT_EQ(wcslen(options.DefaultDuration), static_cast<size_t>(kSmallTextCapacity - 1)); }},
        {"huge numbers", OptionsText(Key("PixelSaturationValue", "99999999999999999999") +
                                 Key("MainWindowPosition", "-99999999999999, 99999999999999")),
         1, [] {}},
        {"renderer names in other spelling", OptionsText(Key("DefaultRenderer", "vmr9") + Key("DefaultRenderer", "VMR8")), 1,
         Defaults},
        {"ten-field VConfig", OptionsText(Key("VConfig", "C|30|640x480|YUY2|1|2|3|4|5|6")), 1,
         [] { EXPECT_TRUE(videoConfigurations.empty()); }},
        {"VConfig with empty eleventh", OptionsText(Key("VConfig", "C|30|640x480|YUY2|1|2|3|4|5|6|")), 1,
         [] { EXPECT_TRUE(videoConfigurations.empty()); }},
        {"oversize VConfig fields", OptionsText(Key("VConfig", std::string(3000, 'n') + "|" + std::string(300, '3') +
                                                               "|640x480|YUY2|1|2|3|4|5|6|" + std::string(300, 'P'))),
         1,
         [] {
             ASSERT_EQ(videoConfigurations.size(), 1u);
             EXPECT_EQ(wcslen(videoConfigurations[0]->deviceName), static_cast<size_t>(kConfigNameCapacity - 1));
             EXPECT_EQ(wcslen(videoConfigurations[0]->frameRate), static_cast<size_t>(kConfigRateCapacity - 1));
             EXPECT_EQ(wcslen(videoConfigurations[0]->standard), static_cast<size_t>(kConfigStandardCapacity - 1));
         }},
        {"codec pair without a bar", OptionsText(Key("SubtypeCodecPair", std::string(5000, 'y'))), 1,
         [] {
             EXPECT_TRUE(savedSubtypeCodecPairs.empty());
             EXPECT_TRUE(TakeQueuedUserMessages().empty());
         }},
        {"five megabytes", huge, 1, [] { EXPECT_STREQ(options.VideoNamePrefix, L"late"); }},
        {"UTF-16 mark before garbage", "\xFE\xFF" + Garbage(8191), 0, Defaults},
        {"UTF-16 cut after its first characters", std::string("<\0?\0x", 5), 0, Defaults},
        {"encoding named in a huge declaration",
         "<?xml version='1.0'" + std::string(100000, ' ') + "encoding='UTF-8'?>" +
             OptionsText(Key("VideoNamePrefix", "\xC3\xA9")).substr(kHeader.find("<!--")),
         1, [] { EXPECT_STREQ(options.VideoNamePrefix, L"\u00E9"); }},
    };

    TempFolder folder;
    const RECT workArea{0, 0, 1920, 1040};
    for (const OptionsCase& c : cases) {
        SCOPED_TRACE(c.what);
        SetOptionDefaults(options, workArea);
        videoConfigurations.clear();
        savedSubtypeCodecPairs.clear();
        TakeQueuedUserMessages();
        WriteFileBytes(folder.File(L"MAVU_options_capture.xml"), c.bytes);
        EXPECT_EQ(LoadOptions(), c.loaded);
        c.check();
    }
    SetOptionDefaults(options, workArea);
    videoConfigurations.clear();
    TakeQueuedUserMessages();
}
