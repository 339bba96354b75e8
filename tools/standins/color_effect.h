// A stand-in for the "Color Control" video effect, for tests only: a DMO
// that takes YUY2, RGB24 or ARGB32 and gives the same type, with its
// brightness value added to the picture's levels and its contrast value
// as a gain around black (16). Its property store takes both as 32-bit
// numbers from -127 to 127 and gives back what it was given. It can be
// aggregated, as the platform's DMO wrapper does.
#pragma once

#include <windows.h>
#include <mediaobj.h>
#include <propsys.h>

#include <atomic>
#include <cstdint>

namespace standins {

// {6F4A2C91-3B7E-4D58-9A1C-7E2B5D8F4C31}
extern const CLSID CLSID_ColorControlStandIn;

// The picture's levels through the values: (level - 16) times
// (contrast + 128) / 128, plus 16 and the brightness, held to 0 to 255.
uint8_t AdjustedLevel(uint8_t level, int32_t brightness, int32_t contrast);

class ColorEffect : public IMediaObject, public IPropertyStore {
public:
    // The object's own IUnknown, which an aggregating outer object holds.
    static HRESULT Create(IUnknown* outer, REFIID iid, void** object);

    // IUnknown, delegated to the outer object when aggregated.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // IMediaObject
    HRESULT STDMETHODCALLTYPE GetStreamCount(DWORD* inputs, DWORD* outputs) override;
    HRESULT STDMETHODCALLTYPE GetInputStreamInfo(DWORD stream, DWORD* flags) override;
    HRESULT STDMETHODCALLTYPE GetOutputStreamInfo(DWORD stream, DWORD* flags) override;
    HRESULT STDMETHODCALLTYPE GetInputType(DWORD stream, DWORD index, DMO_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetOutputType(DWORD stream, DWORD index, DMO_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE SetInputType(DWORD stream, const DMO_MEDIA_TYPE* type, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE SetOutputType(DWORD stream, const DMO_MEDIA_TYPE* type, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE GetInputCurrentType(DWORD stream, DMO_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetOutputCurrentType(DWORD stream, DMO_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetInputSizeInfo(DWORD stream, DWORD* size, DWORD* lookahead, DWORD* alignment) override;
    HRESULT STDMETHODCALLTYPE GetOutputSizeInfo(DWORD stream, DWORD* size, DWORD* alignment) override;
    HRESULT STDMETHODCALLTYPE GetInputMaxLatency(DWORD stream, REFERENCE_TIME* latency) override;
    HRESULT STDMETHODCALLTYPE SetInputMaxLatency(DWORD stream, REFERENCE_TIME latency) override;
    HRESULT STDMETHODCALLTYPE Flush() override;
    HRESULT STDMETHODCALLTYPE Discontinuity(DWORD stream) override;
    HRESULT STDMETHODCALLTYPE AllocateStreamingResources() override;
    HRESULT STDMETHODCALLTYPE FreeStreamingResources() override;
    HRESULT STDMETHODCALLTYPE GetInputStatus(DWORD stream, DWORD* flags) override;
    HRESULT STDMETHODCALLTYPE ProcessInput(DWORD stream, IMediaBuffer* buffer, DWORD flags, REFERENCE_TIME start,
                                           REFERENCE_TIME length) override;
    HRESULT STDMETHODCALLTYPE ProcessOutput(DWORD flags, DWORD count, DMO_OUTPUT_DATA_BUFFER* buffers,
                                            DWORD* status) override;
    HRESULT STDMETHODCALLTYPE Lock(LONG lock) override;

    // IPropertyStore
    HRESULT STDMETHODCALLTYPE GetCount(DWORD* count) override;
    HRESULT STDMETHODCALLTYPE GetAt(DWORD index, PROPERTYKEY* key) override;
    HRESULT STDMETHODCALLTYPE GetValue(REFPROPERTYKEY key, PROPVARIANT* value) override;
    HRESULT STDMETHODCALLTYPE SetValue(REFPROPERTYKEY key, REFPROPVARIANT value) override;
    HRESULT STDMETHODCALLTYPE Commit() override;

private:
    class Inner : public IUnknown {
    public:
        explicit Inner(ColorEffect* effect) : effect_(effect) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
        ULONG STDMETHODCALLTYPE AddRef() override;
        ULONG STDMETHODCALLTYPE Release() override;

    private:
        ColorEffect* effect_;
    };

    explicit ColorEffect(IUnknown* outer);
    virtual ~ColorEffect();
    std::atomic<int32_t>* ValueOf(REFPROPERTYKEY key);
    // A copy of the held type of a stream, where one was set.
    HRESULT CurrentType(DWORD stream, const DMO_MEDIA_TYPE& held, const bool& set, DMO_MEDIA_TYPE* type);
    // The frame's layout from the input type: bytes per pixel and per row.
    bool Geometry(int* bytesPerPixel, int32_t* rowStride, int32_t* rows) const;

    Inner inner_;
    IUnknown* outer_;
    std::atomic<ULONG> references_{1};
    CRITICAL_SECTION lock_;
    DMO_MEDIA_TYPE inputType_{};
    DMO_MEDIA_TYPE outputType_{};
    bool inputSet_ = false;
    bool outputSet_ = false;
    IMediaBuffer* pending_ = nullptr;
    DWORD pendingFlags_ = 0;
    REFERENCE_TIME pendingStart_ = 0;
    REFERENCE_TIME pendingLength_ = 0;
    std::atomic<int32_t> brightness_{0};
    std::atomic<int32_t> contrast_{0};
};

// Objects alive, for the DLL's unloading.
extern std::atomic<long> liveEffects;

}  // namespace standins
