#include "video/avi_repair_file.h"

#include "base/scoped_handles.h"
#include "video/recording_file_name.h"

#include <algorithm>

namespace {

class FileReader : public AviByteReader {
public:
    explicit FileReader(HANDLE file) : file_(file) {}

    size_t Read(uint64_t offset, uint8_t* buffer, size_t length) const override
    {
        size_t total = 0;
        while (total < length) {
            DWORD wanted = static_cast<DWORD>(std::min<size_t>(length - total, 1u << 30));
            OVERLAPPED at = {};
            uint64_t position = offset + total;
            at.Offset = static_cast<DWORD>(position);
            at.OffsetHigh = static_cast<DWORD>(position >> 32);
            DWORD got = 0;
            if (!ReadFile(file_, buffer + total, wanted, &got, &at) || got == 0)
                break;
            total += got;
        }
        return total;
    }

private:
    HANDLE file_;
};

HRESULT WriteAt(HANDLE file, uint64_t offset, const std::vector<uint8_t>& bytes)
{
    size_t total = 0;
    while (total < bytes.size()) {
        DWORD wanted = static_cast<DWORD>(std::min<size_t>(bytes.size() - total, 1u << 30));
        OVERLAPPED at = {};
        uint64_t position = offset + total;
        at.Offset = static_cast<DWORD>(position);
        at.OffsetHigh = static_cast<DWORD>(position >> 32);
        DWORD written = 0;
        if (!WriteFile(file, bytes.data() + total, wanted, &written, &at))
            return HRESULT_FROM_WIN32(GetLastError());
        if (written == 0)
            return E_FAIL;
        total += written;
    }
    return S_OK;
}

HRESULT LastError()
{
    DWORD error = GetLastError();
    return error ? HRESULT_FROM_WIN32(error) : E_FAIL;
}

}  // namespace

HRESULT RepairAviFile(const std::wstring& path, AviRepairOutcome* outcome)
{
    if (!outcome)
        return E_POINTER;
    *outcome = AviRepairOutcome{};
    if (!IsRecordingFileName(path))
        return S_OK;
    ScopedFileHandle file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return LastError();
    LARGE_INTEGER size = {};
    if (!GetFileSizeEx(file.Get(), &size))
        return LastError();
    const uint64_t lengthBefore = static_cast<uint64_t>(size.QuadPart);

    FileReader reader(file.Get());
    AviRepairPlan plan = PlanAviRepair(reader, lengthBefore);
    if (plan.verdict == AviRepairVerdict::Repair && plan.end == AviDataEnd::ReadFailed)
        return E_FAIL;

    if (plan.verdict == AviRepairVerdict::Repair) {
        for (const AviRepairWrite& write : plan.writes) {
            HRESULT hr = WriteAt(file.Get(), write.offset, write.bytes);
            if (FAILED(hr))
                return hr;
        }
        LARGE_INTEGER end = {};
        end.QuadPart = static_cast<LONGLONG>(plan.newLength);
        if (!SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(file.Get()))
            return LastError();
        if (!FlushFileBuffers(file.Get()))
            return LastError();
    }

    switch (plan.verdict) {
    case AviRepairVerdict::Complete:
        outcome->result = AviRepairResult::LeftComplete;
        break;
    case AviRepairVerdict::NothingRecoverable:
        outcome->result = AviRepairResult::NothingRecoverable;
        break;
    case AviRepairVerdict::Repair:
        outcome->result = AviRepairResult::Repaired;
        break;
    }
    outcome->frames = plan.frames;
    outcome->end = plan.end;
    outcome->lengthBefore = lengthBefore;
    outcome->lengthAfter = plan.verdict == AviRepairVerdict::Repair ? plan.newLength : lengthBefore;
    return S_OK;
}
