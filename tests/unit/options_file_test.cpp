#include <gtest/gtest.h>

#include <cwchar>

#include "app/loaded_options.h"
#include "base/com_ptr.h"
#include "ui/countdown_window.h"
#include "persistence/options_file.h"
#include "persistence/xml_document.h"
#include "device_records.h"
#include "support/code_page.h"
#include "support/temp_folder.h"
#include "ui/user_messages.h"
#include "video/capture_settings.h"
#include "video/codecs.h"
#include "video/video_sources.h"

namespace {

const RECT kWorkArea{0, 0, 1920, 1040};

// Options live in process-wide state: each test starts from the defaults in
// a folder of its own.
class OptionsFile : public testing::Test {
protected:
    void SetUp() override { Reset(); }
    void TearDown() override { Reset(); }

    static void Reset()
    {
        SetOptionDefaults(options, kWorkArea);
        for (VideoConfiguration* configuration : videoConfigurations)
            delete configuration;
        videoConfigurations.clear();
        for (SubtypeCodecPair* pair : subtypeCodecPairs)
            delete pair;
        subtypeCodecPairs.clear();
        for (SubtypeCodecPair* pair : savedSubtypeCodecPairs)
            delete pair;
        savedSubtypeCodecPairs.clear();
        defaultDuration = kDefaultDuration;
        showUtcClock = 0;
        rendererChoice = 0;
        TakeQueuedUserMessages();
    }

    void WriteOptions(const std::string& keys, const wchar_t* name = L"MAVU_options_capture.xml")
    {
        WriteFileBytes(folder_.File(name), "<?xml version='1.0'?>\r\n<Root>\r\n" + keys + "</Root>\r\n");
    }

    TempFolder folder_;
};

std::string Windows(const char* messageWindow, const char* hibernation)
{
    static const char* names[] = {
        "MainWindowPosition",          "MessageWindowPosition",           "RecordControlsWindowPosition",
        "DevicesWindowPosition",       "DeviceFormatWindowPosition",      "MiscellaneousOptionsWindowPosition",
        "CodecSelectorWindowPosition", "FileOptionsWindowPosition",       "EventDurationWindowPosition",
        "EventPendingOptionsWindowPosition", "PerformanceOptionsWindowPosition", "HibernationWindowPosition",
        "GpsWindowPosition",           "PixelSaturationWindowPosition",   "FrameIntegrationWindowPosition",
        "CountdownWindowPosition",     "ScheduleEventWindowPosition",     "ViewEventsWindowPosition",
        "BrightnessContrastWindowPosition", "MagnifyWindowPosition",
    };
    std::string lines;
    for (const char* name : names) {
        const char* value = "2147483647, 2147483647";
        if (std::string(name) == "MessageWindowPosition")
            value = messageWindow;
        if (std::string(name) == "HibernationWindowPosition")
            value = hibernation;
        lines += std::string("\t<") + name + " Value=\"" + value + "\"/>\r\n";
    }
    return lines;
}

}  // namespace

