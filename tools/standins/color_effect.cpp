#include "tools/standins/color_effect.h"

#include <dmo.h>
#include <dshow.h>
#include <uuids.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace standins {

const CLSID CLSID_ColorControlStandIn = {0x6f4a2c91, 0x3b7e, 0x4d58, {0x9a, 0x1c, 0x7e, 0x2b, 0x5d, 0x8f, 0x4c, 0x31}};

std::atomic<long> liveEffects{0};

namespace {

// The effect's two values, under the format identifier its users know.
constexpr GUID kValueFormat = {0x174fb0ec, 0x2695, 0x476c, {0x88, 0xaa, 0xd2, 0xb4, 0x1c, 0xe7, 0x5e, 0x67}};
constexpr DWORD kBrightnessNumber = 1;
constexpr DWORD kContrastNumber = 2;

// Stream flags that mingw's headers leave out, as the platform numbers them.
constexpr DWORD kWholeSamples = 0x1;
constexpr DWORD kSingleSamplePerBuffer = 0x2;
constexpr DWORD kFixedSampleSize = 0x4;

bool Accepted(const DMO_MEDIA_TYPE& type)
{
    if (type.majortype != MEDIATYPE_Video || type.formattype != FORMAT_VideoInfo || !type.pbFormat ||
        type.cbFormat < sizeof(VIDEOINFOHEADER))
        return false;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
    if (info->bmiHeader.biWidth <= 0 || info->bmiHeader.biHeight == 0)
        return false;
    return (type.subtype == MEDIASUBTYPE_YUY2 && info->bmiHeader.biBitCount == 16) ||
        (type.subtype == MEDIASUBTYPE_RGB24 && info->bmiHeader.biBitCount == 24) ||
        (type.subtype == MEDIASUBTYPE_ARGB32 && info->bmiHeader.biBitCount == 32);
}

bool SamePicture(const DMO_MEDIA_TYPE& a, const DMO_MEDIA_TYPE& b)
{
    const auto* x = reinterpret_cast<const VIDEOINFOHEADER*>(a.pbFormat);
    const auto* y = reinterpret_cast<const VIDEOINFOHEADER*>(b.pbFormat);
    return a.subtype == b.subtype && x->bmiHeader.biWidth == y->bmiHeader.biWidth &&
        x->bmiHeader.biHeight == y->bmiHeader.biHeight;
}

// The platform's DMO runtime copies types this way too; its declarations
// in mingw's headers lack C linkage, so the two steps are written here.
HRESULT CopyType(DMO_MEDIA_TYPE* target, const DMO_MEDIA_TYPE* source)
{
    if (!target || !source)
        return E_POINTER;
    *target = *source;
    target->pbFormat = nullptr;
    if (source->cbFormat && source->pbFormat) {
        target->pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(source->cbFormat));
        if (!target->pbFormat)
            return E_OUTOFMEMORY;
        std::memcpy(target->pbFormat, source->pbFormat, source->cbFormat);
    }
    if (target->pUnk)
        target->pUnk->AddRef();
    return S_OK;
}

void ClearType(DMO_MEDIA_TYPE& type, bool& set)
{
    if (set) {
        CoTaskMemFree(type.pbFormat);
        if (type.pUnk)
            type.pUnk->Release();
    }
    type = DMO_MEDIA_TYPE{};
    set = false;
}

}  // namespace

uint8_t AdjustedLevel(uint8_t level, int32_t brightness, int32_t contrast)
{
    int32_t scaled = (static_cast<int32_t>(level) - 16) * (contrast + 128) / 128 + 16 + brightness;
    return static_cast<uint8_t>(std::clamp(scaled, 0, 255));
}

HRESULT ColorEffect::Create(IUnknown* outer, REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    // An aggregated object hands out only its own IUnknown.
    if (outer && iid != IID_IUnknown)
        return CLASS_E_NOAGGREGATION;
    auto* effect = new (std::nothrow) ColorEffect(outer);
    if (!effect)
        return E_OUTOFMEMORY;
    HRESULT hr = effect->inner_.QueryInterface(iid, object);
    effect->inner_.Release();
    return hr;
}

ColorEffect::ColorEffect(IUnknown* outer) : inner_(this), outer_(outer ? outer : &inner_)
{
    InitializeCriticalSection(&lock_);
    ++liveEffects;
}

