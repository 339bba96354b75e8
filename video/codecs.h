// Installed video compressors and the codec chosen for each media subtype.
#pragma once

#include <windows.h>
#include <dshow.h>

#include <cstdint>
#include <vector>

#include "video/video_sources.h"

constexpr int kCodecNameCapacity = 256;

struct CodecRecord {
    IBaseFilter* filter;  // null for the "NONE" entry
    wchar_t name[kCodecNameCapacity];
};

struct SubtypeCodecPair {
    VideoSubtype subtype;
    CodecRecord* codec;
};

// Compressors found on the computer, behind the "NONE" record (no filter:
// the camera's own format is written). Their filters are held for the run.
extern std::vector<CodecRecord*> installedCodecs;
// The codecs that connected in the last trial, and for each its index in
// installedCodecs.
extern std::vector<CodecRecord*> usableCodecs;
extern std::vector<uint32_t> usableCodecIndexes;
// The pairs the graph uses in this run, and the pairs the options file
// mirrors, of which the first list is a copy made after the load.
extern std::vector<SubtypeCodecPair*> subtypeCodecPairs;
extern std::vector<SubtypeCodecPair*> savedSubtypeCodecPairs;

// The installed codec of that exact name, or null.
CodecRecord* FindInstalledCodec(const wchar_t* name);

// The codec of the first pair in subtypeCodecPairs for the subtype; null
// when no pair stands for it or the pair names no codec.
const CodecRecord* PairedCodec(VideoSubtype subtype);

// A new choice for a subtype replaces the codec of the first pair of that
// subtype; without such a pair one is appended.
void PairCodec(std::vector<SubtypeCodecPair*>& pairs, VideoSubtype subtype, CodecRecord* codec);

// Empties every list of codecs and pairs, releasing the codecs' filters.
void FreeCodecLists();
