#include "tools/synthcam/source_filter.h"

#include "tools/synthcam/registry.h"

#include <uuids.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace synthcam {

const CLSID CLSID_SynthCam = {0x5e3b8c41, 0x7d2a, 0x4f6b, {0xa1, 0xc9, 0x2b, 0x8e, 0x4d, 0x7f, 0x6a, 0x10}};

namespace {

constexpr LONGLONG kDefaultFrameTime = 333333;

LONGLONG Now100ns()
{
    static const LONGLONG frequency = [] {
        LARGE_INTEGER f;
        QueryPerformanceFrequency(&f);
        return f.QuadPart;
    }();
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    return static_cast<LONGLONG>(static_cast<double>(counter.QuadPart) * 10000000.0 / frequency);
}

void FillMediaType(const FormatSpec& format, CMediaType* type)
{
    type->InitMediaType();
    type->SetType(&MEDIATYPE_Video);
    GUID subtype = SubtypeGuid(format.subtype);
    type->SetSubtype(&subtype);
    type->SetFormatType(&FORMAT_VideoInfo);
    type->SetTemporalCompression(FALSE);
    int size = ImageSize(format.subtype, format.width, format.height);
    type->SetSampleSize(static_cast<ULONG>(size));
    auto* info = reinterpret_cast<VIDEOINFOHEADER*>(type->AllocFormatBuffer(sizeof(VIDEOINFOHEADER)));
    if (!info)
        return;
    LONGLONG frameTime = format.avgTimePerFrame > 0 ? format.avgTimePerFrame : kDefaultFrameTime;
    info->AvgTimePerFrame = format.avgTimePerFrame;
    info->dwBitRate = static_cast<DWORD>(static_cast<double>(size) * 8 * 10000000.0 / frameTime);
    info->bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info->bmiHeader.biWidth = format.width;
    info->bmiHeader.biHeight = format.height;
    info->bmiHeader.biPlanes = 1;
    info->bmiHeader.biBitCount = static_cast<WORD>(BitsPerPixel(format.subtype));
    info->bmiHeader.biCompression = SubtypeCompression(format.subtype);
    info->bmiHeader.biSizeImage = static_cast<DWORD>(size);
}

std::wstring ReadBagString(IPropertyBag* bag, const wchar_t* name)
{
    VARIANT value;
    VariantInit(&value);
    std::wstring text;
    if (SUCCEEDED(bag->Read(name, &value, nullptr)) && value.vt == VT_BSTR && value.bstrVal)
        text = value.bstrVal;
    VariantClear(&value);
    return text;
}

}  // namespace

// ------------------------------------------------------------- SynthCamPin

SynthCamPin::SynthCamPin(SynthCamFilter* filter, CCritSec* lock, const wchar_t* name, const GUID& category)
    : CBaseOutputPin(L"Synthetic camera pin", filter, lock, nullptr, name), camera_(filter), category_(category)
{
    // A camera streams the format it was set to, whatever the renderer
    // would like best.
    tryMyTypesFirst_ = true;
    stopEvent_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
}

SynthCamPin::~SynthCamPin()
{
    if (thread_.joinable()) {
        SetEvent(stopEvent_);
        thread_.join();
    }
    CloseHandle(stopEvent_);
}

HRESULT STDMETHODCALLTYPE SynthCamPin::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (iid == IID_IAMStreamConfig)
        return GetInterface(static_cast<IAMStreamConfig*>(this), object);
    if (iid == IID_IKsPropertySet)
        return GetInterface(static_cast<IKsPropertySet*>(this), object);
    if (iid == IID_IAMDroppedFrames && camera_->profile().droppedFrames)
        return GetInterface(static_cast<IAMDroppedFrames*>(this), object);
    return CBaseOutputPin::NonDelegatingQueryInterface(iid, object);
}

FormatSpec SynthCamPin::CurrentFormat() const
{
    return formatSet_ ? format_ : camera_->profile().formats.front();
}

