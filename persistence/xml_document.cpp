#include "persistence/xml_document.h"

#include <oleauto.h>

#include <cstring>
#include <fstream>

#include "base/com_ptr.h"
#include "base/platform_guids.h"
#include "base/scoped_handles.h"
#include "persistence/xml_encoding.h"

namespace {

constexpr int kTextCapacity = 4096;
constexpr int kPathCapacity = 1024;

// A BSTR for the length of one DOM call.
class Bstr {
public:
    explicit Bstr(const wchar_t* text) : value_(SysAllocString(text)) {}
    ~Bstr() { SysFreeString(value_); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    BSTR Get() const { return value_; }
    bool Failed(const wchar_t* text) const { return !value_ && text; }

private:
    BSTR value_;
};

// Converts to the system code page within a capacity that counts the
// terminator. False when it doesn't fit or a character had no narrow form.
bool ToNarrow(const std::wstring& text, int capacity, std::string& narrow)
{
    narrow.assign(static_cast<size_t>(capacity), '\0');
    BOOL usedDefault = FALSE;
    int written = WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, narrow.data(), capacity, nullptr, &usedDefault);
    if (written <= 0 || usedDefault)
        return false;
    narrow.resize(static_cast<size_t>(written - 1));
    return true;
}

// Copies up to and including the next '>' from position, then one line feed.
// A line break that the serializer already wrote there is taken as that line
// feed, so the header lines stand alone without blank lines between them.
bool CopyHeaderLine(const std::string& text, size_t& position, std::string& out)
{
    size_t close = text.find('>', position);
    if (close == std::string::npos)
        return false;
    out.append(text, position, close + 1 - position);
    out += '\n';
    position = close + 1;
    if (position < text.size() && text[position] == '\r')
        ++position;
    if (position < text.size() && text[position] == '\n')
        ++position;
    return true;
}

// The whole file as it is on disk. False when it can't be opened or read,
// or is larger than any document of this system could sensibly be.
bool ReadXmlFileBytes(const wchar_t* path, std::string& bytes)
{
    bytes.clear();
    ScopedFileHandle file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return false;
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.Get(), &size) || size.QuadPart < 0 ||
        static_cast<unsigned long long>(size.QuadPart) > kXmlFileByteLimit)
        return false;
    bytes.resize(static_cast<size_t>(size.QuadPart));
    size_t total = 0;
    while (total < bytes.size()) {
        DWORD read = 0;
        if (!ReadFile(file.Get(), bytes.data() + total, static_cast<DWORD>(bytes.size() - total), &read, nullptr))
            return false;
        // A file that shrank since its size was taken ends here.
        if (read == 0)
            break;
        total += read;
    }
    bytes.resize(total);
    return true;
}

}  // namespace

HRESULT CreateXmlDocument(IXMLDOMDocument** document)
{
    *document = nullptr;
    HRESULT result = CoCreateInstance(CLSID_DOMDocument60, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                      reinterpret_cast<void**>(document));
    if (FAILED(result))
        return result;
    if (!*document)
        return E_FAIL;
    (*document)->put_async(VARIANT_FALSE);
    (*document)->put_validateOnParse(VARIANT_FALSE);
    (*document)->put_resolveExternals(VARIANT_FALSE);
    // Whitespace nodes survive a load, so readers see them among the keys.
    (*document)->put_preserveWhiteSpace(VARIANT_TRUE);
    return S_OK;
}

HRESULT AppendXmlDeclaration(IXMLDOMDocument* document)
{
    Bstr target(L"xml");
    Bstr data(L"version='1.0'");
    if (!target.Get() || !data.Get())
        return E_OUTOFMEMORY;
    ComPtr<IXMLDOMProcessingInstruction> declaration;
    HRESULT result = document->createProcessingInstruction(target.Get(), data.Get(), declaration.Put());
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;
    return AppendXmlChild(document, declaration.Get());
}

HRESULT AppendXmlComment(IXMLDOMDocument* document, const wchar_t* text)
{
    Bstr data(text);
    if (data.Failed(text))
        return E_OUTOFMEMORY;
    ComPtr<IXMLDOMComment> comment;
    HRESULT result = document->createComment(data.Get(), comment.Put());
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;
    return AppendXmlChild(document, comment.Get());
}

