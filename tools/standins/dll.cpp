// The stand-ins' COM entry: one class factory for the colour effect, one for
// the test compressor.
#include "tools/standins/color_effect.h"
#include "tools/standins/test_compressor.h"
#include "tools/synthcam/class_factory.h"

namespace {

synthcam::StaticClassFactory effectFactory(standins::ColorEffect::Create);
synthcam::StaticClassFactory compressorFactory(synthcam::CreateFilterObject<standins::TestCompressor>);

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
    return synthcam::serverLocks == 0 && standins::liveEffects == 0 && CBaseObject::ObjectsActive() == 0 ? S_OK
                                                                                                         : S_FALSE;
}
