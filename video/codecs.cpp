#include "video/codecs.h"

#include <cwchar>

std::vector<CodecRecord*> installedCodecs;
std::vector<CodecRecord*> usableCodecs;
std::vector<uint32_t> usableCodecIndexes;
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

void PairCodec(std::vector<SubtypeCodecPair*>& pairs, VideoSubtype subtype, CodecRecord* codec)
{
    for (SubtypeCodecPair* pair : pairs) {
        if (pair && pair->subtype == subtype) {
            pair->codec = codec;
            return;
        }
    }
    pairs.push_back(new SubtypeCodecPair{subtype, codec});
}

void FreeCodecLists()
{
    for (std::vector<SubtypeCodecPair*>* pairs : {&subtypeCodecPairs, &savedSubtypeCodecPairs}) {
        for (SubtypeCodecPair* pair : *pairs)
            delete pair;
        pairs->clear();
    }
    usableCodecs.clear();
    usableCodecIndexes.clear();
    for (CodecRecord* codec : installedCodecs) {
        if (codec && codec->filter)
            codec->filter->Release();
        delete codec;
    }
    installedCodecs.clear();
}
