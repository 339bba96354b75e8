// The DLL's COM entry: a class factory for the synthetic camera.
#include "tools/com_class_factory.h"
#include "tools/synthcam/source_filter.h"

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    return testdll::GetClassObject<synthcam::SynthCamFilter>(clsid, synthcam::CLSID_SynthCam, iid, object);
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    return testdll::CanUnloadNow();
}