bool SynthCamPin::FindFormat(const AM_MEDIA_TYPE& type, FormatSpec* format) const
{
    if (type.majortype != MEDIATYPE_Video || type.formattype != FORMAT_VideoInfo || !type.pbFormat ||
        type.cbFormat < sizeof(VIDEOINFOHEADER))
        return false;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat);
    for (const FormatSpec& offered : camera_->profile().formats) {
        if (SubtypeGuid(offered.subtype) != type.subtype || offered.width != info->bmiHeader.biWidth ||
            offered.height != std::abs(info->bmiHeader.biHeight))
            continue;
        *format = offered;
        // The rate may be any the device offers for this size; 0 keeps the
        // listed one.
        if (info->AvgTimePerFrame > 0)
            format->avgTimePerFrame = info->AvgTimePerFrame;
        return true;
    }
    return false;
}

HRESULT SynthCamPin::CheckMediaType(const CMediaType* type)
{
    FormatSpec format;
    if (!FindFormat(*type, &format))
        return VFW_E_TYPE_NOT_ACCEPTED;
    if (formatSet_) {
        FormatSpec current = CurrentFormat();
        if (format.subtype != current.subtype || format.width != current.width || format.height != current.height)
            return VFW_E_TYPE_NOT_ACCEPTED;
    }
    return S_OK;
}

HRESULT SynthCamPin::GetMediaType(int position, CMediaType* type)
{
    if (position < 0)
        return E_INVALIDARG;
    const auto& formats = camera_->profile().formats;
    if (formatSet_) {
        if (position > 0)
            return VFW_S_NO_MORE_ITEMS;
        FillMediaType(format_, type);
        return S_OK;
    }
    if (position >= static_cast<int>(formats.size()))
        return VFW_S_NO_MORE_ITEMS;
    FillMediaType(formats[position], type);
    return S_OK;
}

HRESULT SynthCamPin::DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties)
{
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(mediaType_.pbFormat);
    if (!info)
        return E_UNEXPECTED;
    // The platform's Smart Tee copies into buffers of the upstream allocator
    // and stalls behind a single one.
    properties->cBuffers = std::max(properties->cBuffers, 3L);
    properties->cbBuffer = std::max(properties->cbBuffer, static_cast<long>(info->bmiHeader.biSizeImage));
    if (properties->cbAlign <= 0)
        properties->cbAlign = 1;
    ALLOCATOR_PROPERTIES actual = {};
    HRESULT hr = allocator->SetProperties(properties, &actual);
    if (FAILED(hr))
        return hr;
    if (actual.cbBuffer < static_cast<long>(info->bmiHeader.biSizeImage) || actual.cBuffers < 2)
        return E_FAIL;
    return S_OK;
}

HRESULT SynthCamPin::Active()
{
    HRESULT hr = CBaseOutputPin::Active();
    if (FAILED(hr))
        return hr;
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(mediaType_.pbFormat);
    painter_.Configure(CurrentFormat().subtype, info->bmiHeader.biWidth, info->bmiHeader.biHeight);
    // A slow camera keeps the graph's start waiting, as its driver does.
    if (category_ == PIN_CATEGORY_CAPTURE && camera_->StartDelayMs() > 0)
        Sleep(static_cast<DWORD>(camera_->StartDelayMs()));
    ResetEvent(stopEvent_);
    thread_ = std::thread([this] { StreamLoop(); });
    return S_OK;
}

HRESULT SynthCamPin::Inactive()
{
    SetEvent(stopEvent_);
    // Decommitting wakes a stream thread that waits for a buffer.
    HRESULT hr = CBaseOutputPin::Inactive();
    if (thread_.joinable())
        thread_.join();
    return hr;
}

bool SynthCamPin::WaitUntil(LONGLONG due100ns)
{
    HANDLE events[2] = {stopEvent_, camera_->PulledEvent()};
    DWORD count = events[1] ? 2 : 1;
    for (;;) {
        LONGLONG left = due100ns - Now100ns();
        if (left <= 0)
            return true;
        DWORD ms = static_cast<DWORD>(left / 10000);
        DWORD woken = WaitForMultipleObjects(count, events, FALSE, ms > 0 ? ms : 0);
        if (woken == WAIT_OBJECT_0 || woken == WAIT_OBJECT_0 + 1)
            return false;
        if (ms == 0)
            Sleep(0);
    }
}

