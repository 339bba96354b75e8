#include "persistence/options_file.h"

#include <cwchar>

#include "base/com_ptr.h"
#include "base/report.h"
#include "persistence/xml_document.h"
#include "video/codecs.h"
#include "video/video_sources.h"

namespace {

struct TextKey {
    const wchar_t* name;
    wchar_t* field;
    int capacity;
};

struct FlagKey {
    const wchar_t* name;
    int32_t* field;
};

// The text keys in file order.
void TextKeys(Options& record, TextKey (&keys)[7])
{
    keys[0] = {L"VideoNamePrefix", record.VideoNamePrefix, kShortTextCapacity};
    keys[1] = {L"VideoDirectory", record.VideoDirectory, kPathCapacity};
    keys[2] = {L"LogfileNamePrefix", record.LogfileNamePrefix, kShortTextCapacity};
    keys[3] = {L"LogfileDirectory", record.LogfileDirectory, kPathCapacity};
    keys[4] = {L"EventFileGlobalPrefix", record.EventFileGlobalPrefix, kGlobalPrefixCapacity};
    keys[5] = {L"DefaultDuration", record.DefaultDuration, kSmallTextCapacity};
    keys[6] = {L"EventPendingDisplay", record.EventPendingDisplay, kSmallTextCapacity};
}

void FlagKeys(Options& record, FlagKey (&keys)[5])
{
    keys[0] = {L"RecordButtonsSpace", &record.RecordButtonsSpace};
    keys[1] = {L"DisplayOffWhileRecording", &record.DisplayOffWhileRecording};
    keys[2] = {L"RemoveFiltersWhileRecording", &record.RemoveFiltersWhileRecording};
    keys[3] = {L"AutostartGPS", &record.AutostartGPS};
    keys[4] = {L"EnableVideoBrightnessContrast", &record.EnableVideoBrightnessContrast};
}

void CopyBounded(wchar_t* field, int capacity, const wchar_t* value)
{
    wcsncpy(field, value, static_cast<size_t>(capacity - 1));
    field[capacity - 1] = 0;
}

const wchar_t* RendererText(int32_t renderer)
{
    switch (renderer) {
    case 0: return L"EVR";
    case 1: return L"VMR9";
    case 2: return L"VMR7";
    default: return L" ";
    }
}

int32_t RendererFromText(const wchar_t* text)
{
    if (wcscmp(text, L"VMR9") == 0)
        return 1;
    if (wcscmp(text, L"VMR7") == 0)
        return 2;
    return 0;
}

void AddSubtypeCodecPair(const wchar_t* value)
{
    std::wstring subtypeName;
    std::wstring codecName;
    if (!SplitSubtypeCodecPair(value, subtypeName, codecName))
        return;
    CodecRecord* codec = FindInstalledCodec(codecName.c_str());
    if (!codec) {
        ReportUserMessage(L"WARNING: named codec in a Subtype / Codec pair is not installed on this computer\r\n",
                          false);
        return;
    }
    savedSubtypeCodecPairs.push_back(new SubtypeCodecPair{SubtypeFromName(subtypeName.c_str()), codec});
}

}  // namespace

void ParseOptionKey(const wchar_t* name, Options& record, const wchar_t* value)
{
    TextKey texts[7];
    TextKeys(record, texts);
    for (const TextKey& key : texts) {
        if (wcscmp(name, key.name) == 0) {
            CopyBounded(key.field, key.capacity, value);
            return;
        }
    }
    if (wcscmp(name, L"PixelSaturationValue") == 0) {
        int number = record.PixelSaturationValue;
        if (swscanf(value, L"%d", &number) == 1)
            record.PixelSaturationValue = number;
        return;
    }
    for (int key = 0; key < WindowKeyCount; ++key) {
        if (wcscmp(name, kWindowPositionKeys[key]) != 0)
            continue;
        WindowPosition& position = record.windows[key];
        long left = position.savedLeft, top = position.savedTop;
        if (key == MessageWindowKey) {
            long width = record.messageWindowSavedWidth, height = record.messageWindowSavedHeight;
            int scanned = swscanf(value, L"%ld, %ld, %ld, %ld", &left, &top, &width, &height);
            if (scanned >= 3)
                record.messageWindowSavedWidth = static_cast<int32_t>(width);
            if (scanned >= 4)
                record.messageWindowSavedHeight = static_cast<int32_t>(height);
            if (scanned >= 1)
                position.savedLeft = static_cast<int32_t>(left);
            if (scanned >= 2)
                position.savedTop = static_cast<int32_t>(top);
        } else {
            int scanned = swscanf(value, L"%ld, %ld", &left, &top);
            if (scanned >= 1)
                position.savedLeft = static_cast<int32_t>(left);
            if (scanned >= 2)
                position.savedTop = static_cast<int32_t>(top);
        }
        return;
    }
    if (wcscmp(name, L"DefaultVideoSource") == 0) {
        CopyBounded(record.DefaultVideoSource, kDeviceNameCapacity, value);
        return;
    }
    if (wcscmp(name, L"ExcludedVideoSource") == 0) {
        std::wstring entry = value;
        if (entry.size() > kDeviceNameCapacity - 1)
            entry.resize(kDeviceNameCapacity - 1);
        record.ExcludedVideoSource.push_back(entry);
        return;
    }
    FlagKey flags[5];
    FlagKeys(record, flags);
    for (const FlagKey& key : flags) {
        if (wcscmp(name, key.name) == 0) {
            *key.field = wcscmp(value, L"TRUE") == 0;
            return;
        }
    }
    if (wcscmp(name, L"DefaultRenderer") == 0)
        record.DefaultRenderer = RendererFromText(value);
}

