#include "tools/standins/registration.h"

#include "tools/beside_program.h"
#include "tools/standins/color_effect.h"
#include "tools/standins/test_compressor.h"
#include "tools/synthcam/registry.h"

#include <dmo.h>
#include <dshow.h>

namespace standins {
namespace {

// Two instances of one name: a second copy of a codec, as some machines
// have, lists twice.
const wchar_t* const kCompressorInstances[] = {L"MAVU Test Compressor 1", L"MAVU Test Compressor 2"};

HRESULT WithMapper(HRESULT (*action)(IFilterMapper2*))
{
    IFilterMapper2* mapper = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER, IID_IFilterMapper2,
                                  reinterpret_cast<void**>(&mapper));
    if (FAILED(hr))
        return hr;
    hr = action(mapper);
    mapper->Release();
    return hr;
}

}  // namespace

std::wstring StandInsDll()
{
    return testdll::FileBesideProgram(L"standins.dll");
}

HRESULT RegisterColorControl(const std::wstring& dllPath)
{
    HRESULT hr = synthcam::RegisterInprocClass(CLSID_ColorControlStandIn, L"Color Control (test stand-in)", dllPath);
    if (FAILED(hr))
        return hr;
    DMO_PARTIAL_MEDIATYPE types[3] = {
        {MEDIATYPE_Video, MEDIASUBTYPE_YUY2},
        {MEDIATYPE_Video, MEDIASUBTYPE_RGB24},
        {MEDIATYPE_Video, MEDIASUBTYPE_ARGB32},
    };
    return DMORegister(L"Color Control", CLSID_ColorControlStandIn, DMOCATEGORY_VIDEO_EFFECT, 0, 3, types, 3, types);
}

void UnregisterColorControl()
{
    DMOUnregister(CLSID_ColorControlStandIn, DMOCATEGORY_VIDEO_EFFECT);
    synthcam::UnregisterInprocClass(CLSID_ColorControlStandIn);
}

HRESULT RegisterTestCompressor(const std::wstring& dllPath)
{
    HRESULT hr = synthcam::RegisterInprocClass(CLSID_TestCompressor, kTestCompressorName, dllPath);
    if (FAILED(hr))
        return hr;
    return WithMapper([](IFilterMapper2* mapper) {
        REGFILTER2 description = {};
        description.dwVersion = 1;
        description.dwMerit = MERIT_DO_NOT_USE;
        for (const wchar_t* instance : kCompressorInstances) {
            HRESULT registered = mapper->RegisterFilter(CLSID_TestCompressor, kTestCompressorName, nullptr,
                                                        &CLSID_VideoCompressorCategory, instance, &description);
            if (FAILED(registered))
                return registered;
        }
        return S_OK;
    });
}

void UnregisterTestCompressor()
{
    WithMapper([](IFilterMapper2* mapper) {
        for (const wchar_t* instance : kCompressorInstances)
            mapper->UnregisterFilter(&CLSID_VideoCompressorCategory, instance, CLSID_TestCompressor);
        return S_OK;
    });
    synthcam::UnregisterInprocClass(CLSID_TestCompressor);
}

}  // namespace standins