TEST_F(OptionsFile, DefaultsAreWrittenWithEveryKeyInOrderAndASaveThatCannotBeWholeLeavesThem)
{
    ASSERT_EQ(SaveOptions(), 1);
    std::string expected =
        "<?xml version='1.0'?>\r\n"
        "<!--MAVU Video Capture Version 2.1-->\r\n"
        "<Root>\r\n"
        "\t<VideoNamePrefix Value=\"\"/>\r\n"
        "\t<VideoDirectory Value=\"\"/>\r\n"
        "\t<LogfileNamePrefix Value=\"\"/>\r\n"
        "\t<LogfileDirectory Value=\"\"/>\r\n"
        "\t<EventFileGlobalPrefix Value=\"\"/>\r\n"
        "\t<DefaultDuration Value=\"\"/>\r\n"
        "\t<EventPendingDisplay Value=\"COUNTDOWN\"/>\r\n"
        "\t<PixelSaturationValue Value=\"-1\"/>\r\n" +
        Windows("2147483647, 2147483647, 600, 460", "810, 420") +
        "\t<DefaultVideoSource Value=\"\"/>\r\n"
        "\t<RecordButtonsSpace Value=\"FALSE\"/>\r\n"
        "\t<DisplayOffWhileRecording Value=\"FALSE\"/>\r\n"
        "\t<RemoveFiltersWhileRecording Value=\"FALSE\"/>\r\n"
        "\t<AutostartGPS Value=\"FALSE\"/>\r\n"
        "\t<EnableVideoBrightnessContrast Value=\"FALSE\"/>\r\n"
        "\t<DefaultRenderer Value=\"EVR\"/>\r\n"
        "</Root>\r\n";
    EXPECT_EQ(ReadFileBytes(folder_.File(L"MAVU_options_capture.xml")), expected);

    // A save that can't be whole leaves the file as it was: a device name the narrow code page can't show.
    wcscpy(options.DefaultVideoSource, L"\x041A\x0430\x043C\x0435\x0440\x0430");
    EXPECT_EQ(SaveOptions(), 0);
    EXPECT_EQ(ReadFileBytes(folder_.File(L"MAVU_options_capture.xml")), expected);
    EXPECT_EQ(SaveOptionsOrWarn(), 0);
    std::vector<std::wstring> messages = TakeQueuedUserMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], L"WARNING: cannot save MAVU_optionsVC.xml file in process directory - write protected?\r\n");

    // More text than the 4,096 bytes the file may hold.
    SetOptionDefaults(options, kWorkArea);
    for (int i = 0; i < 40; ++i)
        options.ExcludedVideoSource.push_back(std::wstring(100, L'a'));
    EXPECT_EQ(SaveOptions(), 0);
    EXPECT_EQ(ReadFileBytes(folder_.File(L"MAVU_options_capture.xml")), expected);
}

TEST_F(OptionsFile, ListsAndConfigurationsAreWrittenBehindTheirKeys)
{
    options.ExcludedVideoSource = {L"Old Cam", L"Old Cam"};
    wcscpy(options.DefaultVideoSource, L"USB 2861 Device");
    options.DefaultRenderer = 7;  // outside 0 to 2: a single blank
    CodecRecord codec{nullptr, L"Lagarith Lossless Codec"};
    savedSubtypeCodecPairs.push_back(new SubtypeCodecPair{SubtypeYUY2, &codec});
    // A choice of this run only is not saved.
    CodecRecord runOnly{nullptr, L"Run Only Codec"};
    subtypeCodecPairs.push_back(new SubtypeCodecPair{SubtypeRGB24, &runOnly});

    DeviceRecords devices;
    VideoSourceInfo& source = devices.Add(L"USB 2861 Device");
    source.hasConfiguration = 1;
    source.deviceStandard = StandardPAL;
    source.savedSubtype = SubtypeYUY2;
    for (DeviceProperty* property :
         {&source.brightness, &source.contrast, &source.hue, &source.saturation, &source.sharpness, &source.gain})
        property->value = kNoValue;
    source.brightness.value = 5000;
    wcscpy(devices.Group(25, {{720, 576}}).formats[0]->videoFormatName, L"720x576");
    videoSources = devices.sources;

    ASSERT_EQ(SaveOptions(), 1);
    videoSources.clear();
    std::string bytes = ReadFileBytes(folder_.File(L"MAVU_options_capture.xml"));
    EXPECT_NE(bytes.find("\t<DefaultVideoSource Value=\"USB 2861 Device\"/>\r\n"
                         "\t<ExcludedVideoSource Value=\"Old Cam\"/>\r\n"
                         "\t<ExcludedVideoSource Value=\"Old Cam\"/>\r\n"
                         "\t<RecordButtonsSpace"),
              std::string::npos)
        << bytes;
    EXPECT_NE(bytes.find("\t<DefaultRenderer Value=\" \"/>\r\n"
                         "\t<VConfig Value=\"USB 2861 Device|25|720x576|YUY2|5000|-2147483648|-2147483648|"
                         "-2147483648|-2147483648|-2147483648|PAL\"/>\r\n"
                         "\t<SubtypeCodecPair Value=\"YUY2|Lagarith Lossless Codec\"/>\r\n"
                         "</Root>\r\n"),
              std::string::npos)
        << bytes;
}

