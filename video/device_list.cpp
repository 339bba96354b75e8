#include "video/device_list.h"

#include <cwchar>
#include <functional>

#include "base/com_ptr.h"
#include "persistence/options.h"
#include "base/report.h"
#include "video/analog_standard.h"
#include "video/device_formats.h"
#include "video/device_names.h"
#include "video/video_configuration.h"
#include "video/video_format.h"
#include "video/video_player.h"

std::vector<std::wstring> unusableDeviceNames;

namespace {

// Standards a decoder may report that the program can work with.
constexpr long kNtscM = AnalogVideo_NTSC_M;  // 1
constexpr long kPalB = AnalogVideo_PAL_B;    // 16

void ResetProperty(DeviceProperty& property)
{
    property = {0, kNoValue, kNoValue, 2147483647, 2147483647, kNoValue};
}

}  // namespace

bool ReadFriendlyName(IMoniker* moniker, std::wstring& name, const wchar_t* nullBagMessage, HRESULT* failure)
{
    ComPtr<IPropertyBag> bag;
    if (FAILED(moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag, bag.PutVoid())))
        return false;
    if (!bag) {
        ReportUserMessage(nullBagMessage, true);
        if (failure)
            *failure = E_FAIL;
        return false;
    }
    VARIANT value;
    VariantInit(&value);
    HRESULT read = bag->Read(L"FriendlyName", &value, nullptr);
    bag.Reset();
    if (FAILED(read) || value.vt != VT_BSTR) {
        VariantClear(&value);
        return false;
    }
    wchar_t buffer[kSourceNameCapacity];
    wcsncpy(buffer, value.bstrVal ? value.bstrVal : L"", kSourceNameCapacity - 1);
    buffer[kSourceNameCapacity - 1] = 0;
    VariantClear(&value);
    if (NeedsCleaning(buffer))
        CleanDeviceName(buffer);
    name = buffer;
    return true;
}

namespace {

// Walks the video input devices by their cleaned names until `visit` says
// stop. A null moniker or property bag reports the caller's line and ends
// the walk with a failure; a name that can't be read is passed over.
HRESULT WalkVideoInputDevices(IEnumMoniker* monikers, const wchar_t* nullMonikerMessage,
                              const wchar_t* nullBagMessage,
                              const std::function<bool(const std::wstring& name, IMoniker* moniker)>& visit)
{
    for (;;) {
        ComPtr<IMoniker> moniker;
        if (monikers->Next(1, moniker.Put(), nullptr) != S_OK)
            return S_OK;
        if (!moniker) {
            ReportUserMessage(nullMonikerMessage, true);
            return E_FAIL;
        }
        std::wstring name;
        HRESULT failure = S_OK;
        if (!ReadFriendlyName(moniker.Get(), name, nullBagMessage, &failure)) {
            if (FAILED(failure))
                return failure;
            continue;
        }
        if (!visit(name, moniker.Get()))
            return S_OK;
    }
}

}  // namespace

HRESULT GetAttachedVideoDeviceList()
{
    ComPtr<ICreateDevEnum> devices;
    HRESULT result = CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                      devices.PutVoid());
    if (FAILED(result))
        return result;
    if (!devices) {
        ReportUserMessage(L"WARNING: attempt to create a system device enumerator in GetAttachedVideoDeviceList "
                          L"yields a NULL enumerator\r\n",
                          true);
        return E_FAIL;
    }
    ComPtr<IEnumMoniker> monikers;
    result = devices->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.Put(), 0);
    if (result == S_FALSE)
        return S_OK;
    if (FAILED(result))
        return result;
    if (!monikers) {
        ReportUserMessage(L"WARNING: video input device enumerator in GetAttachedVideoDeviceList is NULL\r\n", true);
        return E_FAIL;
    }
    return WalkVideoInputDevices(
        monikers.Get(), L"WARNING: video input device moniker is NULL in GetAttachedVideoDeviceList\r\n",
        L"WARNING: video input device moniker property bag is NULL in GetAttachedVideoDeviceList\r\n",
        [](const std::wstring& name, IMoniker* moniker) {
            AddVideoSource(name.c_str(), moniker);
            return true;
        });
}

HRESULT AddVideoSource(const wchar_t* name, IMoniker* moniker)
{
    auto* source = new VideoSourceInfo{};
    wcsncpy(source->name, name, kSourceNameCapacity - 1);
    source->name[kSourceNameCapacity - 1] = 0;
    HRESULT result = ValidateVideoCaptureDevice(source, moniker);
    if (SUCCEEDED(result)) {
        videoSources.push_back(source);
        return result;
    }
    RecordUnusableDevice(source);
    return result;
}

