#include "video/device_properties.h"

#include "base/com_ptr.h"
#include "base/report.h"

DeviceProperty* PropertyRecord(VideoSourceInfo& source, long propertyNumber)
{
    switch (propertyNumber) {
    case VideoProcAmp_Brightness: return &source.brightness;
    case VideoProcAmp_Contrast: return &source.contrast;
    case VideoProcAmp_Hue: return &source.hue;
    case VideoProcAmp_Saturation: return &source.saturation;
    case VideoProcAmp_Sharpness: return &source.sharpness;
    case VideoProcAmp_Gain: return &source.gain;
    default: return nullptr;
    }
}

HRESULT SetPropertyValue(long propertyNumber, long value)
{
    VideoSourceInfo* source = CurrentSource();
    if (!source) {
        ReportUserMessage(L"Logic error: setting property value for unknown current device\r\n", true);
        return E_FAIL;
    }
    if (!source->baseFilter) {
        ReportUserMessage(L"Logic error: setting property value with NULL base filter\r\n", true);
        return E_FAIL;
    }
    ComPtr<IAMVideoProcAmp> procAmp;
    HRESULT result = source->baseFilter->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid());
    if (FAILED(result))
        return result;
    if (!procAmp) {
        ReportUserMessage(L"WARNING: attempt to set property value with NULL interface\r\n", true);
        return E_FAIL;
    }
    result = procAmp->Set(propertyNumber, value, VideoProcAmp_Flags_Manual);
    procAmp.Reset();
    if (FAILED(result)) {
        ReportUserMessage(L"WARNING: cannot manually set property value\r\n", true);
        return result;
    }
    DeviceProperty* property = PropertyRecord(*source, propertyNumber);
    if (!property) {
        ReportUserMessage(L"WARNING: attempt to set unknown property to a value\r\n", true);
        return E_FAIL;
    }
    property->value = value;
    return S_OK;
}

HRESULT SetPropertyToDefault(long propertyNumber)
{
    VideoSourceInfo* source = CurrentSource();
    if (!source) {
        ReportUserMessage(L"Logic error: setting property value to default for unknown current device\r\n", true);
        return E_FAIL;
    }
    if (!source->baseFilter) {
        ReportUserMessage(L"Logic error: setting property value to default with NULL base filter\r\n", true);
        return E_FAIL;
    }
    ComPtr<IAMVideoProcAmp> procAmp;
    HRESULT result = source->baseFilter->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid());
    if (FAILED(result))
        return result;
    if (!procAmp) {
        ReportUserMessage(L"WARNING: attempt to set property value to default with NULL interface\r\n", true);
        return E_FAIL;
    }
    DeviceProperty* property = PropertyRecord(*source, propertyNumber);
    if (!property) {
        ReportUserMessage(L"WARNING: attempt to set unknown property to default value\r\n", true);
        return E_FAIL;
    }
    // A property that read on automatic has no default: nothing to do.
    if (property->defaultValue == kNoValue)
        return S_OK;
    result = procAmp->Set(propertyNumber, property->defaultValue, VideoProcAmp_Flags_Manual);
    if (FAILED(result))
        return result;
    property->value = property->defaultValue;
    return S_OK;
}

HRESULT SetPropertiesToDefaults()
{
    if (!CurrentSource())
        return E_FAIL;
    for (long number : kDevicePropertyNumbers) {
        HRESULT result = SetPropertyToDefault(number);
        if (FAILED(result)) {
            ReportUserMessage(L"Unable to set current device properties to defaults\r\n", true);
            return result;
        }
    }
    return S_OK;
}

HRESULT ApplyDeviceProperties(uint32_t sourceIndex)
{
    if (sourceIndex >= videoSources.size() || !videoSources[sourceIndex]) {
        ReportUserMessage(L"Logic error: attempt to set device properties using an invalid source index\r\n", true);
        return E_FAIL;
    }
    VideoSourceInfo& source = *videoSources[sourceIndex];
    if (!source.baseFilter) {
        ReportUserMessage(L"Logic error: attempt to set device properties for source with a NULL filter pointer\r\n",
                          true);
        return E_FAIL;
    }
    ComPtr<IAMVideoProcAmp> procAmp;
    if (FAILED(source.baseFilter->QueryInterface(IID_IAMVideoProcAmp, procAmp.PutVoid())) || !procAmp) {
        ReportUserMessage(L"WARNING: attempt to set device properties such as brightness and contrast failed\r\n",
                          true);
        return E_FAIL;
    }
    // A property that read on automatic isn't available, so a value saved in
    // an earlier run isn't forced onto it.
    for (long number : kDevicePropertyNumbers) {
        const DeviceProperty* property = PropertyRecord(source, number);
        if (property->available && FAILED(procAmp->Set(number, property->value, VideoProcAmp_Flags_Manual)))
            ReportUserMessage(L"WARNING: unable to manually set an individual device property\r\n", false);
    }
    return S_OK;
}