// A record with a value in each kind of key, and every character of the
// narrow code page, is saved and loaded back: saved again, the same bytes.
TEST_F(OptionsFile, SavedRecordWithEveryCodePageCharacterLoadsBackAndSavesTheSameBytes)
{
    ASSERT_TRUE(NarrowCodePageIs1252());
    MappedBytes mapped = EveryMappedByte();
    // Windows-1252 gives each byte a character, the five that it leaves
    // undefined included: all 224 bytes take part.
    ASSERT_EQ(mapped.bytes.size(), 0x100u - 0x20u);
    wcscpy(options.VideoDirectory, mapped.text.c_str());
    // Two characters whose bytes, C3 A9, are also the UTF-8 of one: read back as written.
    wcscpy(options.VideoNamePrefix, L"\u00C3\u00A9");
    wcscpy(options.DefaultVideoSource, L"Cam\u00E9ra");
    options.ExcludedVideoSource = {L"\u00C9cran \u00AB\u00A02\u00A0\u00BB", L"B"};
    wcscpy(options.LogfileDirectory, L"D:\\Logs\\");
    wcscpy(options.EventFileGlobalPrefix, L"SITE1");
    wcscpy(options.DefaultDuration, L"00:02:30");
    wcscpy(options.EventPendingDisplay, L"UTC");
    options.PixelSaturationValue = 200;
    options.windows[MainWindowKey].savedLeft = -8;
    options.windows[MainWindowKey].savedTop = 12;
    options.windows[MessageWindowKey].savedLeft = 30;
    options.windows[MessageWindowKey].savedTop = 40;
    options.messageWindowSavedWidth = 700;
    options.messageWindowSavedHeight = 500;
    options.AutostartGPS = 1;
    options.DefaultRenderer = 1;
    ASSERT_EQ(SaveOptions(), 1);
    std::string first = ReadFileBytes(folder_.File(L"MAVU_options_capture.xml"));
    EXPECT_NE(first.find("\t<VideoNamePrefix Value=\"\xC3\xA9\"/>\r\n"
                         "\t<VideoDirectory Value=\"" +
                         AsAttributeBytes(mapped.bytes) + "\"/>\r\n"),
              std::string::npos)
        << first;

    // Whatever the load missed or misread, the second save writes differently.
    SetOptionDefaults(options, kWorkArea);
    ASSERT_EQ(LoadOptions(), 1);
    ASSERT_EQ(SaveOptions(), 1);
    EXPECT_EQ(ReadFileBytes(folder_.File(L"MAVU_options_capture.xml")), first);
    ApplyLoadedOptions();
    EXPECT_EQ(rendererChoice, 1);
}

// Whether this platform's XML parser takes a document whose declaration
// names an encoding that it doesn't know (one version refuses it, a later
// one reads it); the options file then loads or doesn't with it.
bool ParserTakesAnUnknownEncodingName(const wchar_t* text)
{
    ComPtr<IXMLDOMDocument> document;
    if (FAILED(CreateXmlDocument(document.Put())))
        return false;
    BSTR data = SysAllocString(text);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    HRESULT result = document->loadXML(data, &loaded);
    SysFreeString(data);
    return result == S_OK && loaded == VARIANT_TRUE;
}

