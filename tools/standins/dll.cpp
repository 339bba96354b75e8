// The stand-ins' COM entry: one class factory for the colour effect, one for
// the test compressor.
#include "tools/standins/color_effect.h"
#include "tools/standins/test_compressor.h"
#include "tools/com_class_factory.h"

namespace {

testdll::StaticClassFactory effectFactory(standins::ColorEffect::Create);
testdll::StaticClassFactory compressorFactory(testdll::CreateFilterObject<standins::TestCompressor>);

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (clsid == standins::CLSID_ColorControlStandIn)
        return effectFactory.QueryInterface(iid, object);
    if (clsid == standins::CLSID_TestCompressor)
        return compressorFactory.QueryInterface(iid, object);
    return CLASS_E_CLASSNOTAVAILABLE;
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    return standins::liveEffects == 0 ? testdll::CanUnloadNow() : S_FALSE;
}
