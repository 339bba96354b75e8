#include "video/filter_categories.h"

#include <windows.h>
#include <dshow.h>

#include "base/com_ptr.h"

bool FilterCategoriesListed()
{
    ComPtr<ICreateDevEnum> devices;
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())) ||
        !devices)
        return false;
    // S_FALSE with no enumerator: the list is empty.
    ComPtr<IEnumMoniker> categories;
    return devices->CreateClassEnumerator(CLSID_ActiveMovieCategories, categories.Put(), 0) == S_OK && categories;
}
