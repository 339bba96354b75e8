#include "video/device_hot_plug.h"

#include <windows.h>
#include <dshow.h>

#include <algorithm>
#include <cwchar>
#include <string>
#include <vector>

#include "base/com_ptr.h"
#include "base/report.h"
#include "video/device_list.h"
#include "video/video_format.h"

namespace {

ConnectResult Warn(const wchar_t* text)
{
    ReportUserMessage(text, true);
    return NothingToDo;
}

bool Complain(const wchar_t* text)
{
    ReportUserMessage(text, true);
    return false;
}

bool IsUnusable(const std::wstring& name)
{
    return std::find(unusableDeviceNames.begin(), unusableDeviceNames.end(), name) != unusableDeviceNames.end();
}

// The attached devices that count, by name, with their monikers.
struct AttachedDevices {
    std::vector<std::wstring> names;
    std::vector<ComPtr<IMoniker>> monikers;
};

// Lists them; false after a fault, which it has reported.
bool ListAttachedDevices(AttachedDevices& attached)
{
    ComPtr<ICreateDevEnum> devices;
    if (FAILED(CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                devices.PutVoid())))
        return Complain(L"WARNING: cannot create a system device enumerator for finding attached devices\r\n");
    if (!devices)
        return Complain(L"WARNING: attempt to create a system device enumerator in UpdateSourceVideoInfoList yields a "
                        L"NULL enumerator\r\n");
    ComPtr<IEnumMoniker> monikers;
    HRESULT result = devices->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.Put(), 0);
    if (FAILED(result))
        return Complain(L"WARNING: cannot create a video input device enumerator\r\n");
    // An empty category is no failure: nothing is attached.
    if (result == S_FALSE)
        return true;
    if (!monikers)
        return Complain(L"WARNING: video input device enumerator in UpdateSourceVideoInfoList is NULL\r\n");
    for (;;) {
        ComPtr<IMoniker> moniker;
        if (monikers->Next(1, moniker.Put(), nullptr) != S_OK)
            return true;
        if (!moniker)
            return Complain(L"WARNING: video input device moniker is NULL in UpdateSourceVideoInfoList\r\n");
        std::wstring name;
        HRESULT failure = S_OK;
        if (!ReadFriendlyName(moniker.Get(), name,
                              L"WARNING: video input device moniker property bag is NULL in "
                              L"UpdateSourceVideoInfoList\r\n",
                              &failure)) {
            if (FAILED(failure))
                return false;
            ReportUserMessage(L"WARNING: cannot read the name of an attached device\r\n", true);
            continue;
        }
        // A device refused once doesn't count as attached for the rest of
        // the run: it is reported once, when it first came.
        if (IsUnusable(name))
            continue;
        attached.names.push_back(name);
        attached.monikers.push_back(moniker);
    }
}

// Validates a device seen for the first time and appends it; a device that
// can't be used is remembered as such.
ConnectResult AppendNewDevice(const std::wstring& name, IMoniker* moniker, int32_t* outIndex)
{
    auto* source = new VideoSourceInfo{};
    wcsncpy(source->name, name.c_str(), kSourceNameCapacity - 1);
    source->name[kSourceNameCapacity - 1] = 0;
    source->seenAttached = 1;
    if (FAILED(ValidateVideoCaptureDevice(source, moniker))) {
        RecordUnusableDevice(source);
        return NothingToDo;
    }
    *outIndex = static_cast<int32_t>(videoSources.size());
    videoSources.push_back(source);
    return NewDeviceAppended;
}

}  // namespace

ConnectResult UpdateSourceVideoInfoList(int32_t* outIndex)
{
    // The line stands as it was written, for another operation.
    if (!outIndex)
        return Warn(L"Logic error: attempt to get base filter from a NULL pointer to VideoSourceInfo\r\n");
    *outIndex = -1;
    uint32_t disconnected = 0;
    const wchar_t* logicError = nullptr;
    if (!PrepareDeviceScan(videoSources, disconnected, logicError))
        return Warn(logicError);

    AttachedDevices attached;
    if (!ListAttachedDevices(attached))
        return NothingToDo;
    DeviceScanVerdict verdict = ClassifyDeviceScan(videoSources, attached.names, disconnected);
    if (verdict.logicError)
        ReportUserMessage(verdict.logicError, true);
    if (verdict.result == NewDeviceAppended) {
        size_t entry = static_cast<size_t>(verdict.newDeviceEntry);
        // The entry's name was kept: only matched entries are emptied.
        return AppendNewDevice(attached.names[entry], attached.monikers[entry].Get(), outIndex);
    }
    *outIndex = verdict.index;
    return verdict.result;
}
