// The flat XML documents of the options and event files: a declaration, a
// comment naming the writer, "Root", and below it one empty element per key
// with one attribute "Value". Built and walked over MSXML 6.
#pragma once

#include <windows.h>
#include <msxml2.h>

#include <functional>
#include <string>

HRESULT CreateXmlDocument(IXMLDOMDocument** document);
HRESULT AppendXmlDeclaration(IXMLDOMDocument* document);
HRESULT AppendXmlComment(IXMLDOMDocument* document, const wchar_t* text);
HRESULT CreateXmlElement(IXMLDOMDocument* document, const wchar_t* name, IXMLDOMElement** element);
HRESULT AppendXmlChild(IXMLDOMNode* parent, IXMLDOMNode* child);
HRESULT AppendXmlWhitespace(IXMLDOMDocument* document, const wchar_t* text, IXMLDOMNode* parent);
// Appends a line feed and tab, then the key's element, to the parent.
HRESULT AddKeyElement(IXMLDOMDocument* document, const wchar_t* key, IXMLDOMNode* parent,
                      IXMLDOMElement** element = nullptr);
HRESULT SetValueAttribute(IXMLDOMDocument* document, const wchar_t* value, IXMLDOMElement* element);

// Builds a whole document: header, comment, then the keys that addKeys adds
// with AddKeyValue, then the closing line feed. Returns the document's text.
using XmlKeyWriter = std::function<HRESULT(IXMLDOMDocument*, IXMLDOMElement* root)>;
HRESULT BuildXmlText(const wchar_t* comment, const XmlKeyWriter& addKeys, std::wstring& text);
// AddKeyElement and SetValueAttribute for one key.
HRESULT AddKeyValue(IXMLDOMDocument* document, IXMLDOMElement* root, const wchar_t* key, const wchar_t* value);

// Narrow bytes for the file from a document's text: the system code page, at
// most 4,096 bytes with the terminator, declaration and comment each on a
// line of its own, CR LF line ends. False when the text doesn't fit or a
// character has no narrow form.
bool PrepareXmlFileBytes(const std::wstring& text, std::string& bytes);
// The same for a path: at most 1,024 bytes, every character representable.
bool NarrowPath(const std::wstring& path, std::string& narrow);

// Serialises to "MAVU_options_capture.xml" in the current directory, or to
// the given path. 1 on success, 0 on failure; a failed write leaves the old
// file as it was.
int WriteOptionsText(const std::wstring& text);
int WriteXmlFile(const std::wstring& text, const std::wstring& path);

// The largest file that a reader takes in. The writers stop at 4,096 bytes;
// this bound only keeps a stray huge file from exhausting memory.
constexpr unsigned long long kXmlFileByteLimit = 16ull * 1024 * 1024;

// Loads a file: its bytes, turned into text as xml_encoding.h says, are
// parsed into the document. Only S_OK counts as loaded; a missing file, one
// past the limit and a malformed one all fail alike.
HRESULT LoadXmlDocument(IXMLDOMDocument* document, const wchar_t* path);

enum class AttributeRule { ExactlyOne, AtLeastOne };
using XmlKeyHandler = std::function<void(const wchar_t* name, const wchar_t* value)>;
// Walks the children of the document element: each element with an
// acceptable number of attributes gives its name and the text of its first
// attribute, whatever that attribute is called. Anything else is skipped.
HRESULT WalkXmlKeys(IXMLDOMDocument* document, AttributeRule rule, const XmlKeyHandler& handler);
