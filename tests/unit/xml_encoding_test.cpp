// How the bytes of an options or event file become text: the rule that decides the encoding, and the conversion.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "persistence/xml_encoding.h"
#include "support/code_page.h"

namespace {

using namespace std::string_literals;

const std::string kOwnHeader = "<?xml version='1.0'?>\r\n<!--MAVU Video Capture Version 2.1-->\r\n";

}  // namespace

TEST(XmlEncoding, DeclarationNamesTheEncodingOnlyInItsOwnPlace)
{
    const std::pair<std::string, std::string_view> named[] = {
        {"<?xml version='1.0' encoding='UTF-8'?><Root/>", "UTF-8"},
        {"<?xml version=\"1.0\" encoding=\"windows-1252\"?>", "windows-1252"},
        {"<?xml version = '1.0'\r\n\tencoding = \"ISO-8859-1\" standalone='yes' ?>", "ISO-8859-1"},
        {"<?xml encoding='x'?>", "x"},
    };
    for (const auto& [bytes, name] : named)
        EXPECT_EQ(DeclaredXmlEncoding(bytes), name) << testing::PrintToString(bytes);
    // None: not in the declaration (after it, in another instruction, in a
    // value), or a damaged declaration.
    for (const std::string& bytes :
         {kOwnHeader, std::string("<?xml version='1.0'?><!-- encoding='UTF-8' -->"),
          std::string("<?xml-stylesheet encoding='UTF-8'?>"), std::string("<?xml version='encoding=\"UTF-8\"'?>"),
          std::string(" <?xml version='1.0' encoding='UTF-8'?>"), std::string("<?xml version='1.0' encoding='UTF-8'"),
          std::string("<?xml version='1.0' encoding='UTF-8?>"), std::string("<?xml version='1.0' encoding=UTF-8?>"),
          std::string("<?xml version='1.0'encoding='UTF-8'?>"), std::string("<?xml version='1.0' encoding?>"),
          std::string("<?xml "), std::string("<?xml"), std::string()})
        EXPECT_EQ(DeclaredXmlEncoding(bytes), "") << testing::PrintToString(bytes);
}

TEST(XmlEncoding, EncodingNamesGiveTheirCodePagesAndLatinOneReadsAsWindows)
{
    const std::pair<UINT, std::vector<std::string_view>> kCases[] = {
        {CP_UTF8, {"UTF-8", "utf-8", "UTF8"}},
        {1252, {"windows-1252", "ISO-8859-1", "iso-8859-1", "US-ASCII", "latin1"}},
        {1250, {"Windows-1250"}},
        {1251, {"WINDOWS-1251"}},
        {1253, {"cp1253"}},
        {28592, {"ISO-8859-2"}},
        {28605, {"iso-8859-15"}},
        {932, {"Shift_JIS"}},
        {936, {"GB2312"}},
        {950, {"Big5"}},
        {20866, {"KOI8-R"}},
        {0, {"ISO-8859-0", "ISO-8859-17", "windows-", "windows-12x", "windows-99999999", "UTF-16", "x-unknown", ""}},
    };
    for (const auto& [codePage, names] : kCases) {
        for (std::string_view name : names)
            EXPECT_EQ(CodePageOfEncodingName(name), codePage) << name;
    }
}