TEST_F(OptionsFile, ByteOrderMarkOrDeclaredEncodingIsHonoured)
{
    const bool unknownNameTaken = ParserTakesAnUnknownEncodingName(
        L"<?xml version='1.0' encoding='x-unknown'?><Root><VideoDirectory Value=\"a\"/></Root>");
    ASSERT_TRUE(NarrowCodePageIs1252());
    struct Row {
        const char* what;
        std::string bytes;
        int loaded;
        const wchar_t* folder;
    } rows[] = {
        // Read as written, though the narrow code page can't hold all of it. Which encoding each name or mark
        // gives is the encoding's own tests' (xml_encoding_test); here the load goes through it.
        {"UTF-8 with a mark",
         "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<Root>\r\n\t<VideoDirectory Value=\"C:\\Jos\xC3\xA9\\\xD0\x9A\xD0\xB0\"/>"
         "\r\n</Root>\r\n",
         1, L"C:\\Jos\u00E9\\\u041A\u0430"},
        {"Windows-1250 named",
         "<?xml version='1.0' encoding='windows-1250'?><Root><VideoDirectory Value=\"\xA3\xF3"
         "d\x9F\"/></Root>",
         1, L"\u0141\u00F3d\u017A"},
        {"UTF-16 with its mark", std::string("\xFF\xFE<\0R\0o\0o\0t\0 \0/\0>\0", 18), 1, L""},
        // A name known nowhere is left to the parser: where it refuses the
        // document, the file can't be read.
        {"a name known nowhere", "<?xml version='1.0' encoding='x-unknown'?><Root><VideoDirectory Value=\"a\"/></Root>",
         unknownNameTaken ? 1 : 0, unknownNameTaken ? L"a" : L""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        SetOptionDefaults(options, kWorkArea);
        WriteFileBytes(folder_.File(L"MAVU_options_capture.xml"), row.bytes);
        EXPECT_EQ(LoadOptions(), row.loaded);
        EXPECT_STREQ(options.VideoDirectory, row.folder);
    }
}

TEST_F(OptionsFile, ReadingRules)
{
    WriteOptions(
        // Keys in any order, all on one line without whitespace nodes.
        "<DefaultRenderer Value=\"VMR7\"/><VideoNamePrefix Value=\"first\"/><VideoNamePrefix Value=\"second\"/>"
        // Lists add; the reader doesn't remove duplicates.
        "<ExcludedVideoSource Value=\"Cam\"/><ExcludedVideoSource Value=\"Cam\"/>"
        // Case matters; two attributes make an element unreadable; an
        // attribute of another name still gives its value.
        "<videonameprefix Value=\"lower\"/><LogfileNamePrefix Value=\"x\" Other=\"y\"/>"
        "<EventFileGlobalPrefix V=\"named\"/><Unknown Value=\"1\"/>"
        "<AutostartGPS Value=\"true\"/><RecordButtonsSpace Value=\"TRUE\"/>"
        "<PixelSaturationValue Value=\"abc\"/><MainWindowPosition Value=\"12\"/>"
        "<MessageWindowPosition Value=\"1, 2, 3\"/>");
    ASSERT_EQ(LoadOptions(), 1);
    EXPECT_EQ(options.DefaultRenderer, 2);
    EXPECT_STREQ(options.VideoNamePrefix, L"second");
    ASSERT_EQ(options.ExcludedVideoSource.size(), 2u);
    EXPECT_STREQ(options.LogfileNamePrefix, L"");
    EXPECT_STREQ(options.EventFileGlobalPrefix, L"named");
    EXPECT_EQ(options.AutostartGPS, 0);
    EXPECT_EQ(options.RecordButtonsSpace, 1);
    EXPECT_EQ(options.PixelSaturationValue, -1);
    EXPECT_EQ(options.windows[MainWindowKey].savedLeft, 12);
    EXPECT_EQ(options.windows[MainWindowKey].savedTop, kNoPosition);
    EXPECT_EQ(options.windows[MessageWindowKey].savedLeft, 1);
    EXPECT_EQ(options.messageWindowSavedWidth, 3);
    EXPECT_EQ(options.messageWindowSavedHeight, 460);
}

TEST_F(OptionsFile, FallbackNameIsReadAndNeverWritten)
{
    EXPECT_EQ(LoadOptions(), 0);

    WriteOptions("<VideoNamePrefix Value=\"fallback\"/>", L"MAVU_options.xml");
    ASSERT_EQ(LoadOptions(), 1);
    EXPECT_STREQ(options.VideoNamePrefix, L"fallback");

    // A damaged first file, or one beyond the size limit (whitespace in the
    // root is allowed: only its size is wrong), gives way to a good fallback, silently.
    for (const std::string& first : {std::string("<Root><VideoNamePrefix Value=\"broken\""),
                                     "<Root>" + std::string(static_cast<size_t>(kXmlFileByteLimit), ' ') +
                                         "<VideoNamePrefix Value=\"huge\"/></Root>"}) {
        WriteFileBytes(folder_.File(L"MAVU_options_capture.xml"), first);
        SetOptionDefaults(options, kWorkArea);
        ASSERT_EQ(LoadOptions(), 1);
        EXPECT_STREQ(options.VideoNamePrefix, L"fallback");
        EXPECT_TRUE(TakeQueuedUserMessages().empty());
    }

    // The first save creates the first name; the fallback stays as it was.
    std::string fallback = ReadFileBytes(folder_.File(L"MAVU_options.xml"));
    ASSERT_EQ(SaveOptions(), 1);
    EXPECT_EQ(ReadFileBytes(folder_.File(L"MAVU_options.xml")), fallback);
    SetOptionDefaults(options, kWorkArea);
    ASSERT_EQ(LoadOptions(), 1);
    EXPECT_STREQ(options.VideoNamePrefix, L"fallback");
}

TEST_F(OptionsFile, ConfigurationsAndCodecPairsSplitAsStored)
{
    // A pair splits at its first bar; a configuration's eleventh field takes the rest, bars included, and its
    // fields may be empty; a pair without a bar is none.
    CodecRecord installed{nullptr, L"Installed|with bar"};
    installedCodecs.push_back(&installed);
    WriteOptions("<SubtypeCodecPair Value=\"RGB24|Installed|with bar\"/><SubtypeCodecPair Value=\"YUY2|Missing\"/>"
                 "<SubtypeCodecPair Value=\"YUY2|Missing\"/><SubtypeCodecPair Value=\"NoBar\"/>"
                 "<VConfig Value=\"Cam|25|720x576|YUY2|X|2|3|4|5|6|PAL|x\"/><VConfig Value=\"Cam||||||||||AUTO\"/>");
    ASSERT_EQ(LoadOptions(), 1);
    installedCodecs.clear();
    ASSERT_EQ(savedSubtypeCodecPairs.size(), 1u);
    EXPECT_EQ(savedSubtypeCodecPairs[0]->subtype, SubtypeRGB24);
    EXPECT_EQ(savedSubtypeCodecPairs[0]->codec, &installed);
    EXPECT_TRUE(subtypeCodecPairs.empty()) << "the run's list is a copy made when the options are applied";
    std::vector<std::wstring> messages = TakeQueuedUserMessages();
    ASSERT_EQ(messages.size(), 2u);  // one warning per missing codec, none for the pair without a bar
    EXPECT_EQ(messages[0], L"WARNING: named codec in a Subtype / Codec pair is not installed on this computer\r\n");
    ASSERT_EQ(videoConfigurations.size(), 2u);
    EXPECT_STREQ(videoConfigurations[0]->brightness, L"X");
    EXPECT_STREQ(videoConfigurations[0]->standard, L"PAL|x");
    EXPECT_STREQ(videoConfigurations[1]->standard, L"AUTO");

    ApplyLoadedOptions();
    ASSERT_EQ(subtypeCodecPairs.size(), 1u);
    EXPECT_NE(subtypeCodecPairs[0], savedSubtypeCodecPairs[0]);
    EXPECT_EQ(subtypeCodecPairs[0]->codec, &installed);
}

TEST_F(OptionsFile, DefaultDurationAndEventDisplayAfterLoad)
{
    struct Case {
        const char* keys;
        const wchar_t* durationText;
        WORD hour, minute, second;
        int utcClock;
    };
    const Case kCases[] = {
        // Empty text: the working 00:10:00 is written into the record.
        {"<DefaultDuration Value=\"\"/>", L"00:10:00", 0, 10, 0, 0},
        {"<DefaultDuration Value=\"99:99:99\"/>", L"99:99:99", 0, 10, 0, 0},
        {"<DefaultDuration Value=\"00:02:30\"/><EventPendingDisplay Value=\"UTC\"/>", L"00:02:30", 0, 2, 30, 1},
        // Only the exact "UTC" turns the clock on; anything else turns it off.
        {"<DefaultDuration Value=\"01:02:03\"/><EventPendingDisplay Value=\"utc\"/>", L"01:02:03", 1, 2, 3, 0},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.keys);
        Reset();
        WriteOptions(c.keys);
        ASSERT_EQ(LoadOptions(), 1);
        showUtcClock = 1 - c.utcClock;
        ApplyLoadedOptions();
        EXPECT_STREQ(options.DefaultDuration, c.durationText);
        EXPECT_EQ(defaultDuration.wHour, c.hour);
        EXPECT_EQ(defaultDuration.wMinute, c.minute);
        EXPECT_EQ(defaultDuration.wSecond, c.second);
        EXPECT_EQ(showUtcClock, c.utcClock);
    }
}