HRESULT CreateXmlElement(IXMLDOMDocument* document, const wchar_t* name, IXMLDOMElement** element)
{
    *element = nullptr;
    Bstr tag(name);
    if (tag.Failed(name))
        return E_OUTOFMEMORY;
    HRESULT result = document->createElement(tag.Get(), element);
    if (result == S_OK && !*element)
        return E_FAIL;
    return result;
}

HRESULT AppendXmlChild(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    ComPtr<IXMLDOMNode> appended;
    return parent->appendChild(child, appended.Put());
}

HRESULT AppendXmlWhitespace(IXMLDOMDocument* document, const wchar_t* text, IXMLDOMNode* parent)
{
    Bstr data(text);
    if (data.Failed(text))
        return E_OUTOFMEMORY;
    ComPtr<IXMLDOMText> node;
    HRESULT result = document->createTextNode(data.Get(), node.Put());
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;
    return AppendXmlChild(parent, node.Get());
}

HRESULT AddKeyElement(IXMLDOMDocument* document, const wchar_t* key, IXMLDOMNode* parent, IXMLDOMElement** element)
{
    ComPtr<IXMLDOMElement> created;
    HRESULT result = CreateXmlElement(document, key, created.Put());
    if (result != S_OK)
        return result;
    result = AppendXmlWhitespace(document, L"\n\t", parent);
    if (result != S_OK)
        return result;
    result = AppendXmlChild(parent, created.Get());
    if (result != S_OK)
        return result;
    if (element)
        *element = created.Detach();
    return S_OK;
}

HRESULT SetValueAttribute(IXMLDOMDocument* document, const wchar_t* value, IXMLDOMElement* element)
{
    Bstr name(L"Value");
    if (!name.Get())
        return E_OUTOFMEMORY;
    ComPtr<IXMLDOMAttribute> attribute;
    HRESULT result = document->createAttribute(name.Get(), attribute.Put());
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;

    VARIANT text;
    VariantInit(&text);
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(value);
    if (!text.bstrVal)
        return E_OUTOFMEMORY;
    result = attribute->put_value(text);
    VariantClear(&text);
    if (result != S_OK)
        return result;

    ComPtr<IXMLDOMAttribute> replaced;
    return element->setAttributeNode(attribute.Get(), replaced.Put());
}

HRESULT AddKeyValue(IXMLDOMDocument* document, IXMLDOMElement* root, const wchar_t* key, const wchar_t* value)
{
    ComPtr<IXMLDOMElement> element;
    HRESULT result = AddKeyElement(document, key, root, element.Put());
    if (result != S_OK)
        return result;
    return SetValueAttribute(document, value, element.Get());
}

HRESULT BuildXmlText(const wchar_t* comment, const XmlKeyWriter& addKeys, std::wstring& text)
{
    ComPtr<IXMLDOMDocument> document;
    HRESULT result = CreateXmlDocument(document.Put());
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;
    if ((result = AppendXmlDeclaration(document.Get())) != S_OK)
        return result;
    if ((result = AppendXmlComment(document.Get(), comment)) != S_OK)
        return result;
    ComPtr<IXMLDOMElement> root;
    if ((result = CreateXmlElement(document.Get(), L"Root", root.Put())) != S_OK)
        return result;
    if ((result = addKeys(document.Get(), root.Get())) != S_OK)
        return result;
    if ((result = AppendXmlWhitespace(document.Get(), L"\n", root.Get())) != S_OK)
        return result;
    if ((result = AppendXmlChild(document.Get(), root.Get())) != S_OK)
        return result;
    BSTR xml = nullptr;
    result = document->get_xml(&xml);
    if (result != S_OK || !xml) {
        SysFreeString(xml);
        return FAILED(result) ? result : E_FAIL;
    }
    text.assign(xml, SysStringLen(xml));
    SysFreeString(xml);
    return S_OK;
}

bool NarrowPath(const std::wstring& path, std::string& narrow)
{
    return ToNarrow(path, kPathCapacity, narrow);
}

