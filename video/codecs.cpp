#include "video/codecs.h"

#include <cwchar>

std::vector<CodecRecord*> installedCodecs;
std::vector<SubtypeCodecPair*> subtypeCodecPairs;
std::vector<SubtypeCodecPair*> savedSubtypeCodecPairs;

CodecRecord* FindInstalledCodec(const wchar_t* name)
{
    for (CodecRecord* codec : installedCodecs)
        if (wcscmp(codec->name, name) == 0)
            return codec;
    return nullptr;
}

const CodecRecord* PairedCodec(VideoSubtype subtype)
{
    for (const SubtypeCodecPair* pair : subtypeCodecPairs)
        if (pair && pair->subtype == subtype)
            return pair->codec;
    return nullptr;
}
