#include "persistence/xml_encoding.h"

#include <climits>
#include <cstdint>

namespace {

bool IsXmlSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

char AsciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (AsciiLower(a[i]) != AsciiLower(b[i]))
            return false;
    }
    return true;
}

// The number behind a prefix such as "windows-", or 0 when the rest isn't
// all digits or the number is unreasonably large.
UINT NumberAfter(std::string_view name, std::string_view prefix)
{
    if (name.size() <= prefix.size() || !EqualsIgnoringCase(name.substr(0, prefix.size()), prefix))
        return 0;
    UINT number = 0;
    for (char c : name.substr(prefix.size())) {
        if (c < '0' || c > '9' || number > 99999)
            return 0;
        number = number * 10 + static_cast<UINT>(c - '0');
    }
    return number;
}

struct NamedPage {
    const char* name;
    UINT codePage;
};

// Names in common use for what this platform's code pages hold. Latin-1 and
// ASCII read as Windows-1252, as browsers read them: a file so labelled on
// Windows that holds bytes 0x80 to 0x9F means the Windows characters there
// (quotes, dashes, the euro), not control codes that no code page of the
// program could write back.
constexpr NamedPage kNamedPages[] = {
    {"utf-8", CP_UTF8}, {"utf8", CP_UTF8},  {"us-ascii", 1252},      {"ascii", 1252},   {"iso-8859-1", 1252},
    {"latin1", 1252},   {"shift_jis", 932}, {"shift-jis", 932},      {"gb2312", 936},   {"gbk", 936},
    {"big5", 950},      {"euc-kr", 949},    {"ks_c_5601-1987", 949}, {"euc-jp", 20932}, {"koi8-r", 20866},
    {"koi8-u", 21866},  {"gb18030", 54936},
};

bool StartsWith(std::string_view bytes, std::string_view start)
{
    return bytes.substr(0, start.size()) == start;
}

void AppendUtf16(std::string_view bytes, bool bigEndian, std::wstring& text)
{
    size_t units = bytes.size() / 2;
    text.reserve(units + 1);
    for (size_t i = 0; i < units; ++i) {
        auto first = static_cast<unsigned char>(bytes[2 * i]);
        auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
        text += static_cast<wchar_t>(bigEndian ? (first << 8 | second) : (second << 8 | first));
    }
    // Half a character at the end: a damaged file, shown as such.
    if (bytes.size() % 2)
        text += L'\xFFFD';
}

bool AppendFromCodePage(std::string_view bytes, UINT codePage, std::wstring& text)
{
    if (bytes.empty())
        return true;
    if (bytes.size() > static_cast<size_t>(INT_MAX))
        return false;
    if (codePage != CP_ACP && codePage != CP_UTF8 && !IsValidCodePage(codePage))
        codePage = CP_ACP;
    int length = static_cast<int>(bytes.size());
    int needed = MultiByteToWideChar(codePage, 0, bytes.data(), length, nullptr, 0);
    if (needed <= 0)
        return false;
    text.resize(static_cast<size_t>(needed));
    int written = MultiByteToWideChar(codePage, 0, bytes.data(), length, text.data(), needed);
    if (written <= 0)
        return false;
    text.resize(static_cast<size_t>(written));
    return true;
}

}  // namespace

std::string_view DeclaredXmlEncoding(std::string_view bytes)
{
    // "<?xml" and a blank: "<?xml-stylesheet" is another instruction.
    if (!StartsWith(bytes, "<?xml") || bytes.size() < 6 || !IsXmlSpace(bytes[5]))
        return {};
    size_t end = bytes.find("?>", 5);
    if (end == std::string_view::npos)
        return {};
    std::string_view declaration = bytes.substr(5, end - 5);

    // Pseudo-attributes: blanks, a name, '=' with blanks around it allowed,
    // and a value in single or double quotes.
    size_t at = 0;
    auto skipBlanks = [&] {
        size_t from = at;
        while (at < declaration.size() && IsXmlSpace(declaration[at]))
            ++at;
        return at > from;
    };
    while (skipBlanks() && at < declaration.size()) {
        size_t nameStart = at;
        while (at < declaration.size() && declaration[at] != '=' && !IsXmlSpace(declaration[at]))
            ++at;
        std::string_view name = declaration.substr(nameStart, at - nameStart);
        skipBlanks();
        if (at >= declaration.size() || declaration[at] != '=')
            return {};
        ++at;
        skipBlanks();
        if (at >= declaration.size() || (declaration[at] != '\'' && declaration[at] != '"'))
            return {};
        char quote = declaration[at++];
        size_t close = declaration.find(quote, at);
        if (close == std::string_view::npos)
            return {};
        if (name == "encoding")
            return declaration.substr(at, close - at);
        at = close + 1;
    }
    return {};
}

UINT CodePageOfEncodingName(std::string_view name)
{
    for (const NamedPage& page : kNamedPages) {
        if (EqualsIgnoringCase(name, page.name))
            return page.codePage;
    }
    if (UINT number = NumberAfter(name, "windows-"))
        return number;
    if (UINT number = NumberAfter(name, "cp"))
        return number;
    // ISO-8859-2 to -16 are the platform's pages 28592 to 28606.
    UINT part = NumberAfter(name, "iso-8859-");
    if (part >= 2 && part <= 16)
        return 28590 + part;
    return 0;
}

XmlEncoding DetectXmlEncoding(std::string_view bytes)
{
    if (StartsWith(bytes, "\xEF\xBB\xBF"))
        return {XmlByteForm::CodePage, CP_UTF8, 3};
    if (StartsWith(bytes, "\xFF\xFE"))
        return {XmlByteForm::Utf16LittleEndian, 0, 2};
    if (StartsWith(bytes, "\xFE\xFF"))
        return {XmlByteForm::Utf16BigEndian, 0, 2};
    // A UTF-16 declaration's first characters, "<?", with no mark before them.
    if (StartsWith(bytes, std::string_view("<\0?\0", 4)))
        return {XmlByteForm::Utf16LittleEndian, 0, 0};
    if (StartsWith(bytes, std::string_view("\0<\0?", 4)))
        return {XmlByteForm::Utf16BigEndian, 0, 0};
    UINT declared = CodePageOfEncodingName(DeclaredXmlEncoding(bytes));
    return {XmlByteForm::CodePage, declared ? declared : static_cast<UINT>(CP_ACP), 0};
}

bool DecodeXmlBytes(std::string_view bytes, std::wstring& text)
{
    text.clear();
    XmlEncoding encoding = DetectXmlEncoding(bytes);
    std::string_view body = bytes.substr(encoding.markLength);
    if (encoding.form == XmlByteForm::CodePage) {
        if (!AppendFromCodePage(body, encoding.codePage, text))
            return false;
    } else {
        AppendUtf16(body, encoding.form == XmlByteForm::Utf16BigEndian, text);
    }
    return text.find(L'\0') == std::wstring::npos;
}