// The marks and the declaration of UTF-8 are read through in the conversion's
// table, a declared Windows-1250 in the options file's load; here the cases
// that they can't tell apart.
TEST(XmlEncoding, MarkDecidesFirstThenDeclarationElseNarrowCodePage)
{
    struct Row {
        const char* what;
        std::string bytes;
        XmlByteForm form;
        UINT codePage;
        size_t markLength;
    } rows[] = {
        {"the program's own file", kOwnHeader + "<Root>\r\n\t<K Value=\"Vid\xE9os\"/>\r\n</Root>\r\n",
         XmlByteForm::CodePage, CP_ACP, 0},
        // Bytes of the narrow code page that happen to form UTF-8 ("\xC3\xA9"
        // is two characters in Windows-1252) stay narrow: no guessing.
        {"narrow bytes that form UTF-8", kOwnHeader + "<Root><K Value=\"\xC3\xA9\"/></Root>", XmlByteForm::CodePage,
         CP_ACP, 0},
        {"UTF-8 mark before another declared encoding", "\xEF\xBB\xBF<?xml version='1.0' encoding='windows-1250'?>",
         XmlByteForm::CodePage, CP_UTF8, 3},
        {"half a UTF-8 mark", "\xEF\xBB<Root/>", XmlByteForm::CodePage, CP_ACP, 0},
        {"UTF-16 big-endian without a mark", "\0<\0?\0x\0m\0l"s, XmlByteForm::Utf16BigEndian, 0, 0},
        {"declared Latin-1", "<?xml version='1.0' encoding='ISO-8859-1'?>", XmlByteForm::CodePage, 1252, 0},
        {"declared name not known here", "<?xml version='1.0' encoding='x-unknown'?>", XmlByteForm::CodePage, CP_ACP,
         0},
        {"declared UTF-16 in single bytes", "<?xml version='1.0' encoding='UTF-16'?>", XmlByteForm::CodePage, CP_ACP,
         0},
        {"empty file", "", XmlByteForm::CodePage, CP_ACP, 0},
    };
    for (const Row& row : rows) {
        XmlEncoding encoding = DetectXmlEncoding(row.bytes);
        EXPECT_EQ(encoding.form, row.form) << row.what;
        EXPECT_EQ(encoding.codePage, row.codePage) << row.what;
        EXPECT_EQ(encoding.markLength, row.markLength) << row.what;
    }
}

TEST(XmlEncoding, ConversionGivesTheTextOfEachEncoding)
{
    ASSERT_TRUE(NarrowCodePageIs1252());
    struct Row {
        const char* what;
        std::string bytes;
        bool converts;
        std::wstring text;
    } rows[] = {
        {"narrow", "<K V=\"Vid\xE9os\"/>", true, L"<K V=\"Vid\u00E9os\"/>"},
        {"narrow bytes that form UTF-8", "\xC3\xA9", true, L"\u00C3\u00A9"},
        {"UTF-8 after its mark, which goes", "\xEF\xBB\xBFVid\xC3\xA9os", true, L"Vid\u00E9os"},
        {"declared UTF-8", "<?xml version='1.0' encoding='utf-8'?>\xC3\xA9", true,
         L"<?xml version='1.0' encoding='utf-8'?>\u00E9"},
        {"declared Latin-1 with a Windows quote", "<?xml version='1.0' encoding='ISO-8859-1'?>\x93", true,
         L"<?xml version='1.0' encoding='ISO-8859-1'?>\u201C"},
        {"invalid UTF-8 after the mark",
         "\xEF\xBB\xBF"
         "a\xC3(\xFFz",
         true, L"a\uFFFD(\uFFFDz"},
        {"UTF-8 cut in a character",
         "\xEF\xBB\xBF"
         "a\xC3",
         true, L"a\uFFFD"},
        {"UTF-16 little-endian", "\xFF\xFE<\0\xE9\0>\0"s, true, L"<\u00E9>"},
        {"UTF-16 big-endian", "\xFE\xFF\0<\0\xE9\0>"s, true, L"<\u00E9>"},
        {"UTF-16 without a mark", "<\0?\0"s, true, L"<?"},
        {"UTF-16 with half a character at the end", "\xFF\xFE<\0>"s, true, L"<\uFFFD"},
        {"only a mark", "\xEF\xBB\xBF", true, L""},
        {"nothing", "", true, L""},
        {"a NUL byte", "<Root/>\0<x/>"s, false, L""},
        {"a NUL in UTF-16", "\xFF\xFE<\0\0\0"s, false, L""},
        {"a NUL after the UTF-8 mark", "\xEF\xBB\xBF\0"s, false, L""},
    };
    for (const Row& row : rows) {
        std::wstring text = L"left over";
        EXPECT_EQ(DecodeXmlBytes(row.bytes, text), row.converts) << row.what;
        if (row.converts) {
            EXPECT_EQ(text, row.text) << row.what;
        }
    }
}
