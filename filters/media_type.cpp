#include "filters/media_type.h"

#include <cstring>

CMediaType::CMediaType()
{
    InitMediaType();
}

CMediaType::CMediaType(const GUID* majorType)
{
    InitMediaType();
    majortype = *majorType;
}

CMediaType::CMediaType(const AM_MEDIA_TYPE& type)
{
    InitMediaType();
    CopyMediaType(this, &type);
}

CMediaType::CMediaType(const CMediaType& type) : CMediaType(static_cast<const AM_MEDIA_TYPE&>(type)) {}

CMediaType::~CMediaType()
{
    FreeMediaType(*this);
}

CMediaType& CMediaType::operator=(const AM_MEDIA_TYPE& type)
{
    Set(type);
    return *this;
}

CMediaType& CMediaType::operator=(const CMediaType& type)
{
    Set(type);
    return *this;
}

HRESULT CMediaType::Set(const AM_MEDIA_TYPE& type)
{
    if (&type == this)
        return S_OK;
    FreeMediaType(*this);
    HRESULT hr = CopyMediaType(this, &type);
    if (FAILED(hr))
        InitMediaType();
    return hr;
}

bool CMediaType::operator==(const CMediaType& other) const
{
    return majortype == other.majortype && subtype == other.subtype && formattype == other.formattype &&
           cbFormat == other.cbFormat && (cbFormat == 0 || std::memcmp(pbFormat, other.pbFormat, cbFormat) == 0);
}

void CMediaType::SetSampleSize(ULONG size)
{
    if (size == 0) {
        SetVariableSize();
        return;
    }
    bFixedSizeSamples = TRUE;
    lSampleSize = size;
}

bool CMediaType::SetFormat(const BYTE* format, ULONG length)
{
    BYTE* block = AllocFormatBuffer(length);
    if (length && !block)
        return false;
    if (length)
        std::memcpy(block, format, length);
    return true;
}

BYTE* CMediaType::AllocFormatBuffer(ULONG length)
{
    ResetFormatBuffer();
    if (length == 0)
        return nullptr;
    pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(length));
    if (!pbFormat)
        return nullptr;
    std::memset(pbFormat, 0, length);
    cbFormat = length;
    return pbFormat;
}

void CMediaType::ResetFormatBuffer()
{
    if (pbFormat)
        CoTaskMemFree(pbFormat);
    pbFormat = nullptr;
    cbFormat = 0;
}

void CMediaType::InitMediaType()
{
    std::memset(static_cast<AM_MEDIA_TYPE*>(this), 0, sizeof(AM_MEDIA_TYPE));
    lSampleSize = 1;
    bFixedSizeSamples = TRUE;
}

bool CMediaType::IsPartiallySpecified() const
{
    return majortype == GUID_NULL || subtype == GUID_NULL || formattype == GUID_NULL;
}

bool CMediaType::MatchesPartial(const CMediaType* partial) const
{
    if (partial->majortype != GUID_NULL && partial->majortype != majortype)
        return false;
    if (partial->subtype != GUID_NULL && partial->subtype != subtype)
        return false;
    if (partial->formattype != GUID_NULL) {
        if (partial->formattype != formattype || partial->cbFormat != cbFormat)
            return false;
        if (cbFormat && std::memcmp(partial->pbFormat, pbFormat, cbFormat) != 0)
            return false;
    }
    return true;
}

void FreeMediaType(AM_MEDIA_TYPE& type)
{
    if (type.cbFormat != 0 || type.pbFormat) {
        CoTaskMemFree(type.pbFormat);
        type.cbFormat = 0;
        type.pbFormat = nullptr;
    }
    if (type.pUnk) {
        type.pUnk->Release();
        type.pUnk = nullptr;
    }
}

void DeleteMediaType(AM_MEDIA_TYPE* type)
{
    if (!type)
        return;
    FreeMediaType(*type);
    CoTaskMemFree(type);
}

HRESULT CopyMediaType(AM_MEDIA_TYPE* target, const AM_MEDIA_TYPE* source)
{
    *target = *source;
    if (source->cbFormat != 0 && source->pbFormat) {
        target->pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(source->cbFormat));
        if (!target->pbFormat) {
            target->cbFormat = 0;
            target->pUnk = nullptr;
            return E_OUTOFMEMORY;
        }
        std::memcpy(target->pbFormat, source->pbFormat, source->cbFormat);
    } else {
        target->pbFormat = nullptr;
        target->cbFormat = 0;
    }
    if (target->pUnk)
        target->pUnk->AddRef();
    return S_OK;
}

AM_MEDIA_TYPE* CreateMediaType(const AM_MEDIA_TYPE* source)
{
    auto* type = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    if (!type)
        return nullptr;
    if (FAILED(CopyMediaType(type, source))) {
        CoTaskMemFree(type);
        return nullptr;
    }
    return type;
}