void RecordUnusableDevice(VideoSourceInfo* source)
{
    std::wstring unusable = source->name;
    if (unusable.size() > 127)
        unusable.resize(127);
    unusableDeviceNames.push_back(unusable);
    std::wstring line = L"Device \"";
    line += source->name;
    line += L"\" cannot be used for video capture\r\n";
    ReportUserMessage(line.c_str(), false);
    DestroyVideoSource(source);
}

HRESULT ValidateVideoCaptureDevice(VideoSourceInfo* source, IMoniker* moniker)
{
    if (!source || !moniker) {
        ReportUserMessage(L"Logic error: NULL input parameter to ValidateVideoCaptureDevice", true);
        return E_FAIL;
    }
    // The two USB analog grabbers whose standard can be found by trial.
    if (wcscmp(source->name, L"USB 2820 Device") == 0 || wcscmp(source->name, L"USB 2861 Device") == 0)
        source->autoDetectCapable = 1;

    moniker->BindToObject(nullptr, nullptr, IID_IBaseFilter, reinterpret_cast<void**>(&source->baseFilter));
    if (!source->baseFilter)
        return E_FAIL;

    ComPtr<IAMVideoProcAmp> procAmp;
    if (SUCCEEDED(source->baseFilter->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid()))) {
        if (!procAmp) {
            ReportUserMessage(L"WARNING: cannot set device properties in ValidateVideoCaptureDevice due to NULL "
                              L"interface",
                              true);
            return E_FAIL;
        }
        SetDevicePropertyValues(procAmp.Get(), VideoProcAmp_Brightness, &source->brightness);
        SetDevicePropertyValues(procAmp.Get(), VideoProcAmp_Contrast, &source->contrast);
        SetDevicePropertyValues(procAmp.Get(), VideoProcAmp_Hue, &source->hue);
        SetDevicePropertyValues(procAmp.Get(), VideoProcAmp_Saturation, &source->saturation);
        SetDevicePropertyValues(procAmp.Get(), VideoProcAmp_Sharpness, &source->sharpness);
        SetDevicePropertyValues(procAmp.Get(), VideoProcAmp_Gain, &source->gain);
    } else {
        for (DeviceProperty* property :
             {&source->brightness, &source->contrast, &source->hue, &source->saturation, &source->sharpness,
              &source->gain})
            ResetProperty(*property);
    }
    procAmp.Reset();

    for (VideoConfiguration* configuration : videoConfigurations) {
        if (!configuration) {
            ReportUserMessage(L"Logic error: NULL value for pointer to VideoConfiguration in "
                              L"ValidateVideoCaptureDevice",
                              true);
            return E_FAIL;
        }
        if (wcscmp(configuration->deviceName, source->name) == 0) {
            source->hasConfiguration = 1;
            break;
        }
    }

    source->deviceStandard = StandardUnknown;
    bool analog = false;
    ComPtr<IAMAnalogVideoDecoder> decoder;
    if (FAILED(FindSourceInterface(nullptr, source->baseFilter, IID_IAMAnalogVideoDecoder, decoder.PutVoid()))) {
        // No decoder: a digital device.
        source->deviceStandard = StandardDigital;
        source->autoDetect = 0;
        source->autoDetectCapable = 0;
    } else {
        if (!decoder) {
            ReportUserMessage(L"WARNING: interface to get analog device format is NULL in ValidateVideoCaptureDevice",
                              true);
            return E_FAIL;
        }
        long standard = 0;
        if (FAILED(decoder->get_TVFormat(&standard))) {
            decoder.Reset();
            ReportUserMessage(L"WARNING: cannot get analog device format in ValidateVideoCaptureDevice", true);
            return E_FAIL;
        }
        decoder.Reset();
        if (standard == kNtscM || standard == kPalB) {
            source->deviceStandard = standard == kNtscM ? StandardNTSC : StandardPAL;
            analog = true;
            if (source->autoDetectCapable)
                source->autoDetect = 1;
        } else {
            std::wstring line = source->name;
            line += L"  has unsupported properties.  Only PAL_B and NTSC_M have properties support";
            ReportUserMessage(line.c_str(), true);
            return E_FAIL;
        }
    }

    HRESULT result = GetVideoDeviceFormats(source);
    if (FAILED(result))
        return result;
    if (source->frameRates.empty()) {
        ReportUserMessage(L"Video device source information has no frame rate entries", true);
        return E_FAIL;
    }
    VideoFormatsByFrameRate* first = source->frameRates[0];
    if (!first || first->formats.empty()) {
        ReportUserMessage(L"Logic error: video device source frame rate structure has no video format entries in "
                          L"ValidateVideoCaptureDevice",
                          true);
        return E_FAIL;
    }
    if (!first->formats[0]) {
        ReportUserMessage(L"Logic error: video format in ValidateVideoCaptureDevice is NULL", true);
        return E_FAIL;
    }
    source->savedSubtype = first->formats[0]->subtype;
    // The results don't count: a device whose standard can't be found keeps
    // the one its decoder reported. The trial needs the main graph; without
    // a player (a test of the device list alone) it isn't run.
    if (analog) {
        if (!source->autoDetect)
            SetAnalogDeviceFrameRate(source);
        else if (VideoPlayer* player = CurrentVideoPlayer())
            player->AutoSetAnalogDeviceFormat(source);
    }
    return S_OK;
}