bool SplitVConfig(const wchar_t* value, VideoConfiguration& configuration)
{
    configuration = {};
    ConfigurationField fields[11];
    ConfigurationFields(configuration, fields);
    std::wstring text = value;
    size_t start = 0;
    for (int i = 0; i < 10; ++i) {
        size_t bar = text.find(L'|', start);
        size_t end = bar == std::wstring::npos ? text.size() : bar;
        CopyBounded(fields[i].text, fields[i].capacity, text.substr(start, end - start).c_str());
        start = bar == std::wstring::npos ? text.size() + 1 : bar + 1;
        if (start >= text.size())
            return false;
    }
    // The eleventh field takes the rest, further bars included.
    CopyBounded(fields[10].text, fields[10].capacity, text.substr(start).c_str());
    return true;
}

bool SplitSubtypeCodecPair(const wchar_t* value, std::wstring& subtypeName, std::wstring& codecName)
{
    std::wstring text = value;
    size_t bar = text.find(L'|');
    if (bar == std::wstring::npos)
        return false;
    subtypeName = text.substr(0, bar);
    if (subtypeName.size() > 1023)
        subtypeName.resize(1023);
    codecName = text.substr(bar + 1);
    return true;
}

int LoadOptions()
{
    ComPtr<IXMLDOMDocument> document;
    if (CreateXmlDocument(document.Put()) != S_OK)
        return 0;
    if (LoadXmlDocument(document.Get(), L"MAVU_options_capture.xml") != S_OK &&
        LoadXmlDocument(document.Get(), L"MAVU_options.xml") != S_OK)
        return 0;
    HRESULT walked = WalkXmlKeys(document.Get(), AttributeRule::ExactlyOne, [](const wchar_t* name, const wchar_t* value) {
        if (wcscmp(name, L"VConfig") == 0) {
            auto* configuration = new VideoConfiguration{};
            if (SplitVConfig(value, *configuration))
                videoConfigurations.push_back(configuration);
            else
                delete configuration;
        } else if (wcscmp(name, L"SubtypeCodecPair") == 0) {
            AddSubtypeCodecPair(value);
        } else {
            ParseOptionKey(name, options, value);
        }
    });
    return walked == S_OK ? 1 : 0;
}

int BuildOptionsText(std::wstring& text)
{
    HRESULT result = BuildXmlText(
        L"MAVU Video Capture Version 2.1",
        [](IXMLDOMDocument* document, IXMLDOMElement* root) {
            auto add = [&](const wchar_t* key, const wchar_t* value) {
                return AddKeyValue(document, root, key, value);
            };
            HRESULT added = S_OK;
            wchar_t number[100];
            TextKey texts[7];
            TextKeys(options, texts);
            for (const TextKey& key : texts)
                if ((added = add(key.name, key.field)) != S_OK)
                    return added;
            swprintf(number, 100, L"%d", options.PixelSaturationValue);
            if ((added = add(L"PixelSaturationValue", number)) != S_OK)
                return added;
            for (int key = 0; key < WindowKeyCount; ++key) {
                const WindowPosition& position = options.windows[key];
                if (key == MessageWindowKey)
                    swprintf(number, 100, L"%ld, %ld, %ld, %ld", static_cast<long>(position.savedLeft),
                             static_cast<long>(position.savedTop), static_cast<long>(options.messageWindowSavedWidth),
                             static_cast<long>(options.messageWindowSavedHeight));
                else
                    swprintf(number, 100, L"%ld, %ld", static_cast<long>(position.savedLeft),
                             static_cast<long>(position.savedTop));
                if ((added = add(kWindowPositionKeys[key], number)) != S_OK)
                    return added;
            }
            if ((added = add(L"DefaultVideoSource", options.DefaultVideoSource)) != S_OK)
                return added;
            for (const std::wstring& excluded : options.ExcludedVideoSource)
                if ((added = add(L"ExcludedVideoSource", excluded.c_str())) != S_OK)
                    return added;
            FlagKey flags[5];
            FlagKeys(options, flags);
            for (const FlagKey& key : flags)
                if ((added = add(key.name, *key.field ? L"TRUE" : L"FALSE")) != S_OK)
                    return added;
            if ((added = add(L"DefaultRenderer", RendererText(options.DefaultRenderer))) != S_OK)
                return added;
            // Configurations are written from the devices present now, not
            // from what was loaded.
            for (uint32_t index = 0; index < videoSources.size(); ++index) {
                if (!videoSources[index]->hasConfiguration)
                    continue;
                VideoConfiguration* configuration = BuildVideoConfiguration(index);
                if (!configuration)
                    return E_FAIL;
                ConfigurationField fields[11];
                ConfigurationFields(*configuration, fields);
                std::wstring joined;
                for (int i = 0; i < 11; ++i) {
                    if (i)
                        joined += L'|';
                    joined += fields[i].text;
                }
                delete configuration;
                if ((added = add(L"VConfig", joined.c_str())) != S_OK)
                    return added;
            }
            for (const SubtypeCodecPair* pair : savedSubtypeCodecPairs) {
                std::wstring joined = SubtypeName(pair->subtype);
                joined += L'|';
                joined += pair->codec->name;
                if ((added = add(L"SubtypeCodecPair", joined.c_str())) != S_OK)
                    return added;
            }
            return S_OK;
        },
        text);
    return result == S_OK ? 1 : 0;
}

int SaveOptions()
{
    std::wstring text;
    if (!BuildOptionsText(text))
        return 0;
    return WriteOptionsText(text);
}

int SaveOptionsOrWarn()
{
    int saved = SaveOptions();
    if (!saved)
        ReportUserMessage(L"WARNING: cannot save MAVU_optionsVC.xml file in process directory - write protected?\r\n",
                          true);
    return saved;
}
