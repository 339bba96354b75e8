#include "tools/synthcam/registry.h"

#include "tools/beside_program.h"
#include "tools/synthcam/profiles.h"
#include "tools/synthcam/source_filter.h"

#include <dshow.h>

#include <cwchar>

namespace synthcam {
namespace {

std::wstring GuidText(REFGUID guid)
{
    wchar_t text[64] = {};
    StringFromGUID2(guid, text, 64);
    return text;
}

std::wstring InstanceRoot()
{
    return L"CLSID\\" + GuidText(CLSID_VideoInputDeviceCategory) + L"\\Instance";
}

std::wstring ReadValue(HKEY key, const wchar_t* name)
{
    wchar_t buffer[512] = {};
    DWORD size = sizeof(buffer) - sizeof(wchar_t);
    DWORD type = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS ||
        type != REG_SZ)
        return {};
    return buffer;
}

bool InstanceExists(const std::wstring& key)
{
    HKEY handle;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, (InstanceRoot() + L"\\" + key).c_str(), 0, KEY_READ, &handle) !=
        ERROR_SUCCESS)
        return false;
    RegCloseKey(handle);
    return true;
}

std::wstring NewPlugToken()
{
    GUID token{};
    CoCreateGuid(&token);
    return GuidText(token);
}

HRESULT WriteBagString(IPropertyBag* bag, const wchar_t* name, const std::wstring& text)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(text.c_str());
    HRESULT hr = bag->Write(name, &value);
    VariantClear(&value);
    return hr;
}

}  // namespace

HRESULT RegisterInprocClass(REFCLSID clsid, const wchar_t* title, const std::wstring& dllPath)
{
    std::wstring path = L"CLSID\\" + GuidText(clsid);
    HKEY key;
    LSTATUS status = RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS)
        return HRESULT_FROM_WIN32(status);
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(title),
                   static_cast<DWORD>((wcslen(title) + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    status = RegCreateKeyExW(HKEY_CLASSES_ROOT, (path + L"\\InprocServer32").c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                             &key, nullptr);
    if (status != ERROR_SUCCESS)
        return HRESULT_FROM_WIN32(status);
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(dllPath.c_str()),
                   static_cast<DWORD>((dllPath.size() + 1) * sizeof(wchar_t)));
    const wchar_t model[] = L"Both";
    RegSetValueExW(key, L"ThreadingModel", 0, REG_SZ, reinterpret_cast<const BYTE*>(model), sizeof(model));
    RegCloseKey(key);
    return S_OK;
}

void UnregisterInprocClass(REFCLSID clsid)
{
    RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + GuidText(clsid)).c_str());
}

HRESULT RegisterCameraClass(const std::wstring& dllPath)
{
    return RegisterInprocClass(CLSID_SynthCam, L"MAVU synthetic camera", dllPath);
}

std::wstring DllBesideProgram()
{
    return testdll::FileBesideProgram(L"synthcam.dll");
}

HRESULT AddDevice(const std::wstring& name, const std::wstring& profile, const std::wstring& signal,
                  const std::wstring& dllPath, const DevicePacing& pacing)
{
    if (!FindProfile(profile))
        return E_INVALIDARG;
    HRESULT hr = RegisterCameraClass(dllPath);
    if (FAILED(hr))
        return hr;
    // Names may repeat; instance keys may not.
    std::wstring instance;
    for (int n = 1;; ++n) {
        instance = L"MAVU synthetic camera " + std::to_wstring(n);
        if (!InstanceExists(instance))
            break;
    }
    IFilterMapper2* mapper = nullptr;
    hr = CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER, IID_IFilterMapper2,
                          reinterpret_cast<void**>(&mapper));
    if (FAILED(hr))
        return hr;
    REGFILTER2 description = {};
    description.dwVersion = 1;
    description.dwMerit = MERIT_DO_NOT_USE;
    description.cPins = 0;
    description.rgPins = nullptr;
    IMoniker* moniker = nullptr;
    hr = mapper->RegisterFilter(CLSID_SynthCam, name.c_str(), &moniker, &CLSID_VideoInputDeviceCategory,
                                instance.c_str(), &description);
    mapper->Release();
    if (FAILED(hr))
        return hr;
    if (!moniker)
        return E_FAIL;
    IPropertyBag* bag = nullptr;
    hr = moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag, reinterpret_cast<void**>(&bag));
    moniker->Release();
    if (FAILED(hr))
        return hr;
    hr = WriteBagString(bag, L"Profile", profile);
    if (SUCCEEDED(hr))
        hr = WriteBagString(bag, L"Signal", signal.empty() ? std::wstring(L"ntsc") : signal);
    if (SUCCEEDED(hr))
        hr = WriteBagString(bag, L"Plug", NewPlugToken());
    if (SUCCEEDED(hr) && pacing.frameLimit > 0)
        hr = WriteBagString(bag, L"FrameLimit", std::to_wstring(pacing.frameLimit));
    if (SUCCEEDED(hr) && pacing.startDelayMs > 0)
        hr = WriteBagString(bag, L"StartDelay", std::to_wstring(pacing.startDelayMs));
    if (SUCCEEDED(hr) && pacing.dropEvery > 0)
        hr = WriteBagString(bag, L"DropEvery", std::to_wstring(pacing.dropEvery));
    bag->Release();
    return hr;
}

