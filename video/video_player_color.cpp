// VideoPlayer: the brightness tool's two colour filters, one for the
// preview and one for the file, each the platform's DMO wrapper around the
// "Color Control" video effect, and the values the tool's sliders give them.
#include "video/video_player.h"

#include <dmo.h>

#include <cwchar>

#include "base/report.h"
#include "video/color_controls.h"

namespace {

void Report(const wchar_t* text)
{
    ReportUserMessage(text, false);
}

// The class of the first video effect named "Color Control".
bool FindColorControlEffect(CLSID* effect)
{
    ComPtr<IEnumDMO> effects;
    // Whether the enumeration was made shows in the enumerator alone.
    DMOEnum(DMOCATEGORY_VIDEO_EFFECT, 0, 0, nullptr, 0, nullptr, effects.Put());
    if (!effects)
        return false;
    CLSID clsid;
    wchar_t* name = nullptr;
    DWORD fetched = 0;
    while (effects->Next(1, &clsid, &name, &fetched) == S_OK && fetched == 1) {
        bool match = name && wcscmp(name, L"Color Control") == 0;
        CoTaskMemFree(name);
        name = nullptr;
        if (match) {
            *effect = clsid;
            return true;
        }
    }
    return false;
}

// Reads the value under one key and writes it back, with the slider's
// number in it, under another (the same key but for the file's contrast).
// The value keeps the type the effect gave it.
HRESULT WriteColorValue(IPropertyStore* store, const PROPERTYKEY& readKey, const PROPERTYKEY& writeKey, int32_t value)
{
    PROPVARIANT read;
    PropVariantInit(&read);
    HRESULT hr = store->GetValue(readKey, &read);
    if (FAILED(hr))
        return hr;
    // A copy carries the number, so that what the effect gave is freed as
    // it came, whatever its type.
    PROPVARIANT written = read;
    written.lVal = value;
    hr = store->SetValue(writeKey, written);
    PropVariantClear(&read);
    return hr;
}

}  // namespace

HRESULT VideoPlayer::CreateColorControlFilters()
{
    // A repeated attempt starts from nothing: nothing of an earlier,
    // failed one stays behind to be given values.
    renderColorStore.Reset();
    captureColorStore.Reset();
    renderColorWrapper.Reset();
    captureColorWrapper.Reset();
    renderColorFilter.Reset();
    captureColorFilter.Reset();

    CLSID effect;
    if (!FindColorControlEffect(&effect)) {
        Report(L"\r\nThe DMO color control filter is not installed - no brightness/contrast\r\n");
        return E_FAIL;
    }
    if (FAILED(CoCreateInstance(CLSID_DMOWrapperFilter, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                renderColorFilter.PutVoid()))) {
        Report(L"\r\nCannot create base filter for render color control filter - no brightness/contrast\r\n");
        return E_FAIL;
    }
    // The file's filter may fail alone: only the file then goes without.
    if (FAILED(CoCreateInstance(CLSID_DMOWrapperFilter, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                captureColorFilter.PutVoid())))
        Report(L"\r\nCannot create base filter for capture color control filter - no brightness/contrast in capture "
               L"file\r\n");

    if (FAILED(renderColorFilter->QueryInterface(IID_IDMOWrapperFilter, renderColorWrapper.PutVoid()))) {
        renderColorFilter.Reset();
        Report(L"\r\nCannot query interface on render color control filter - no brightness/contrast\r\n");
        return E_FAIL;
    }
    if (captureColorFilter &&
        FAILED(captureColorFilter->QueryInterface(IID_IDMOWrapperFilter, captureColorWrapper.PutVoid()))) {
        captureColorFilter.Reset();
        Report(L"\r\nCannot query interface on capture color control filter - no brightness/contrast in capture "
               L"file\r\n");
    }

    if (FAILED(renderColorWrapper->Init(effect, DMOCATEGORY_VIDEO_EFFECT))) {
        renderColorFilter.Reset();
        renderColorWrapper.Reset();
        Report(L"\r\nCannot initialize the DMO Wrapper on color control filter - no brightness/contrast\r\n");
        return E_FAIL;
    }
    if (captureColorWrapper && FAILED(captureColorWrapper->Init(effect, DMOCATEGORY_VIDEO_EFFECT))) {
        captureColorFilter.Reset();
        captureColorWrapper.Reset();
        Report(L"\r\nCannot initialize the DMO Wrapper on capture color control filter - no brightness/contrast in "
               L"capture file\r\n");
    }

    // The wrapper hands the effect's own interfaces out.
    if (FAILED(renderColorFilter->QueryInterface(IID_IPropertyStore, renderColorStore.PutVoid()))) {
        renderColorFilter.Reset();
        renderColorWrapper.Reset();
        Report(L"\r\nCannot obtain property store for color control filter - no brightness/contrast\r\n");
        return E_FAIL;
    }
    if (captureColorFilter &&
        FAILED(captureColorFilter->QueryInterface(IID_IPropertyStore, captureColorStore.PutVoid()))) {
        captureColorFilter.Reset();
        captureColorWrapper.Reset();
        Report(L"\r\nCannot obtain property store for capture color control filter - no brightness/contrast in "
               L"capture file\r\n");
    }
    return S_OK;
}

void VideoPlayer::SetColorControls(int32_t brightness, int32_t contrast)
{
    if (!renderColorStore) {
        Report(L"Logic error: attemp to set render brightness control with NULL property store cache\r\n");
        return;
    }
    if (brightness >= 0) {
        int32_t value = ColorControlValue(brightness);
        if (FAILED(WriteColorValue(renderColorStore.Get(), kColorBrightnessKey, kColorBrightnessKey, value)))
            Report(L"\r\nCannot set render brightness control\r\n");
        if (captureColorStore &&
            FAILED(WriteColorValue(captureColorStore.Get(), kColorBrightnessKey, kColorBrightnessKey, value)))
            Report(L"\r\nCannot set capture brightness control\r\n");
    }
    if (contrast >= 0) {
        int32_t value = ColorControlValue(contrast);
        if (FAILED(WriteColorValue(renderColorStore.Get(), kColorContrastKey, kColorContrastKey, value)))
            Report(L"\r\nCannot set contrast control\r\n");
        // As settled: the file's contrast goes under the brightness key, so
        // the contrast slider moves the file's brightness.
        if (captureColorStore &&
            FAILED(WriteColorValue(captureColorStore.Get(), kColorContrastKey, kColorBrightnessKey, value)))
            Report(L"\r\nCannot set capture contrast control\r\n");
    }
}
