#include "video/codec_choice.h"

#include "base/report.h"
#include "persistence/options_file.h"
#include "video/codecs.h"

HRESULT SelectUsableCodec(int line, VideoSubtype subtype, bool save)
{
    if (line < 0 || static_cast<size_t>(line) >= usableCodecIndexes.size() ||
        usableCodecIndexes[static_cast<size_t>(line)] >= installedCodecs.size()) {
        ReportUserMessage(L"Selected Codec index is not valid\r\n", true);
        return E_INVALIDARG;
    }
    CodecRecord* codec = installedCodecs[usableCodecIndexes[static_cast<size_t>(line)]];
    PairCodec(subtypeCodecPairs, subtype, codec);
    if (!save)
        return S_OK;
    PairCodec(savedSubtypeCodecPairs, subtype, codec);
    ReportUserMessage(L"Codec / format pairing saved in options file\r\n", true);
    return SaveOptionsOrWarn() ? S_OK : E_FAIL;
}