void SynthCamPin::StreamLoop()
{
    const auto* info = reinterpret_cast<const VIDEOINFOHEADER*>(mediaType_.pbFormat);
    const LONGLONG frameTime = info->AvgTimePerFrame > 0 ? info->AvgTimePerFrame : kDefaultFrameTime;
    const long frameSize = static_cast<long>(info->bmiHeader.biSizeImage);
    uint32_t counter = 0;
    long delivered = 0;
    bool running = false;
    LONGLONG origin = 0;  // the local time of slot 0 of this run
    LONGLONG slot = 0;
    bool discontinuity = true;

    while (WaitForSingleObject(stopEvent_, 0) != WAIT_OBJECT_0) {
        if (camera_->IsPulled()) {
            // Gone from the bus: no frame comes any more, whatever the graph
            // does, and the graph hears of it once.
            camera_->ReportDeviceLost();
            WaitForSingleObject(stopEvent_, INFINITE);
            break;
        }
        if (camera_->State() != State_Running) {
            running = false;
            WaitForSingleObject(stopEvent_, 5);
            continue;
        }
        if (!running) {
            running = true;
            // The graph's start time lies a moment ahead of Run: the first
            // frame is taken at stream time 0, as a driver stamps it.
            REFERENCE_TIME streamTime = 0;
            LONGLONG ahead = SUCCEEDED(camera_->StreamTime(streamTime)) && streamTime < 0 ? -streamTime : 0;
            origin = Now100ns() + ahead;
            slot = 0;
            discontinuity = true;
        }
        if (!WaitUntil(origin + slot * frameTime))
            continue;
        if (!camera_->HasPicture() || (camera_->FrameLimit() > 0 && delivered >= camera_->FrameLimit())) {
            // A grabber on the wrong standard: no sync, no frames. A device
            // with a frame limit is silent after its count.
            ++slot;
            continue;
        }

        if (camera_->DropEvery() > 0 && slot % camera_->DropEvery() == camera_->DropEvery() - 1) {
            // A frame the camera loses by itself, and counts.
            ++dropped_;
            ++counter;
            ++slot;
            discontinuity = true;
            continue;
        }
        IMediaSample* sample = nullptr;
        HRESULT hr = GetDeliveryBuffer(&sample, nullptr, nullptr, AM_GBF_NOWAIT);
        // Slots that passed while the buffer was awaited are frames lost.
        LONGLONG late = (Now100ns() - (origin + slot * frameTime)) / frameTime;
        if (late > 0) {
            dropped_ += static_cast<long>(late);
            counter += static_cast<uint32_t>(late);
            slot += late;
            discontinuity = true;
        }
        if (FAILED(hr) || !sample) {
            if (WaitForSingleObject(stopEvent_, 0) == WAIT_OBJECT_0)
                break;
            // Downstream holds every buffer: this frame is lost.
            ++dropped_;
            ++counter;
            ++slot;
            discontinuity = true;
            continue;
        }
        BYTE* data = nullptr;
        sample->GetPointer(&data);
        if (sample->GetSize() >= frameSize) {
            FrameStamp stamp;
            stamp.counter = counter;
            stamp.utcMs = UtcMsSince2020Now();
            painter_.Paint(data, stamp, camera_->Adjust());
            REFERENCE_TIME start = 0;
            if (FAILED(camera_->StreamTime(start)))
                start = Now100ns() - origin;
            REFERENCE_TIME stop = start + frameTime;
            sample->SetTime(&start, &stop);
            sample->SetActualDataLength(frameSize);
            sample->SetSyncPoint(TRUE);
            sample->SetDiscontinuity(discontinuity ? TRUE : FALSE);
            discontinuity = false;
            hr = Deliver(sample);
            if (SUCCEEDED(hr))
                ++notDropped_;
            else
                ++dropped_;
            ++delivered;
        }
        sample->Release();
        ++counter;
        ++slot;
    }
}

