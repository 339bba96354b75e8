#include "filters/file_sink_filter.h"

#include <atomic>
#include <cstring>
#include <new>

namespace {

// {6C2E3C0B-4F3A-4E8B-9B57-3D1F0A9C5E21}: the sink is never registered; the
// id only answers GetClassID.
const CLSID CLSID_MavuFileSink = {0x6c2e3c0b, 0x4f3a, 0x4e8b, {0x9b, 0x57, 0x3d, 0x1f, 0x0a, 0x9c, 0x5e, 0x21}};

std::atomic<void (*)(HRESULT)> writeFailureHook{nullptr};

HRESULT LastErrorResult()
{
    DWORD error = GetLastError();
    return error ? HRESULT_FROM_WIN32(error) : E_FAIL;
}

// What a ReadFile or WriteFile that moved `done` of `size` bytes gives the
// stream's caller: the count where it asked for one, and `shortResult`
// where fewer bytes moved than asked.
HRESULT TransferResult(BOOL succeeded, DWORD done, ULONG size, ULONG* reported, HRESULT shortResult)
{
    if (!succeeded)
        return LastErrorResult();
    if (reported)
        *reported = done;
    return done == size ? S_OK : shortResult;
}

}  // namespace

template <class Step>
HRESULT FileSinkFilter::WithOpenFile(Step step)
{
    CAutoLock lock(&fileLock_);
    if (file_ == INVALID_HANDLE_VALUE)
        return E_UNEXPECTED;
    return step(file_);
}

// -------------------------------------------------------- FileSinkInputPin

FileSinkInputPin::FileSinkInputPin(FileSinkFilter* filter, CCritSec* lock, HRESULT* result)
    : CBaseInputPin(L"File sink input pin", filter, lock, result, L"in"), sink_(filter)
{
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (iid == IID_IStream)
        return GetInterface(static_cast<IStream*>(this), object);
    if (iid == IID_ISequentialStream)
        return GetInterface(static_cast<ISequentialStream*>(this), object);
    return CBaseInputPin::NonDelegatingQueryInterface(iid, object);
}

HRESULT FileSinkInputPin::CheckMediaType(const CMediaType* type)
{
    return type->majortype == MEDIATYPE_Stream ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
}