ColorEffect::~ColorEffect()
{
    if (pending_)
        pending_->Release();
    ClearType(inputType_, inputSet_);
    ClearType(outputType_, outputSet_);
    DeleteCriticalSection(&lock_);
    --liveEffects;
}

HRESULT STDMETHODCALLTYPE ColorEffect::Inner::QueryInterface(REFIID iid, void** object)
{
    if (!object)
        return E_POINTER;
    if (iid == IID_IUnknown)
        *object = static_cast<IUnknown*>(this);
    else if (iid == IID_IMediaObject)
        *object = static_cast<IMediaObject*>(effect_);
    else if (iid == IID_IPropertyStore)
        *object = static_cast<IPropertyStore*>(effect_);
    else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    static_cast<IUnknown*>(*object)->AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE ColorEffect::Inner::AddRef()
{
    return ++effect_->references_;
}

ULONG STDMETHODCALLTYPE ColorEffect::Inner::Release()
{
    ULONG left = --effect_->references_;
    if (left == 0)
        delete effect_;
    return left;
}

HRESULT STDMETHODCALLTYPE ColorEffect::QueryInterface(REFIID iid, void** object)
{
    return outer_->QueryInterface(iid, object);
}

ULONG STDMETHODCALLTYPE ColorEffect::AddRef()
{
    return outer_->AddRef();
}

ULONG STDMETHODCALLTYPE ColorEffect::Release()
{
    return outer_->Release();
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetStreamCount(DWORD* inputs, DWORD* outputs)
{
    if (!inputs || !outputs)
        return E_POINTER;
    *inputs = 1;
    *outputs = 1;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetInputStreamInfo(DWORD stream, DWORD* flags)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    if (!flags)
        return E_POINTER;
    *flags = kWholeSamples | kSingleSamplePerBuffer | kFixedSampleSize;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetOutputStreamInfo(DWORD stream, DWORD* flags)
{
    // Frames go out as they came in, one whole frame a buffer.
    return GetInputStreamInfo(stream, flags);
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetInputType(DWORD stream, DWORD index, DMO_MEDIA_TYPE* type)
{
    // Any of the accepted types comes from upstream; none is proposed.
    return stream != 0 ? DMO_E_INVALIDSTREAMINDEX : DMO_E_NO_MORE_ITEMS;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetOutputType(DWORD stream, DWORD index, DMO_MEDIA_TYPE* type)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    EnterCriticalSection(&lock_);
    HRESULT hr = !inputSet_ ? DMO_E_TYPE_NOT_SET : index > 0 ? DMO_E_NO_MORE_ITEMS : S_OK;
    if (hr == S_OK && type)
        hr = CopyType(type, &inputType_);
    LeaveCriticalSection(&lock_);
    return hr;
}

HRESULT STDMETHODCALLTYPE ColorEffect::SetInputType(DWORD stream, const DMO_MEDIA_TYPE* type, DWORD flags)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    EnterCriticalSection(&lock_);
    HRESULT hr = S_OK;
    if (flags & DMO_SET_TYPEF_CLEAR) {
        ClearType(inputType_, inputSet_);
        ClearType(outputType_, outputSet_);
    } else if (!type || !Accepted(*type)) {
        hr = DMO_E_TYPE_NOT_ACCEPTED;
    } else if (!(flags & DMO_SET_TYPEF_TEST_ONLY)) {
        ClearType(inputType_, inputSet_);
        ClearType(outputType_, outputSet_);
        hr = CopyType(&inputType_, type);
        inputSet_ = SUCCEEDED(hr);
    }
    LeaveCriticalSection(&lock_);
    return hr;
}

HRESULT STDMETHODCALLTYPE ColorEffect::SetOutputType(DWORD stream, const DMO_MEDIA_TYPE* type, DWORD flags)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    EnterCriticalSection(&lock_);
    HRESULT hr = S_OK;
    if (flags & DMO_SET_TYPEF_CLEAR) {
        ClearType(outputType_, outputSet_);
    } else if (!inputSet_) {
        hr = DMO_E_TYPE_NOT_SET;
    } else if (!type || !Accepted(*type) || !SamePicture(*type, inputType_)) {
        // The effect changes levels only: what goes out is what came in.
        hr = DMO_E_TYPE_NOT_ACCEPTED;
    } else if (!(flags & DMO_SET_TYPEF_TEST_ONLY)) {
        ClearType(outputType_, outputSet_);
        hr = CopyType(&outputType_, type);
        outputSet_ = SUCCEEDED(hr);
    }
    LeaveCriticalSection(&lock_);
    return hr;
}

HRESULT ColorEffect::CurrentType(DWORD stream, const DMO_MEDIA_TYPE& held, const bool& set, DMO_MEDIA_TYPE* type)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    EnterCriticalSection(&lock_);
    HRESULT hr = set ? CopyType(type, &held) : DMO_E_TYPE_NOT_SET;
    LeaveCriticalSection(&lock_);
    return hr;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetInputCurrentType(DWORD stream, DMO_MEDIA_TYPE* type)
{
    return CurrentType(stream, inputType_, inputSet_, type);
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetOutputCurrentType(DWORD stream, DMO_MEDIA_TYPE* type)
{
    return CurrentType(stream, outputType_, outputSet_, type);
}

bool ColorEffect::Geometry(int* bytesPerPixel, int32_t* rowStride, int32_t* rows) const
{
    if (!inputSet_)
        return false;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(inputType_.pbFormat);
    int32_t bits = info->bmiHeader.biBitCount;
    *bytesPerPixel = bits / 8;
    *rowStride = ((bits * info->bmiHeader.biWidth + 31) >> 3) & ~3;
    *rows = std::abs(info->bmiHeader.biHeight);
    return true;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetInputSizeInfo(DWORD stream, DWORD* size, DWORD* lookahead, DWORD* alignment)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    if (!size || !lookahead || !alignment)
        return E_POINTER;
    EnterCriticalSection(&lock_);
    int bytesPerPixel = 0;
    int32_t stride = 0, rows = 0;
    bool known = Geometry(&bytesPerPixel, &stride, &rows);
    LeaveCriticalSection(&lock_);
    if (!known)
        return DMO_E_TYPE_NOT_SET;
    *size = static_cast<DWORD>(stride) * static_cast<DWORD>(rows);
    *lookahead = 0;
    *alignment = 1;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetOutputSizeInfo(DWORD stream, DWORD* size, DWORD* alignment)
{
    DWORD lookahead = 0;
    return GetInputSizeInfo(stream, size, &lookahead, alignment);
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetInputMaxLatency(DWORD, REFERENCE_TIME*)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE ColorEffect::SetInputMaxLatency(DWORD, REFERENCE_TIME)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE ColorEffect::Flush()
{
    EnterCriticalSection(&lock_);
    if (pending_)
        pending_->Release();
    pending_ = nullptr;
    LeaveCriticalSection(&lock_);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::Discontinuity(DWORD stream)
{
    return stream != 0 ? DMO_E_INVALIDSTREAMINDEX : S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::AllocateStreamingResources()
{
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::FreeStreamingResources()
{
    return Flush();
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetInputStatus(DWORD stream, DWORD* flags)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    if (!flags)
        return E_POINTER;
    EnterCriticalSection(&lock_);
    *flags = pending_ ? 0 : DMO_INPUT_STATUSF_ACCEPT_DATA;
    LeaveCriticalSection(&lock_);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::ProcessInput(DWORD stream, IMediaBuffer* buffer, DWORD flags,
                                                    REFERENCE_TIME start, REFERENCE_TIME length)
{
    if (stream != 0)
        return DMO_E_INVALIDSTREAMINDEX;
    if (!buffer)
        return E_POINTER;
    EnterCriticalSection(&lock_);
    HRESULT hr = S_OK;
    if (!inputSet_ || !outputSet_) {
        hr = DMO_E_TYPE_NOT_SET;
    } else if (pending_) {
        hr = DMO_E_NOTACCEPTING;
    } else {
        pending_ = buffer;
        pending_->AddRef();
        pendingFlags_ = flags;
        pendingStart_ = start;
        pendingLength_ = length;
    }
    LeaveCriticalSection(&lock_);
    return hr;
}

HRESULT STDMETHODCALLTYPE ColorEffect::ProcessOutput(DWORD flags, DWORD count, DMO_OUTPUT_DATA_BUFFER* buffers,
                                                     DWORD* status)
{
    if (count != 1 || !buffers || !status)
        return E_INVALIDARG;
    *status = 0;
    buffers[0].dwStatus = 0;
    EnterCriticalSection(&lock_);
    if (!pending_) {
        LeaveCriticalSection(&lock_);
        return S_FALSE;
    }
    IMediaBuffer* input = pending_;
    pending_ = nullptr;
    HRESULT hr = S_OK;
    int bytesPerPixel = 0;
    int32_t stride = 0, rows = 0;
    Geometry(&bytesPerPixel, &stride, &rows);
    bool yuy2 = inputType_.subtype == MEDIASUBTYPE_YUY2;
    LeaveCriticalSection(&lock_);

    BYTE* from = nullptr;
    DWORD fromLength = 0;
    BYTE* to = nullptr;
    DWORD toLength = 0, toCapacity = 0;
    if (!buffers[0].pBuffer) {
        hr = S_FALSE;
    } else if (FAILED(hr = input->GetBufferAndLength(&from, &fromLength)) ||
               FAILED(hr = buffers[0].pBuffer->GetBufferAndLength(&to, &toLength)) ||
               FAILED(hr = buffers[0].pBuffer->GetMaxLength(&toCapacity))) {
    } else {
        DWORD length = std::min(fromLength, toCapacity);
        uint8_t table[256];
        int32_t brightness = brightness_, contrast = contrast_;
        for (int level = 0; level < 256; ++level)
            table[level] = AdjustedLevel(static_cast<uint8_t>(level), brightness, contrast);
        std::memcpy(to, from, length);
        // Brightness bytes: the two lumas of a YUY2 pair, the three colours
        // of an RGB pixel; chroma and alpha pass unchanged.
        size_t whole = stride > 0 ? std::min<size_t>(length / static_cast<size_t>(stride), rows) : 0;
        int32_t step = yuy2 ? 4 : bytesPerPixel;
        for (size_t row = 0; row < whole; ++row) {
            BYTE* line = to + row * static_cast<size_t>(stride);
            for (int32_t i = 0; i + step <= stride; i += step) {
                if (yuy2) {
                    line[i] = table[line[i]];
                    line[i + 2] = table[line[i + 2]];
                } else {
                    line[i] = table[line[i]];
                    line[i + 1] = table[line[i + 1]];
                    line[i + 2] = table[line[i + 2]];
                }
            }
        }
        buffers[0].pBuffer->SetLength(length);
        if (pendingFlags_ & DMO_INPUT_DATA_BUFFERF_SYNCPOINT)
            buffers[0].dwStatus |= DMO_OUTPUT_DATA_BUFFERF_SYNCPOINT;
        if (pendingFlags_ & DMO_INPUT_DATA_BUFFERF_TIME) {
            buffers[0].dwStatus |= DMO_OUTPUT_DATA_BUFFERF_TIME;
            buffers[0].rtTimestamp = pendingStart_;
        }
        if (pendingFlags_ & DMO_INPUT_DATA_BUFFERF_TIMELENGTH) {
            buffers[0].dwStatus |= DMO_OUTPUT_DATA_BUFFERF_TIMELENGTH;
            buffers[0].rtTimelength = pendingLength_;
        }
    }
    input->Release();
    return hr;
}

HRESULT STDMETHODCALLTYPE ColorEffect::Lock(LONG)
{
    return S_OK;
}

std::atomic<int32_t>* ColorEffect::ValueOf(REFPROPERTYKEY key)
{
    if (key.fmtid != kValueFormat)
        return nullptr;
    if (key.pid == kBrightnessNumber)
        return &brightness_;
    if (key.pid == kContrastNumber)
        return &contrast_;
    return nullptr;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetCount(DWORD* count)
{
    if (!count)
        return E_POINTER;
    *count = 2;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetAt(DWORD index, PROPERTYKEY* key)
{
    if (!key)
        return E_POINTER;
    if (index > 1)
        return E_INVALIDARG;
    *key = PROPERTYKEY{kValueFormat, index == 0 ? kBrightnessNumber : kContrastNumber};
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::GetValue(REFPROPERTYKEY key, PROPVARIANT* value)
{
    if (!value)
        return E_POINTER;
    PropVariantInit(value);
    std::atomic<int32_t>* held = ValueOf(key);
    if (!held)
        return S_OK;  // an unknown key has no value
    value->vt = VT_I4;
    value->lVal = *held;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::SetValue(REFPROPERTYKEY key, REFPROPVARIANT value)
{
    std::atomic<int32_t>* held = ValueOf(key);
    if (!held)
        return E_INVALIDARG;
    // Only the type the store gives out is taken back, and only in range.
    if (value.vt != VT_I4 || value.lVal < -127 || value.lVal > 127)
        return E_INVALIDARG;
    *held = value.lVal;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ColorEffect::Commit()
{
    return S_OK;
}

}  // namespace standins
