// The DLL's COM entry: a class factory for the synthetic camera.
#include "tools/synthcam/class_factory.h"
#include "tools/synthcam/source_filter.h"

namespace {

synthcam::StaticClassFactory factory(synthcam::CreateFilterObject<synthcam::SynthCamFilter>);

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (clsid != synthcam::CLSID_SynthCam)
        return CLASS_E_CLASSNOTAVAILABLE;
    return factory.QueryInterface(iid, object);
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    return synthcam::serverLocks == 0 && CBaseObject::ObjectsActive() == 0 ? S_OK : S_FALSE;
}
