#include "tools/vmr7standin/registration.h"

#include "tools/beside_program.h"

#include <uuids.h>

namespace vmr7standin {
namespace {

// Where the platform's own server path waits while the stand-in is in.
constexpr wchar_t kReplacedValue[] = L"MavuReplacedServer";

std::wstring ServerKey()
{
    wchar_t clsid[64] = {};
    StringFromGUID2(CLSID_VideoMixingRenderer, clsid, 64);
    return std::wstring(L"CLSID\\") + clsid + L"\\InprocServer32";
}

bool ReadText(HKEY key, const wchar_t* name, std::wstring& text)
{
    wchar_t buffer[MAX_PATH * 2] = {};
    DWORD size = sizeof(buffer) - sizeof(wchar_t);
    DWORD type = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return false;
    text = buffer;
    return true;
}

LSTATUS WriteText(HKEY key, const wchar_t* name, const std::wstring& text)
{
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

std::wstring StandInBesideProgram()
{
    return testdll::FileBesideProgram(L"vmr7standin.dll");
}

HRESULT InstallStandIn(const std::wstring& dllPath)
{
    HKEY key;
    if (RegCreateKeyExW(HKEY_CLASSES_ROOT, ServerKey().c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                        nullptr) != ERROR_SUCCESS)
        return E_ACCESSDENIED;
    std::wstring replaced;
    // Installed twice, the platform's path is the one to keep.
    if (!ReadText(key, kReplacedValue, replaced)) {
        ReadText(key, nullptr, replaced);
        WriteText(key, kReplacedValue, replaced);
    }
    LSTATUS status = WriteText(key, nullptr, dllPath);
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(status);
}

void RestorePlatformVmr7()
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, ServerKey().c_str(), 0, KEY_READ | KEY_WRITE, &key) != ERROR_SUCCESS)
        return;
    std::wstring replaced;
    if (ReadText(key, kReplacedValue, replaced)) {
        WriteText(key, nullptr, replaced);
        RegDeleteValueW(key, kReplacedValue);
    }
    RegCloseKey(key);
}

}  // namespace vmr7standin
