#include "support/handle_count.h"

#include <tlhelp32.h>

#include <vector>

namespace testsupport {

namespace {

// SystemHandleInformation and its entries, as ntdll fills them.
constexpr ULONG kSystemHandleInformation = 16;
constexpr LONG kInfoLengthMismatch = static_cast<LONG>(0xC0000004);

struct HandleEntry {
    ULONG ownerProcessId;
    BYTE objectType;
    BYTE flags;
    USHORT handleValue;
    PVOID object;
    ULONG access;
};

struct HandleTable {
    ULONG count;
    HandleEntry entries[1];
};

using QuerySystemInformation = LONG(WINAPI*)(ULONG, PVOID, ULONG, PULONG);

}  // namespace

long ProcessHandleCount(DWORD processId)
{
    auto query = reinterpret_cast<QuerySystemInformation>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    if (!query)
        return -1;
    std::vector<char> buffer(1 << 20);
    ULONG length = 0;
    LONG status = 0;
    while ((status = query(kSystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), &length)) ==
           kInfoLengthMismatch)
        buffer.resize(buffer.size() * 2);
    if (status != 0)
        return -1;
    const auto* table = reinterpret_cast<const HandleTable*>(buffer.data());
    long count = 0;
    for (ULONG i = 0; i < table->count; ++i) {
        if (table->entries[i].ownerProcessId == processId)
            ++count;
    }
    return count;
}

long ProcessThreadCount(DWORD processId)
{
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return -1;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    long threads = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
        threads += entry.th32OwnerProcessID == processId ? 1 : 0;
    CloseHandle(snapshot);
    return threads;
}

}  // namespace testsupport