HRESULT STDMETHODCALLTYPE SynthCamPin::SetFormat(AM_MEDIA_TYPE* type)
{
    if (!type)
        return E_POINTER;
    CAutoLock lock(lock_);
    if (!IsStopped())
        return VFW_E_NOT_STOPPED;
    FormatSpec format;
    if (!FindFormat(*type, &format))
        return VFW_E_INVALIDMEDIATYPE;
    format_ = format;
    formatSet_ = true;
    IncrementTypeVersion();
    if (IsConnected()) {
        // As a driver does: the new format takes effect by a reconnection.
        IFilterGraph2* graph = nullptr;
        if (!filter_->Graph() ||
            FAILED(filter_->Graph()->QueryInterface(IID_IFilterGraph2, reinterpret_cast<void**>(&graph))))
            return VFW_E_NOT_CONNECTED;
        CMediaType wanted;
        FillMediaType(format_, &wanted);
        HRESULT hr = graph->ReconnectEx(static_cast<IPin*>(this), &wanted);
        graph->Release();
        return hr;
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetFormat(AM_MEDIA_TYPE** type)
{
    if (!type)
        return E_POINTER;
    CMediaType current;
    if (IsConnected())
        current = mediaType_;
    else
        FillMediaType(CurrentFormat(), &current);
    *type = CreateMediaType(&current);
    return *type ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetNumberOfCapabilities(int* count, int* size)
{
    if (!count || !size)
        return E_POINTER;
    *count = static_cast<int>(camera_->profile().formats.size());
    *size = sizeof(VIDEO_STREAM_CONFIG_CAPS);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetStreamCaps(int index, AM_MEDIA_TYPE** type, BYTE* capsBytes)
{
    if (!type || !capsBytes)
        return E_POINTER;
    const auto& formats = camera_->profile().formats;
    if (index < 0 || index >= static_cast<int>(formats.size()))
        return S_FALSE;
    const FormatSpec& format = formats[index];
    CMediaType offered;
    FillMediaType(format, &offered);
    *type = CreateMediaType(&offered);
    if (!*type)
        return E_OUTOFMEMORY;
    auto* caps = reinterpret_cast<VIDEO_STREAM_CONFIG_CAPS*>(capsBytes);
    std::memset(caps, 0, sizeof(*caps));
    caps->guid = FORMAT_VideoInfo;
    caps->VideoStandard = camera_->profile().analog ? camera_->profile().availableStandards : 0;
    caps->InputSize = caps->MinCroppingSize = caps->MaxCroppingSize = {format.width, format.height};
    caps->MinOutputSize = caps->MaxOutputSize = {format.width, format.height};
    caps->CropGranularityX = caps->CropGranularityY = 1;
    caps->CropAlignX = caps->CropAlignY = 1;
    caps->OutputGranularityX = caps->OutputGranularityY = 1;
    LONGLONG frameTime = format.avgTimePerFrame;
    caps->MinFrameInterval = frameTime;
    caps->MaxFrameInterval = frameTime > 0 ? frameTime * 2 : 0;
    LONG bits = ImageSize(format.subtype, format.width, format.height) * 8;
    LONGLONG rate = frameTime > 0 ? frameTime : kDefaultFrameTime;
    caps->MaxBitsPerSecond = static_cast<LONG>(bits * (10000000.0 / rate));
    caps->MinBitsPerSecond = caps->MaxBitsPerSecond / 2;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::Set(REFGUID, DWORD, void*, DWORD, void*, DWORD)
{
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::Get(REFGUID set, DWORD id, void*, DWORD, void* data, DWORD dataSize,
                                           DWORD* returned)
{
    if (set != AMPROPSETID_Pin)
        return E_PROP_SET_UNSUPPORTED;
    if (id != AMPROPERTY_PIN_CATEGORY)
        return E_PROP_ID_UNSUPPORTED;
    if (!data && !returned)
        return E_POINTER;
    if (returned)
        *returned = sizeof(GUID);
    if (!data)
        return S_OK;
    if (dataSize < sizeof(GUID))
        return E_UNEXPECTED;
    *static_cast<GUID*>(data) = category_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::QuerySupported(REFGUID set, DWORD id, DWORD* support)
{
    if (set != AMPROPSETID_Pin)
        return E_PROP_SET_UNSUPPORTED;
    if (id != AMPROPERTY_PIN_CATEGORY)
        return E_PROP_ID_UNSUPPORTED;
    if (support)
        *support = KSPROPERTY_SUPPORT_GET;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetNumDropped(long* dropped)
{
    if (!dropped)
        return E_POINTER;
    *dropped = dropped_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetNumNotDropped(long* notDropped)
{
    if (!notDropped)
        return E_POINTER;
    *notDropped = notDropped_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetDroppedInfo(long size, long* frames, long* copied)
{
    if (copied)
        *copied = 0;
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE SynthCamPin::GetAverageFrameSize(long* averageSize)
{
    if (!averageSize)
        return E_POINTER;
    FormatSpec format = CurrentFormat();
    *averageSize = ImageSize(format.subtype, format.width, format.height);
    return S_OK;
}

// ---------------------------------------------------------- SynthCamFilter

SynthCamFilter::SynthCamFilter(IUnknown* owner)
    : CBaseFilter(L"Synthetic camera", owner, &filterLock_, CLSID_SynthCam), profile_(FindProfile(L"webcam"))
{
    MakePins();
}

SynthCamFilter::~SynthCamFilter()
{
    DestroyPins();
    if (pulled_)
        CloseHandle(pulled_);
}

void SynthCamFilter::MakePins()
{
    DestroyPins();
    capture_ = new SynthCamPin(this, &filterLock_, L"Capture", PIN_CATEGORY_CAPTURE);
    if (profile_->previewPin)
        preview_ = new SynthCamPin(this, &filterLock_, L"Preview", PIN_CATEGORY_PREVIEW);
    for (const PropertySpec& property : profile_->properties) {
        values_[property.property] = property.defaultValue;
        automatic_[property.property] = property.automatic;
    }
    standard_ = profile_->initialStandard;
    IncrementPinVersion();
}

void SynthCamFilter::DestroyPins()
{
    delete capture_;
    delete preview_;
    capture_ = preview_ = nullptr;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::NonDelegatingQueryInterface(REFIID iid, void** object)
{
    if (iid == IID_IPersistPropertyBag)
        return GetInterface(static_cast<IPersistPropertyBag*>(this), object);
    if (iid == IID_IAMFilterMiscFlags)
        return GetInterface(static_cast<IAMFilterMiscFlags*>(this), object);
    if (iid == IID_IAMVideoProcAmp && !profile_->properties.empty())
        return GetInterface(static_cast<IAMVideoProcAmp*>(this), object);
    if (iid == IID_IAMAnalogVideoDecoder && profile_->analog)
        return GetInterface(static_cast<IAMAnalogVideoDecoder*>(this), object);
    // Some callers look for the stream interfaces on the filter itself.
    if (iid == IID_IAMStreamConfig || iid == IID_IAMDroppedFrames)
        return capture_->NonDelegatingQueryInterface(iid, object);
    return CBaseFilter::NonDelegatingQueryInterface(iid, object);
}

int SynthCamFilter::GetPinCount()
{
    return preview_ ? 2 : 1;
}

CBasePin* SynthCamFilter::GetPin(int n)
{
    if (n == 0)
        return capture_;
    if (n == 1)
        return preview_;
    return nullptr;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::GetState(DWORD timeout, FILTER_STATE* state)
{
    HRESULT hr = CBaseFilter::GetState(timeout, state);
    if (SUCCEEDED(hr) && *state == State_Paused)
        return VFW_S_CANT_CUE;
    return hr;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::InitNew()
{
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::Load(IPropertyBag* bag, IErrorLog* log)
{
    if (!bag)
        return E_POINTER;
    CAutoLock lock(&filterLock_);
    if (!IsStopped() || capture_->IsConnected() || (preview_ && preview_->IsConnected()))
        return VFW_E_WRONG_STATE;
    const Profile* profile = FindProfile(ReadBagString(bag, L"Profile"));
    if (profile)
        profile_ = profile;
    std::wstring signal = ReadBagString(bag, L"Signal");
    signal_ = (signal == L"pal" || signal == L"PAL") ? 'P' : 'N';
    frameLimit_ = wcstol(ReadBagString(bag, L"FrameLimit").c_str(), nullptr, 10);
    startDelayMs_ = wcstol(ReadBagString(bag, L"StartDelay").c_str(), nullptr, 10);
    dropEvery_ = wcstol(ReadBagString(bag, L"DropEvery").c_str(), nullptr, 10);
    // The event outlives the device's entry: a pull signals it and takes
    // the entry away, and this filter keeps hearing of it.
    std::wstring plug = ReadBagString(bag, L"Plug");
    if (!plug.empty() && !pulled_)
        pulled_ = CreateEventW(nullptr, TRUE, FALSE, PulledEventName(plug).c_str());
    plug_ = plug;
    MakePins();
    PublishPropertyValues();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll)
{
    return E_NOTIMPL;
}

const PropertySpec* SynthCamFilter::FindProperty(long property) const
{
    for (const PropertySpec& spec : profile_->properties)
        if (spec.property == property)
            return &spec;
    return nullptr;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::GetRange(long property, long* minimum, long* maximum, long* step,
                                                   long* defaultValue, long* flags)
{
    if (!minimum || !maximum || !step || !defaultValue || !flags)
        return E_POINTER;
    const PropertySpec* spec = FindProperty(property);
    if (!spec)
        return E_PROP_ID_UNSUPPORTED;
    *minimum = spec->minimum;
    *maximum = spec->maximum;
    *step = spec->step;
    *defaultValue = spec->defaultValue;
    *flags = VideoProcAmp_Flags_Manual | (spec->automatic ? VideoProcAmp_Flags_Auto : 0);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::Set(long property, long value, long flags)
{
    const PropertySpec* spec = FindProperty(property);
    if (!spec)
        return E_PROP_ID_UNSUPPORTED;
    if (value < spec->minimum || value > spec->maximum)
        return E_INVALIDARG;
    CAutoLock lock(&filterLock_);
    values_[property] = value;
    automatic_[property] = (flags & VideoProcAmp_Flags_Auto) != 0;
    PublishPropertyValues();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::Get(long property, long* value, long* flags)
{
    if (!value || !flags)
        return E_POINTER;
    const PropertySpec* spec = FindProperty(property);
    if (!spec)
        return E_PROP_ID_UNSUPPORTED;
    CAutoLock lock(&filterLock_);
    *value = values_[property];
    *flags = automatic_[property] ? VideoProcAmp_Flags_Auto : VideoProcAmp_Flags_Manual;
    return S_OK;
}

void SynthCamFilter::PublishPropertyValues()
{
    if (plug_.empty())
        return;
    for (const PropertySpec& spec : profile_->properties)
        PublishPropertyValue(plug_, spec.property, values_[spec.property]);
}

PictureAdjust SynthCamFilter::Adjust() const
{
    PictureAdjust adjust;
    if (const PropertySpec* brightness = FindProperty(VideoProcAmp_Brightness))
        adjust.offset = values_[VideoProcAmp_Brightness] - brightness->defaultValue;
    if (const PropertySpec* contrast = FindProperty(VideoProcAmp_Contrast); contrast && contrast->defaultValue > 0)
        adjust.gain = static_cast<double>(values_[VideoProcAmp_Contrast]) / contrast->defaultValue;
    if (FindProperty(VideoProcAmp_Gain))
        adjust.gain *= 1.0 + values_[VideoProcAmp_Gain] / 50.0;
    return adjust;
}

bool SynthCamFilter::IsPulled() const
{
    return pulled_ && WaitForSingleObject(pulled_, 0) == WAIT_OBJECT_0;
}

void SynthCamFilter::ReportDeviceLost()
{
    if (lossReported_.exchange(true))
        return;
    // As a capture driver reports it: the device's identity IUnknown, and 0
    // for a removal.
    NotifyEvent(EC_DEVICE_LOST, reinterpret_cast<LONG_PTR>(GetOwner()), 0);
}

bool SynthCamFilter::HasPicture() const
{
    if (!profile_->analog)
        return true;
    return StandardFamily(standard_) == signal_;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::get_AvailableTVFormats(long* standards)
{
    if (!standards)
        return E_POINTER;
    *standards = profile_->availableStandards;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::put_TVFormat(long standard)
{
    if (!(standard & profile_->availableStandards))
        return E_INVALIDARG;
    standard_ = standard;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::get_TVFormat(long* standard)
{
    if (!standard)
        return E_POINTER;
    *standard = standard_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::get_HorizontalLocked(long* locked)
{
    if (!locked)
        return E_POINTER;
    *locked = HasPicture() ? 1 : 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::put_VCRHorizontalLocking(long locking)
{
    vcrLocking_ = locking;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::get_VCRHorizontalLocking(long* locking)
{
    if (!locking)
        return E_POINTER;
    *locking = vcrLocking_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::get_NumberOfLines(long* lines)
{
    if (!lines)
        return E_POINTER;
    *lines = StandardFamily(standard_) == 'N' ? 525 : 625;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::put_OutputEnable(long enable)
{
    outputEnable_ = enable;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SynthCamFilter::get_OutputEnable(long* enable)
{
    if (!enable)
        return E_POINTER;
    *enable = outputEnable_;
    return S_OK;
}

ULONG STDMETHODCALLTYPE SynthCamFilter::GetMiscFlags()
{
    return AM_FILTER_MISC_FLAGS_IS_SOURCE;
}

}  // namespace synthcam
