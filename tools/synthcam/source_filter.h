// The synthetic capture device: a live source filter with a "Capture" pin
// (and a "Preview" pin on the profile that has one) that paints the
// synthetic sky in real time, paced by the clock, with the interfaces a
// USB camera or grabber offers. Its profile and, for a grabber, the
// standard of its simulated signal come from the device's property bag.
#pragma once

#include "filters/base_classes.h"
#include "tools/synthcam/profiles.h"
#include "tools/synthcam/sky.h"

#include <atomic>
#include <thread>

namespace synthcam {

// {5E3B8C41-7D2A-4F6B-A1C9-2B8E4D7F6A10}
extern const CLSID CLSID_SynthCam;

class SynthCamFilter;

class SynthCamPin : public CBaseOutputPin, public IAMStreamConfig, public IKsPropertySet, public IAMDroppedFrames {
public:
    SynthCamPin(SynthCamFilter* filter, CCritSec* lock, const wchar_t* name, const GUID& category);
    ~SynthCamPin() override;

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    HRESULT CheckMediaType(const CMediaType* type) override;
    HRESULT GetMediaType(int position, CMediaType* type) override;
    HRESULT DecideBufferSize(IMemAllocator* allocator, ALLOCATOR_PROPERTIES* properties) override;
    HRESULT Active() override;
    HRESULT Inactive() override;

    // IAMStreamConfig
    HRESULT STDMETHODCALLTYPE SetFormat(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetFormat(AM_MEDIA_TYPE** type) override;
    HRESULT STDMETHODCALLTYPE GetNumberOfCapabilities(int* count, int* size) override;
    HRESULT STDMETHODCALLTYPE GetStreamCaps(int index, AM_MEDIA_TYPE** type, BYTE* caps) override;
    // IKsPropertySet
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, void* instance, DWORD instanceSize, void* data,
                                  DWORD dataSize) override;
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, void* instance, DWORD instanceSize, void* data,
                                  DWORD dataSize, DWORD* returned) override;
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;
    // IAMDroppedFrames
    HRESULT STDMETHODCALLTYPE GetNumDropped(long* dropped) override;
    HRESULT STDMETHODCALLTYPE GetNumNotDropped(long* notDropped) override;
    HRESULT STDMETHODCALLTYPE GetDroppedInfo(long size, long* frames, long* copied) override;
    HRESULT STDMETHODCALLTYPE GetAverageFrameSize(long* averageSize) override;

private:
    // The format the pin streams: the one set, else the profile's first.
    FormatSpec CurrentFormat() const;
    bool FindFormat(const AM_MEDIA_TYPE& type, FormatSpec* format) const;
    void StreamLoop();
    bool WaitUntil(LONGLONG due100ns);

    SynthCamFilter* camera_;
    GUID category_;
    bool formatSet_ = false;
    FormatSpec format_{};
    std::thread thread_;
    HANDLE stopEvent_ = nullptr;
    std::atomic<long> dropped_{0};
    std::atomic<long> notDropped_{0};
    SkyPainter painter_;
};

class SynthCamFilter : public CBaseFilter,
                       public IPersistPropertyBag,
                       public IAMVideoProcAmp,
                       public IAMAnalogVideoDecoder,
                       public IAMFilterMiscFlags {
public:
    explicit SynthCamFilter(IUnknown* owner);
    ~SynthCamFilter() override;

    DECLARE_IUNKNOWN
    HRESULT STDMETHODCALLTYPE NonDelegatingQueryInterface(REFIID iid, void** object) override;

    int GetPinCount() override;
    CBasePin* GetPin(int n) override;
    // A live source has nothing to show while paused.
    HRESULT STDMETHODCALLTYPE GetState(DWORD timeout, FILTER_STATE* state) override;

    // IPersistPropertyBag
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override { return CBaseFilter::GetClassID(clsid); }
    HRESULT STDMETHODCALLTYPE InitNew() override;
    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override;
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;
    // IAMVideoProcAmp
    HRESULT STDMETHODCALLTYPE GetRange(long property, long* minimum, long* maximum, long* step, long* defaultValue,
                                       long* flags) override;
    HRESULT STDMETHODCALLTYPE Set(long property, long value, long flags) override;
    HRESULT STDMETHODCALLTYPE Get(long property, long* value, long* flags) override;
    // IAMAnalogVideoDecoder
    HRESULT STDMETHODCALLTYPE get_AvailableTVFormats(long* standards) override;
    HRESULT STDMETHODCALLTYPE put_TVFormat(long standard) override;
    HRESULT STDMETHODCALLTYPE get_TVFormat(long* standard) override;
    HRESULT STDMETHODCALLTYPE get_HorizontalLocked(long* locked) override;
    HRESULT STDMETHODCALLTYPE put_VCRHorizontalLocking(long locking) override;
    HRESULT STDMETHODCALLTYPE get_VCRHorizontalLocking(long* locking) override;
    HRESULT STDMETHODCALLTYPE get_NumberOfLines(long* lines) override;
    HRESULT STDMETHODCALLTYPE put_OutputEnable(long enable) override;
    HRESULT STDMETHODCALLTYPE get_OutputEnable(long* enable) override;
    // IAMFilterMiscFlags
    ULONG STDMETHODCALLTYPE GetMiscFlags() override;

    const Profile& profile() const { return *profile_; }
    // Whether the decoder is set to the standard family of the signal: a
    // grabber that isn't delivers no frames at all.
    bool HasPicture() const;
    PictureAdjust Adjust() const;

    // The device's cable was pulled (synthcam's pull, from any process).
    bool IsPulled() const;
    HANDLE PulledEvent() const { return pulled_; }
    // Tells the graph, once, that the device is gone, as a capture driver
    // does when its device leaves the bus.
    void ReportDeviceLost();
    // Frames each run delivers (0: no limit), and the time a run takes to
    // start.
    long FrameLimit() const { return frameLimit_; }
    long StartDelayMs() const { return startDelayMs_; }
    long DropEvery() const { return dropEvery_; }

private:
    void MakePins();
    void DestroyPins();
    const PropertySpec* FindProperty(long property) const;
    // Writes the picture property values where other processes read them
    // (PublishedPropertyValue), once the plugging in is known.
    void PublishPropertyValues();

    CCritSec filterLock_;
    const Profile* profile_;
    char signal_ = 'N';
    std::atomic<long> standard_{0};
    long values_[10] = {};
    bool automatic_[10] = {};
    long vcrLocking_ = 0;
    long outputEnable_ = 1;
    SynthCamPin* capture_ = nullptr;
    SynthCamPin* preview_ = nullptr;
    HANDLE pulled_ = nullptr;
    std::wstring plug_;
    std::atomic<bool> lossReported_{false};
    long frameLimit_ = 0;
    long startDelayMs_ = 0;
    long dropEvery_ = 0;
};

}  // namespace synthcam