bool PrepareXmlFileBytes(const std::wstring& text, std::string& bytes)
{
    std::string narrow;
    if (!ToNarrow(text, kTextCapacity, narrow))
        return false;

    std::string lines;
    size_t position = 0;
    if (!CopyHeaderLine(narrow, position, lines) || !CopyHeaderLine(narrow, position, lines))
        return false;
    lines.append(narrow, position, std::string::npos);

    // Single line feeds, then CR LF as a text-mode stream writes them.
    bytes.clear();
    for (char c : lines) {
        if (c == '\r')
            continue;
        if (c == '\n')
            bytes += '\r';
        bytes += c;
    }
    return true;
}

int WriteXmlFile(const std::wstring& text, const std::wstring& path)
{
    std::string narrowPath;
    std::string bytes;
    if (!NarrowPath(path, narrowPath) || !PrepareXmlFileBytes(text, bytes))
        return 0;
    // The bytes already carry CR LF: written as they are.
    std::ofstream file(narrowPath.c_str(), std::ios::out | std::ios::binary | std::ios::trunc);
    if (!file)
        return 0;
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file ? 1 : 0;
}

int WriteOptionsText(const std::wstring& text)
{
    wchar_t folder[kPathCapacity] = L"";
    DWORD length = GetCurrentDirectoryW(kPathCapacity - 1, folder);
    if (length == 0 || length >= kPathCapacity - 1)
        return 0;
    std::wstring path = folder;
    if (path.back() != L'\\')
        path += L'\\';
    path += L"MAVU_options_capture.xml";
    return WriteXmlFile(text, path);
}

HRESULT LoadXmlDocument(IXMLDOMDocument* document, const wchar_t* path)
{
    // The platform's own file loading takes bytes without a declared
    // encoding as UTF-8 and refuses the narrow bytes that the writers put on
    // disk; so the bytes are read and turned into text here, and the parser
    // is given text.
    std::string bytes;
    std::wstring text;
    if (!ReadXmlFileBytes(path, bytes) || !DecodeXmlBytes(bytes, text))
        return E_FAIL;
    BSTR data = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!data)
        return E_OUTOFMEMORY;
    VARIANT_BOOL loaded = VARIANT_FALSE;
    HRESULT result = document->loadXML(data, &loaded);
    SysFreeString(data);
    return result == S_OK ? S_OK : (FAILED(result) ? result : E_FAIL);
}

HRESULT WalkXmlKeys(IXMLDOMDocument* document, AttributeRule rule, const XmlKeyHandler& handler)
{
    ComPtr<IXMLDOMElement> root;
    HRESULT result = document->get_documentElement(root.Put());
    if (result != S_OK || !root)
        return FAILED(result) ? result : E_FAIL;
    ComPtr<IXMLDOMNodeList> children;
    result = root->get_childNodes(children.Put());
    if (result != S_OK || !children)
        return FAILED(result) ? result : E_FAIL;
    long length = 0;
    result = children->get_length(&length);
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;
    // The children in document order. Wine's get_item walks from the first
    // child on every call, so a large file would take quadratic time; the
    // list's own cursor visits the same nodes in the same order.
    children->reset();
    for (long index = 0; index < length; ++index) {
        ComPtr<IXMLDOMNode> child;
        if (children->nextNode(child.Put()) != S_OK || !child)
            continue;
        DOMNodeType type;
        if (child->get_nodeType(&type) != S_OK || type != NODE_ELEMENT)
            continue;
        BSTR name = nullptr;
        if (child->get_nodeName(&name) != S_OK || !name) {
            SysFreeString(name);
            continue;
        }
        ComPtr<IXMLDOMNamedNodeMap> attributes;
        long attributeCount = 0;
        ComPtr<IXMLDOMNode> attribute;
        bool usable = child->get_attributes(attributes.Put()) == S_OK && attributes &&
                      attributes->get_length(&attributeCount) == S_OK &&
                      (rule == AttributeRule::ExactlyOne ? attributeCount == 1 : attributeCount >= 1) &&
                      attributes->get_item(0, attribute.Put()) == S_OK && attribute &&
                      attribute->get_nodeType(&type) == S_OK && type == NODE_ATTRIBUTE;
        VARIANT value;
        VariantInit(&value);
        if (usable && attribute->get_nodeValue(&value) == S_OK && value.vt == VT_BSTR)
            handler(name, value.bstrVal ? value.bstrVal : L"");
        VariantClear(&value);
        SysFreeString(name);
    }
    return S_OK;
}
