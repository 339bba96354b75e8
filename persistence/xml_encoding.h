// How the bytes of an XML file turn into the text that the parser reads.
//
// The program writes its files in the system's narrow code page and names no
// encoding in them, so bytes without a sign of anything else are read in that
// code page: whatever the program wrote comes back, even where its bytes
// happen to form valid UTF-8. A file from elsewhere may say what it is: a
// byte-order mark decides first, then an encoding named in the declaration.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

enum class XmlByteForm { CodePage, Utf16LittleEndian, Utf16BigEndian };

struct XmlEncoding {
    XmlByteForm form;
    // For CodePage: CP_ACP for the system's narrow code page, CP_UTF8, or the
    // page that the declaration names.
    UINT codePage;
    // Bytes of a byte-order mark in front of the text.
    size_t markLength;
};

// The value of the encoding in the XML declaration that opens the bytes;
// empty when there is no declaration or it names no encoding.
std::string_view DeclaredXmlEncoding(std::string_view bytes);

// The code page of an encoding name, case ignored; 0 for a name not known
// here.
UINT CodePageOfEncodingName(std::string_view name);

// How to read the bytes: a UTF-8 or UTF-16 byte-order mark, else the first
// characters of a UTF-16 declaration, else an encoding named in the
// declaration, else the narrow code page.
XmlEncoding DetectXmlEncoding(std::string_view bytes);

// The text of the bytes, read as DetectXmlEncoding says, without the mark.
// A declared code page that this system doesn't have reads as the narrow
// code page. Bytes that aren't valid in their encoding become a replacement
// character, so a damaged character costs that character and not the whole
// file. False when the text holds a NUL, which no XML document may hold, or
// is too long for the conversion.
bool DecodeXmlBytes(std::string_view bytes, std::wstring& text);
