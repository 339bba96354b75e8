// AM_MEDIA_TYPE with its format block owned: copies deep-copy the block and
// the destructor frees it. The free functions serve types that cross COM
// boundaries (allocated with CoTaskMemAlloc, freed by whoever receives them).
#pragma once

#include <windows.h>
#include <strmif.h>

class CMediaType : public AM_MEDIA_TYPE {
public:
    CMediaType();
    explicit CMediaType(const GUID* majorType);
    CMediaType(const AM_MEDIA_TYPE& type);
    CMediaType(const CMediaType& type);
    ~CMediaType();

    CMediaType& operator=(const AM_MEDIA_TYPE& type);
    CMediaType& operator=(const CMediaType& type);
    bool operator==(const CMediaType& other) const;
    bool operator!=(const CMediaType& other) const { return !(*this == other); }

    HRESULT Set(const AM_MEDIA_TYPE& type);
    bool IsValid() const { return majortype != GUID_NULL; }
    const GUID* Type() const { return &majortype; }
    const GUID* Subtype() const { return &subtype; }
    const GUID* FormatType() const { return &formattype; }
    BYTE* Format() const { return pbFormat; }
    ULONG FormatLength() const { return cbFormat; }

    void SetType(const GUID* type) { majortype = *type; }
    void SetSubtype(const GUID* type) { subtype = *type; }
    void SetFormatType(const GUID* type) { formattype = *type; }
    void SetSampleSize(ULONG size);
    void SetVariableSize() { bFixedSizeSamples = FALSE; }
    void SetTemporalCompression(BOOL compressed) { bTemporalCompression = compressed; }
    // Replaces the format block by a copy of the given bytes.
    bool SetFormat(const BYTE* format, ULONG length);
    // Replaces the format block by a zeroed one of the given length.
    BYTE* AllocFormatBuffer(ULONG length);
    void ResetFormatBuffer();
    void InitMediaType();

    bool IsPartiallySpecified() const;
    // True where every field this type leaves open (GUID_NULL) may be
    // anything in the other.
    bool MatchesPartial(const CMediaType* partial) const;
};

// Frees the format block and the held interface, not the structure itself.
void FreeMediaType(AM_MEDIA_TYPE& type);
// Frees the block and the structure allocated by CreateMediaType.
void DeleteMediaType(AM_MEDIA_TYPE* type);
HRESULT CopyMediaType(AM_MEDIA_TYPE* target, const AM_MEDIA_TYPE* source);
// A task-allocated copy, as IEnumMediaTypes and IAMStreamConfig hand out.
AM_MEDIA_TYPE* CreateMediaType(const AM_MEDIA_TYPE* source);
