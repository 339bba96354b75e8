// A file writer for the AVI Mux: its one input pin takes MEDIATYPE_Stream
// and offers IStream over the file, through which a multiplexer seeks and
// writes its headers, chunks and index. Samples that arrive on the pin are
// written at the byte offset that their start time carries.
//
// The file is created when the filter leaves the stopped state and stays
// open after Stop: the mux finishes the file while it stops, which may be
// after this filter has stopped. It is closed by the next start, by
// SetFileName, by a disconnection, by CloseFile or with the filter.
#pragma once

#include "filters/base_classes.h"

#include <cstdint>
#include <string>
#include <vector>

class FileSinkFilter;

class FileSinkInputPin : public CBaseInputPin, public IStream {
public:
    FileSinkInputPin(FileSinkFilter* filter, CCritSec* lock, HRESULT* result);

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT BreakConnect() override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;

    // ISequentialStream
    HRESULT STDMETHODCALLTYPE Read(void* data, ULONG size, ULONG* read) override;
    HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* written) override;
    // IStream
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) override;
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override;
    HRESULT STDMETHODCALLTYPE CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override;
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Revert() override;
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size, DWORD type) override;
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size, DWORD type) override;
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Clone(IStream** clone) override;

private:
    FileSinkFilter* sink_;
};

class FileSinkFilter : public CBaseFilter, public IFileSinkFilter {
public:
    explicit FileSinkFilter(IUnknown* owner);
    ~FileSinkFilter() override;

    // A new filter with one reference, for a graph to hold.
    static HRESULT Create(IBaseFilter** filter);

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    int GetPinCount() override { return 1; }
    CBasePin* GetPin(int n) override;
    HRESULT STDMETHODCALLTYPE Pause() override;

    // IFileSinkFilter
    HRESULT STDMETHODCALLTYPE SetFileName(LPCOLESTR name, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR* name, AM_MEDIA_TYPE* type) override;

    void CloseFile();
    // Bytes written at the start of each file the sink creates, before
    // anything the multiplexer writes: a recording's provisional header,
    // which the multiplexer overwrites when it finishes the file.
    void SetLeadingBytes(std::vector<uint8_t> bytes);
    // Called, on the writing thread, with the result of each write to a
    // file that fails or falls short: the disk may be full. One for the
    // process.
    static void SetWriteFailureHook(void (*hook)(HRESULT));

private:
    friend class FileSinkInputPin;

    HRESULT OpenFile();
    // Runs a step of the stream interface on the open file, under the file
    // lock; E_UNEXPECTED while no file is open.
    template <class Step>
    HRESULT WithOpenFile(Step step);

    CCritSec filterLock_;
    CCritSec fileLock_;
    FileSinkInputPin pin_;
    std::wstring fileName_;
    HANDLE file_ = INVALID_HANDLE_VALUE;
    std::vector<uint8_t> leadingBytes_;
};