int SetDevicePropertyValues(IAMVideoProcAmp* procAmp, long propertyNumber, DeviceProperty* property)
{
    if (!procAmp || !property) {
        ReportUserMessage(L"Logic error: NULL input parameter to SetDevicePropertyValues\r\n", true);
        return 0;
    }
    ResetProperty(*property);
    long value = 0, flags = 0;
    // A property on automatic counts as absent.
    if (FAILED(procAmp->Get(propertyNumber, &value, &flags)) || flags == VideoProcAmp_Flags_Auto)
        return 0;
    property->value = value;
    long minimum = 0, maximum = 0, step = 0, defaultValue = 0, capsFlags = 0;
    if (FAILED(procAmp->GetRange(propertyNumber, &minimum, &maximum, &step, &defaultValue, &capsFlags)))
        return 0;
    property->minimum = minimum;
    property->maximum = maximum;
    property->step = step;
    property->defaultValue = defaultValue;
    property->available = 1;
    return 1;
}

HRESULT GetVideoSourceBaseFilter(VideoSourceInfo* source)
{
    if (!source) {
        ReportUserMessage(L"Logic error: attempt to get base filter from a NULL pointer to VideoSourceInfo\r\n", true);
        return E_FAIL;
    }
    if (source->baseFilter)
        return S_OK;

    ComPtr<ICreateDevEnum> devices;
    HRESULT result = CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                      devices.PutVoid());
    if (SUCCEEDED(result) && !devices) {
        ReportUserMessage(L"WARNING: attempt to create a system device enumerator in GetVideoSourceBaseFilter yields "
                          L"a NULL enumerator\r\n",
                          true);
        return E_FAIL;
    }
    ComPtr<IEnumMoniker> monikers;
    if (SUCCEEDED(result))
        result = devices->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.Put(), 0);
    if (result == S_FALSE) {
        ReportUserMessage(L"Logic error: attempt to get base filter for a VideoSourceInfo, but no video devices are "
                          L"found\r\n",
                          true);
        return E_FAIL;
    }
    if (FAILED(result)) {
        ReportUserMessage(L"Logic error: attempt to get base filter for a VideoSourceInfo, but cannot enumerate video "
                          L"devices\r\n",
                          true);
        return E_FAIL;
    }
    if (!monikers) {
        ReportUserMessage(L"WARNING: video input device enumerator in GetVideoSourceBaseFilter is NULL\r\n", true);
        return E_FAIL;
    }
    result = WalkVideoInputDevices(
        monikers.Get(), L"WARNING: video input device moniker is NULL in GetVideoSourceBaseFilter\r\n",
        L"WARNING: video input device moniker property bag is NULL in GetVideoSourceBaseFilter\r\n",
        [&](const std::wstring& name, IMoniker* moniker) {
            if (name != source->name)
                return true;
            moniker->BindToObject(nullptr, nullptr, IID_IBaseFilter, reinterpret_cast<void**>(&source->baseFilter));
            return false;
        });
    if (FAILED(result))
        return result;
    if (!source->baseFilter) {
        ReportUserMessage(L"WARNING: returned base filter pointer is NULL in GetVideoSourceBaseFilter\r\n", true);
        return E_FAIL;
    }
    return S_OK;
}

void MarkIgnoredSources()
{
    for (VideoSourceInfo* source : videoSources)
        for (const std::wstring& excluded : options.ExcludedVideoSource)
            if (excluded == source->name)
                source->isIgnored = 1;
}
