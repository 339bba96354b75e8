// The DLL's COM entry: VMR7's class id, served by the stand-in renderer.
#include "tools/com_class_factory.h"
#include "tools/vmr7standin/renderer.h"

#include <uuids.h>

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    return testdll::GetClassObject<vmr7standin::StandInRenderer>(clsid, CLSID_VideoMixingRenderer, iid, object);
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow()
{
    return testdll::CanUnloadNow();
}