HRESULT FileSinkInputPin::BreakConnect()
{
    sink_->CloseFile();
    return CBaseInputPin::BreakConnect();
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Receive(IMediaSample* sample)
{
    HRESULT hr = CBaseInputPin::Receive(sample);
    if (hr != S_OK)
        return hr;
    BYTE* data = nullptr;
    hr = sample->GetPointer(&data);
    if (FAILED(hr))
        return hr;
    // A sample's start time is its byte offset in the file. The seek and
    // the write are one step: the stream interface may be used meanwhile
    // from another thread.
    CAutoLock lock(&sink_->fileLock_);
    REFERENCE_TIME start = 0, stop = 0;
    if (SUCCEEDED(sample->GetTime(&start, &stop))) {
        LARGE_INTEGER offset;
        offset.QuadPart = start;
        hr = Seek(offset, STREAM_SEEK_SET, nullptr);
        if (FAILED(hr))
            return hr;
    }
    ULONG written = 0;
    return Write(data, static_cast<ULONG>(sample->GetActualDataLength()), &written);
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::EndOfStream()
{
    sink_->NotifyEvent(EC_COMPLETE, S_OK, 0);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Read(void* data, ULONG size, ULONG* read)
{
    return sink_->WithOpenFile([&](HANDLE file) {
        DWORD done = 0;
        BOOL succeeded = ReadFile(file, data, size, &done, nullptr);
        return TransferResult(succeeded, done, size, read, S_FALSE);
    });
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Write(const void* data, ULONG size, ULONG* written)
{
    return sink_->WithOpenFile([&](HANDLE file) {
        DWORD done = 0;
        BOOL succeeded = WriteFile(file, data, size, &done, nullptr);
        HRESULT hr = TransferResult(succeeded, done, size, written, STG_E_MEDIUMFULL);
        if (hr != S_OK) {
            if (auto hook = writeFailureHook.load())
                hook(hr);
        }
        return hr;
    });
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position)
{
    return sink_->WithOpenFile([&](HANDLE file) {
        DWORD method = origin == STREAM_SEEK_CUR ? FILE_CURRENT : origin == STREAM_SEEK_END ? FILE_END : FILE_BEGIN;
        LARGE_INTEGER reached = {};
        if (!SetFilePointerEx(file, move, &reached, method))
            return LastErrorResult();
        if (position)
            position->QuadPart = static_cast<ULONGLONG>(reached.QuadPart);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::SetSize(ULARGE_INTEGER size)
{
    return sink_->WithOpenFile([&](HANDLE file) {
        LARGE_INTEGER here = {}, zero = {};
        if (!SetFilePointerEx(file, zero, &here, FILE_CURRENT))
            return LastErrorResult();
        LARGE_INTEGER end;
        end.QuadPart = static_cast<LONGLONG>(size.QuadPart);
        if (!SetFilePointerEx(file, end, nullptr, FILE_BEGIN) || !SetEndOfFile(file))
            return LastErrorResult();
        SetFilePointerEx(file, here, nullptr, FILE_BEGIN);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Commit(DWORD flags)
{
    return sink_->WithOpenFile([](HANDLE file) { return FlushFileBuffers(file) ? S_OK : LastErrorResult(); });
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Revert()
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD)
{
    return STG_E_INVALIDFUNCTION;
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD)
{
    return STG_E_INVALIDFUNCTION;
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Stat(STATSTG* stat, DWORD flags)
{
    if (!stat)
        return E_POINTER;
    CAutoLock lock(&sink_->fileLock_);
    std::memset(stat, 0, sizeof(*stat));
    stat->type = STGTY_STREAM;
    LARGE_INTEGER size = {};
    if (sink_->file_ != INVALID_HANDLE_VALUE && GetFileSizeEx(sink_->file_, &size))
        stat->cbSize.QuadPart = static_cast<ULONGLONG>(size.QuadPart);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FileSinkInputPin::Clone(IStream** clone)
{
    return E_NOTIMPL;
}

// ---------------------------------------------------------- FileSinkFilter

FileSinkFilter::FileSinkFilter(IUnknown* owner)
    : CBaseFilter(L"File sink", owner, &filterLock_, CLSID_MavuFileSink), pin_(this, &filterLock_, nullptr)
{
}

FileSinkFilter::~FileSinkFilter()
{
    CloseFile();
}

HRESULT FileSinkFilter::Create(IBaseFilter** filter)
{
    if (!filter)
        return E_POINTER;
    auto* sink = new (std::nothrow) FileSinkFilter(nullptr);
    if (!sink)
        return E_OUTOFMEMORY;
    return sink->NonDelegatingQueryInterface(IID_IBaseFilter, reinterpret_cast<void**>(filter));
}

HRESULT STDMETHODCALLTYPE FileSinkFilter::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (iid == IID_IFileSinkFilter)
        return GetInterface(static_cast<IFileSinkFilter*>(this), object);
    return CBaseFilter::NonDelegatingQueryInterface(iid, object);
}

CBasePin* FileSinkFilter::GetPin(int n)
{
    return n == 0 ? &pin_ : nullptr;
}

HRESULT STDMETHODCALLTYPE FileSinkFilter::Pause()
{
    CAutoLock lock(&filterLock_);
    if (state_ == State_Stopped) {
        HRESULT hr = OpenFile();
        if (FAILED(hr))
            return hr;
    }
    return CBaseFilter::Pause();
}

HRESULT STDMETHODCALLTYPE FileSinkFilter::SetFileName(LPCOLESTR name, const AM_MEDIA_TYPE* type)
{
    if (!name)
        return E_POINTER;
    CAutoLock lock(&filterLock_);
    if (state_ != State_Stopped)
        return VFW_E_WRONG_STATE;
    CloseFile();
    fileName_ = name;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FileSinkFilter::GetCurFile(LPOLESTR* name, AM_MEDIA_TYPE* type)
{
    if (!name)
        return E_POINTER;
    CAutoLock lock(&filterLock_);
    *name = nullptr;
    if (type) {
        CMediaType stream(&MEDIATYPE_Stream);
        CopyMediaType(type, &stream);
    }
    if (fileName_.empty())
        return S_OK;
    size_t bytes = (fileName_.size() + 1) * sizeof(wchar_t);
    *name = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
    if (!*name)
        return E_OUTOFMEMORY;
    std::memcpy(*name, fileName_.c_str(), bytes);
    return S_OK;
}

HRESULT FileSinkFilter::OpenFile()
{
    CAutoLock lock(&fileLock_);
    if (file_ != INVALID_HANDLE_VALUE) {
        CloseHandle(file_);
        file_ = INVALID_HANDLE_VALUE;
    }
    if (fileName_.empty())
        return HRESULT_FROM_WIN32(ERROR_INVALID_NAME);
    file_ = CreateFileW(fileName_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file_ == INVALID_HANDLE_VALUE)
        return LastErrorResult();
    if (!leadingBytes_.empty()) {
        DWORD written = 0;
        if (!WriteFile(file_, leadingBytes_.data(), static_cast<DWORD>(leadingBytes_.size()), &written, nullptr))
            return LastErrorResult();
        LARGE_INTEGER start = {};
        SetFilePointerEx(file_, start, nullptr, FILE_BEGIN);
    }
    return S_OK;
}

void FileSinkFilter::SetWriteFailureHook(void (*hook)(HRESULT))
{
    writeFailureHook = hook;
}

void FileSinkFilter::SetLeadingBytes(std::vector<uint8_t> bytes)
{
    CAutoLock lock(&fileLock_);
    leadingBytes_ = std::move(bytes);
}

void FileSinkFilter::CloseFile()
{
    CAutoLock lock(&fileLock_);
    if (file_ != INVALID_HANDLE_VALUE) {
        FlushFileBuffers(file_);
        CloseHandle(file_);
        file_ = INVALID_HANDLE_VALUE;
    }
}