std::vector<DeviceEntry> ListDevices()
{
    std::vector<DeviceEntry> devices;
    HKEY root;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, InstanceRoot().c_str(), 0, KEY_READ, &root) != ERROR_SUCCESS)
        return devices;
    std::wstring ours = GuidText(CLSID_SynthCam);
    for (DWORD index = 0;; ++index) {
        wchar_t keyName[256];
        DWORD length = 256;
        if (RegEnumKeyExW(root, index, keyName, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        HKEY instance;
        if (RegOpenKeyExW(root, keyName, 0, KEY_READ, &instance) != ERROR_SUCCESS)
            continue;
        if (_wcsicmp(ReadValue(instance, L"CLSID").c_str(), ours.c_str()) == 0)
            devices.push_back({ReadValue(instance, L"FriendlyName"), ReadValue(instance, L"Profile"),
                               ReadValue(instance, L"Signal"), keyName, ReadValue(instance, L"Plug")});
        RegCloseKey(instance);
    }
    RegCloseKey(root);
    return devices;
}

namespace {

constexpr wchar_t kPublishedValuesRoot[] = L"Software\\MAVU synthetic camera\\Property values";

std::wstring PublishedValueName(long property)
{
    return L"Property " + std::to_wstring(property);
}

}  // namespace

void PublishPropertyValue(const std::wstring& plug, long property, long value)
{
    std::wstring path = std::wstring(kPublishedValuesRoot) + L"\\" + plug;
    DWORD data = static_cast<DWORD>(value);
    RegSetKeyValueW(HKEY_CURRENT_USER, path.c_str(), PublishedValueName(property).c_str(), REG_DWORD, &data,
                    sizeof data);
}

bool PublishedPropertyValue(const std::wstring& name, long property, long* value)
{
    for (const DeviceEntry& device : ListDevices()) {
        if (device.name != name || device.plug.empty())
            continue;
        std::wstring path = std::wstring(kPublishedValuesRoot) + L"\\" + device.plug;
        DWORD data = 0;
        DWORD size = sizeof data;
        if (RegGetValueW(HKEY_CURRENT_USER, path.c_str(), PublishedValueName(property).c_str(), RRF_RT_REG_DWORD,
                         nullptr, &data, &size) != ERROR_SUCCESS)
            return false;
        *value = static_cast<long>(data);
        return true;
    }
    return false;
}

std::wstring PulledEventName(const std::wstring& plug)
{
    return L"MAVU synthetic camera pulled " + plug;
}

namespace {

// Takes the first device of that name off the list; a pull first tells the
// filters made from it.
HRESULT TakeAwayDevice(const std::wstring& name, bool pull)
{
    for (const DeviceEntry& device : ListDevices()) {
        if (device.name != name)
            continue;
        // The stream stops as the cable goes; the device node goes after.
        // Only filters made from this plugging in hold the event: none, if
        // the device was never bound.
        if (pull && !device.plug.empty()) {
            if (HANDLE pulled = OpenEventW(EVENT_MODIFY_STATE, FALSE, PulledEventName(device.plug).c_str())) {
                SetEvent(pulled);
                CloseHandle(pulled);
            }
        }
        LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, (InstanceRoot() + L"\\" + device.instanceKey).c_str());
        return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(status);
    }
    return S_FALSE;
}

}  // namespace

HRESULT RemoveDevice(const std::wstring& name)
{
    return TakeAwayDevice(name, false);
}

HRESULT PullDevice(const std::wstring& name)
{
    return TakeAwayDevice(name, true);
}

void RemoveAllDevices()
{
    for (const DeviceEntry& device : ListDevices())
        RegDeleteTreeW(HKEY_CLASSES_ROOT, (InstanceRoot() + L"\\" + device.instanceKey).c_str());
    RegDeleteTreeW(HKEY_CURRENT_USER, kPublishedValuesRoot);
}

}  // namespace synthcam
