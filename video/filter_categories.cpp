#include "video/filter_categories.h"

#include <windows.h>
#include <dshow.h>

#include "base/com_ptr.h"

namespace {

bool AskForFilterCategories()
{
    ComPtr<ICreateDevEnum> devices;
    // Where the question can't be asked, the graph's own search stands.
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())) ||
        !devices)
        return true;
    // S_FALSE with no enumerator: the list is empty.
    ComPtr<IEnumMoniker> categories;
    return devices->CreateClassEnumerator(CLSID_ActiveMovieCategories, categories.Put(), 0) == S_OK && categories;
}

}  // namespace

bool FilterCategoriesListed()
{
    // Asked once a run: the list doesn't change under a running program, and
    // this platform's category enumerator keeps two registry handles open
    // for good each time it is made.
    static const bool listed = AskForFilterCategories();
    return listed;
}
