#include "video/avi_repair_plan.h"

#include "video/avi_bytes.h"
#include "video/avi_header.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace {

// AVIF_HASINDEX and AVIIF_KEYFRAME of <aviriff.h>.
constexpr uint32_t kHasIndex = 0x10;
constexpr uint32_t kKeyFrame = 0x10;

// A hdrl bigger than this is no header of a recording: the mux's, with its
// super index, is about 32 KB.
constexpr uint64_t kMaxHeaderList = 1 << 20;
// One RIFF's size field is 32 bits.
constexpr uint64_t kMaxFileLength = uint64_t{UINT32_MAX} + 8;

// The file through a window of 64 KB, so that the walk's many small reads
// cost few calls of the reader. Every read is checked against the file's
// length before the reader is asked.
class FileBytes {
public:
    FileBytes(const AviByteReader& reader, uint64_t size) : reader_(reader), size_(size), window_(kWindow) {}

    uint64_t Size() const { return size_; }
    bool Failed() const { return failed_; }

    bool Get(uint64_t offset, uint8_t* out, size_t length)
    {
        if (offset > size_ || length > size_ - offset)
            return false;
        if (length == 0)
            return true;
        if (length > kWindow) {
            if (reader_.Read(offset, out, length) == length)
                return true;
            failed_ = true;
            return false;
        }
        if (offset < windowStart_ || offset + length > windowStart_ + windowLength_) {
            size_t wanted = static_cast<size_t>(std::min<uint64_t>(kWindow, size_ - offset));
            windowStart_ = offset;
            windowLength_ = reader_.Read(offset, window_.data(), wanted);
            if (windowLength_ > wanted)
                windowLength_ = 0;
            if (windowLength_ < length) {
                failed_ = true;
                return false;
            }
        }
        std::memcpy(out, window_.data() + (offset - windowStart_), length);
        return true;
    }

    bool Le32(uint64_t offset, uint32_t* value)
    {
        uint8_t bytes[4];
        if (!Get(offset, bytes, 4))
            return false;
        *value = ReadLe32(bytes);
        return true;
    }

private:
    static constexpr size_t kWindow = 64 * 1024;
    const AviByteReader& reader_;
    uint64_t size_;
    std::vector<uint8_t> window_;
    uint64_t windowStart_ = 0;
    size_t windowLength_ = 0;
    bool failed_ = false;
};

enum class ChunkKind { Frame, Kept, OldIndex, None };

bool IsDigit(uint8_t c)
{
    return c >= '0' && c <= '9';
}

// "NNdb" / "NNdc" are frames; an "ix##" standard index and "JUNK" are kept
// where they are but not indexed.
ChunkKind KindOf(uint32_t id)
{
    uint8_t c[4] = {static_cast<uint8_t>(id), static_cast<uint8_t>(id >> 8), static_cast<uint8_t>(id >> 16),
                    static_cast<uint8_t>(id >> 24)};
    if (IsDigit(c[0]) && IsDigit(c[1]) && c[2] == 'd' && (c[3] == 'b' || c[3] == 'c'))
        return ChunkKind::Frame;
    if (c[0] == 'i' && c[1] == 'x' && IsDigit(c[2]) && IsDigit(c[3]))
        return ChunkKind::Kept;
    if (id == Fourcc("JUNK"))
        return ChunkKind::Kept;
    if (id == Fourcc("idx1"))
        return ChunkKind::OldIndex;
    return ChunkKind::None;
}

struct ChunkHeader {
    uint32_t id = 0;
    uint32_t size = 0;
};

bool ReadChunkHeader(FileBytes& file, uint64_t at, ChunkHeader* header)
{
    uint8_t bytes[8];
    if (!file.Get(at, bytes, 8))
        return false;
    header->id = ReadLe32(bytes);
    header->size = ReadLe32(bytes + 4);
    return true;
}

// The chunk's data lies inside the file; its pad byte may be missing at
// the very end.
bool Fits(const FileBytes& file, uint64_t at, uint32_t size)
{
    return at <= file.Size() && file.Size() - at >= 8 && file.Size() - at - 8 >= size;
}

bool AllZero(const uint8_t* bytes, size_t length)
{
    return std::all_of(bytes, bytes + length, [](uint8_t b) { return b == 0; });
}

// A frame or kept chunk whose size fits and whose end is the end of the
// data, or another chunk's header, or zeros (another reserved stretch, or
// the tail): what a real chunk found after a hole looks like, and what a
// chance match inside other bytes seldom does.
bool IsChunkAfterHole(FileBytes& file, uint64_t at)
{
    ChunkHeader header;
    if (!ReadChunkHeader(file, at, &header))
        return false;
    ChunkKind kind = KindOf(header.id);
    if ((kind != ChunkKind::Frame && kind != ChunkKind::Kept) || !Fits(file, at, header.size))
        return false;
    uint64_t end = at + 8 + RiffPadded(header.size);
    if (end >= file.Size() || file.Size() - end < 8)
        return true;
    uint8_t next[8];
    if (!file.Get(end, next, 8))
        return false;
    return KindOf(ReadLe32(next)) != ChunkKind::None || AllZero(next, 8);
}

struct HoleSearch {
    bool found = false;
    uint64_t chunk = 0;
    bool allZero = true;  // nothing but zeros from the hole to where the search ended
};

// Steps through a hole two bytes at a time (chunks start at even offsets)
// for the next chunk. A chunk's id never starts with a zero byte, so zeros
// are passed over without a closer look.
HoleSearch SearchPastHole(FileBytes& file, uint64_t from)
{
    HoleSearch search;
    uint64_t at = from;
    for (; at < file.Size() && file.Size() - at >= 8; at += 2) {
        uint8_t pair[2];
        if (!file.Get(at, pair, 2))
            return search;
        if (pair[0] == 0 && pair[1] == 0)
            continue;
        search.allZero = false;
        if (pair[0] != 0 && IsChunkAfterHole(file, at)) {
            search.found = true;
            search.chunk = at;
            return search;
        }
    }
    // The last few bytes, too short for a chunk, still tell whether the
    // rest is zeros.
    for (; search.allZero && at < file.Size(); ++at) {
        uint8_t byte = 0;
        if (!file.Get(at, &byte, 1) || byte != 0)
            search.allZero = false;
    }
    return search;
}

// What the file's start says.
struct HeaderFound {
    bool riff = false;
    uint32_t riffSize = 0;
    bool hasStream = false;
    AviVideoStream stream;
    uint32_t totalFrames = 0;
    uint64_t afterHeader = 0;  // where the run of header chunks stops
    bool hasMovi = false;
    uint64_t moviAt = 0;
    uint32_t moviSize = 0;
    bool moviWhole = false;  // its size fits in the file
    bool hasIndex = false;
    uint64_t indexEnd = 0;
};

uint32_t SubLe32(const std::vector<uint8_t>& bytes, size_t at)
{
    return ReadLe32(bytes.data() + at);
}

// The first video stream of a hdrl payload (after its 'hdrl'), and avih's
// frame count.
void ParseHeaderList(const std::vector<uint8_t>& list, HeaderFound* found)
{
    uint32_t microSecondsPerFrame = 0;
    size_t at = 0;
    while (list.size() - at >= 8) {
        uint32_t id = SubLe32(list, at);
        uint32_t size = SubLe32(list, at + 4);
        if (size > list.size() - at - 8)
            break;
        size_t data = at + 8;
        if (id == Fourcc("avih") && size >= 56) {
            microSecondsPerFrame = SubLe32(list, data);
            found->totalFrames = SubLe32(list, data + 16);
        } else if (id == Fourcc("LIST") && size >= 4 && SubLe32(list, data) == Fourcc("strl") && !found->hasStream) {
            bool video = false;
            bool hasFormat = false;
            AviVideoStream stream;
            size_t inner = data + 4;
            size_t innerEnd = data + size;
            while (innerEnd - inner >= 8) {
                uint32_t innerId = SubLe32(list, inner);
                uint32_t innerSize = SubLe32(list, inner + 4);
                if (innerSize > innerEnd - inner - 8)
                    break;
                size_t innerData = inner + 8;
                if (innerId == Fourcc("strh") && innerSize >= 48) {
                    video = SubLe32(list, innerData) == Fourcc("vids");
                    stream.handler = SubLe32(list, innerData + 4);
                    stream.scale = SubLe32(list, innerData + 20);
                    stream.rate = SubLe32(list, innerData + 24);
                } else if (innerId == Fourcc("strf") && innerSize >= 40) {
                    stream.format.assign(list.begin() + innerData, list.begin() + innerData + innerSize);
                    hasFormat = true;
                }
                inner =
                    innerData + static_cast<size_t>(std::min<uint64_t>(RiffPadded(innerSize), innerEnd - innerData));
            }
            if (video && hasFormat) {
                found->hasStream = true;
                found->stream = std::move(stream);
            }
        }
        at = data + static_cast<size_t>(std::min<uint64_t>(RiffPadded(size), list.size() - data));
    }
    if (!found->hasStream)
        return;
    AviVideoStream& stream = found->stream;
    stream.microSecondsPerFrame = microSecondsPerFrame;
    if (stream.rate == 0 || stream.scale == 0) {
        // The frame time of avih, or the program's usual 30 frames per second.
        AviVideoStream fallback = AviVideoStreamOf(stream.format, int64_t{microSecondsPerFrame} * 10);
        stream.rate = fallback.rate;
        stream.scale = fallback.scale;
        stream.microSecondsPerFrame = fallback.microSecondsPerFrame;
    } else if (stream.microSecondsPerFrame == 0) {
        stream.microSecondsPerFrame =
            static_cast<uint32_t>(std::min<uint64_t>(uint64_t{stream.scale} * 1000000 / stream.rate, UINT32_MAX));
    }
}

// Walks the chunks at the top of the RIFF from the start, as far as they
// are whole: hdrl, any JUNK or other lists, movi, idx1.
HeaderFound ReadHeader(FileBytes& file)
{
    HeaderFound found;
    uint8_t start[12];
    if (!file.Get(0, start, 12) || ReadLe32(start) != Fourcc("RIFF") || ReadLe32(start + 8) != Fourcc("AVI "))
        return found;
    found.riff = true;
    found.riffSize = ReadLe32(start + 4);

    uint64_t at = 12;
    for (;;) {
        found.afterHeader = at;
        ChunkHeader header;
        if (!ReadChunkHeader(file, at, &header))
            break;
        uint32_t listType = 0;
        if (header.id == Fourcc("LIST") && !file.Le32(at + 8, &listType))
            break;
        if (header.id == Fourcc("LIST") && listType == Fourcc("movi")) {
            found.hasMovi = true;
            found.moviAt = at;
            found.moviSize = header.size;
            found.moviWhole = header.size >= 4 && Fits(file, at, header.size);
            if (!found.moviWhole)
                break;
        } else if (!Fits(file, at, header.size)) {
            break;
        } else if (header.id == Fourcc("LIST") && listType == Fourcc("hdrl") && !found.hasStream) {
            if (header.size < 4 || header.size > kMaxHeaderList)
                break;
            std::vector<uint8_t> list(header.size - 4);
            if (!file.Get(at + 12, list.data(), list.size()))
                break;
            ParseHeaderList(list, &found);
        } else if (header.id == Fourcc("idx1")) {
            found.hasIndex = true;
            found.indexEnd = at + 8 + header.size;
        } else if (header.id != Fourcc("LIST") && header.id != Fourcc("JUNK")) {
            break;
        }
        at += 8 + RiffPadded(header.size);
    }
    return found;
}

// A RIFF whose size matches the file (the mux leaves 8 zero bytes after
// it), with an index or a frame count and a sized movi inside it.
bool IsComplete(const HeaderFound& header, uint64_t fileSize)
{
    uint64_t riffEnd = uint64_t{header.riffSize} + 8;
    if (!header.riff || header.riffSize < 4 || riffEnd > fileSize || fileSize - riffEnd > 8)
        return false;
    if (header.hasIndex && header.indexEnd <= riffEnd)
        return true;
    return header.totalFrames > 0 && header.hasMovi && header.moviWhole && header.moviSize > 4 &&
        header.moviAt + 8 + header.moviSize <= riffEnd;
}

struct IndexedFrame {
    uint32_t id = 0;
    uint64_t at = 0;
    uint32_t size = 0;
};

struct Hole {
    uint64_t at = 0;
    uint64_t length = 0;
};

struct Walk {
    std::vector<IndexedFrame> frames;
    std::vector<Hole> holes;
    uint64_t dataEnd = 0;  // padded end of the last chunk kept
    uint32_t largestFrame = 0;
    AviDataEnd end = AviDataEnd::EndOfFile;
};

// The file's length if the chunks up to `dataEnd` were kept with an idx1 of
// `frames` entries after them.
uint64_t LengthWith(uint64_t dataEnd, uint64_t frames)
{
    return dataEnd + 8 + 16 * frames;
}

Walk WalkChunks(FileBytes& file, uint64_t from)
{
    Walk walk;
    walk.dataEnd = from;
    uint64_t at = from;
    for (;;) {
        if (at >= file.Size()) {
            walk.end = AviDataEnd::EndOfFile;
            break;
        }
        ChunkHeader header;
        if (file.Size() - at < 8) {
            uint8_t rest[8];
            size_t length = static_cast<size_t>(file.Size() - at);
            walk.end =
                file.Get(at, rest, length) && AllZero(rest, length) ? AviDataEnd::ZeroTail : AviDataEnd::TornChunk;
            break;
        }
        if (!ReadChunkHeader(file, at, &header)) {
            walk.end = AviDataEnd::ReadFailed;
            break;
        }
        ChunkKind kind = KindOf(header.id);
        if (kind == ChunkKind::OldIndex) {
            walk.end = AviDataEnd::OldIndex;
            break;
        }
        if (kind == ChunkKind::Frame || kind == ChunkKind::Kept) {
            if (!Fits(file, at, header.size)) {
                walk.end = AviDataEnd::TornChunk;
                break;
            }
            uint64_t end = at + 8 + RiffPadded(header.size);
            uint64_t frames = walk.frames.size() + (kind == ChunkKind::Frame ? 1 : 0);
            if (LengthWith(end, frames) > kMaxFileLength) {
                walk.end = AviDataEnd::RiffLimit;
                break;
            }
            if (kind == ChunkKind::Frame) {
                walk.frames.push_back({header.id, at, header.size});
                walk.largestFrame = std::max(walk.largestFrame, header.size);
            }
            walk.dataEnd = end;
            at = end;
            continue;
        }
        // No chunk here: a stretch the mux reserved for an index and never
        // wrote, or the tail.
        HoleSearch search = SearchPastHole(file, at + 2);
        if (file.Failed()) {
            walk.end = AviDataEnd::ReadFailed;
            break;
        }
        // A hole too short for a JUNK header can't be marked; a hole of
        // zeros never is, since a chunk id doesn't start with zeros.
        if (!search.found || search.chunk - at < 8) {
            walk.end =
                search.allZero && header.id == 0 && header.size == 0 ? AviDataEnd::ZeroTail : AviDataEnd::Unreadable;
            break;
        }
        walk.holes.push_back({at, search.chunk - at});
        at = search.chunk;
    }
    // A hole after the last chunk kept is cut off with the rest.
    while (!walk.holes.empty() && walk.holes.back().at >= walk.dataEnd)
        walk.holes.pop_back();
    return walk;
}

std::vector<uint8_t> JunkHeader(uint64_t holeLength)
{
    std::vector<uint8_t> bytes;
    PutLe32(bytes, Fourcc("JUNK"));
    PutLe32(bytes, static_cast<uint32_t>(holeLength - 8));
    return bytes;
}

AviRepairPlan NothingRecoverable()
{
    return AviRepairPlan{};
}

}  // namespace

AviRepairPlan PlanAviRepair(const AviByteReader& reader, uint64_t fileSize)
{
    FileBytes file(reader, fileSize);
    HeaderFound header = ReadHeader(file);
    if (IsComplete(header, fileSize)) {
        AviRepairPlan plan;
        plan.verdict = AviRepairVerdict::Complete;
        plan.newLength = fileSize;
        return plan;
    }
    if (!header.hasStream)
        return NothingRecoverable();

    // Where movi's content begins: after a movi header that landed, or at
    // the first chunk after the hole the mux left for its header.
    uint64_t moviData = 0;
    if (header.hasMovi) {
        moviData = header.moviAt + 12;
    } else {
        HoleSearch search = SearchPastHole(file, header.afterHeader);
        if (!search.found)
            return NothingRecoverable();
        moviData = search.chunk;
    }

    Walk walk = WalkChunks(file, moviData);
    if (walk.frames.empty())
        return NothingRecoverable();

    // The new header and a JUNK chunk fill the start up to LIST movi, which
    // sits just before the first chunk. Data is never moved: without room
    // for both, nothing is done.
    if (moviData < 12)
        return NothingRecoverable();
    const uint64_t moviList = moviData - 12;
    const uint64_t length = LengthWith(walk.dataEnd, walk.frames.size());
    const uint32_t frames = static_cast<uint32_t>(walk.frames.size());
    const AviVideoStream& stream = header.stream;
    AviHeaderCounts counts;
    counts.riffSize = static_cast<uint32_t>(length - 8);
    counts.frames = frames;
    counts.flags = kHasIndex;
    counts.suggestedBufferSize = walk.largestFrame;
    counts.maxBytesPerSec = static_cast<uint32_t>(std::min<uint64_t>(
        uint64_t{walk.largestFrame} * stream.rate / std::max<uint32_t>(stream.scale, 1), UINT32_MAX));
    std::vector<uint8_t> start = BuildAviHeader(stream, counts);
    if (moviList < start.size())
        return NothingRecoverable();
    uint64_t room = moviList - start.size();
    if (room > 0 && room < 8)
        return NothingRecoverable();
    if (room > 0) {
        std::vector<uint8_t> junk = JunkHeader(room);
        start.insert(start.end(), junk.begin(), junk.end());
    }

    AviRepairPlan plan;
    plan.verdict = AviRepairVerdict::Repair;
    plan.frames = frames;
    plan.end = walk.end;
    plan.dataEnd = walk.dataEnd;
    plan.newLength = length;

    // idx1 offsets count from the 'movi' fourcc, as AVI 1.0 readers expect.
    AviRepairWrite index;
    index.offset = walk.dataEnd;
    if (walk.dataEnd > fileSize) {
        // The last chunk's pad byte never landed.
        index.offset = fileSize;
        index.bytes.push_back(0);
    }
    index.bytes.reserve(index.bytes.size() + 8 + 16 * walk.frames.size());
    PutLe32(index.bytes, Fourcc("idx1"));
    PutLe32(index.bytes, 16 * frames);
    for (const IndexedFrame& frame : walk.frames) {
        PutLe32(index.bytes, frame.id);
        PutLe32(index.bytes, (frame.id >> 24) == 'b' ? kKeyFrame : 0);
        PutLe32(index.bytes, static_cast<uint32_t>(frame.at - (moviList + 8)));
        PutLe32(index.bytes, frame.size);
    }
    plan.writes.push_back(std::move(index));

    for (const Hole& hole : walk.holes)
        plan.writes.push_back({hole.at, JunkHeader(hole.length)});

    AviRepairWrite movi;
    movi.offset = moviList;
    PutLe32(movi.bytes, Fourcc("LIST"));
    PutLe32(movi.bytes, static_cast<uint32_t>(walk.dataEnd - (moviList + 8)));
    PutLe32(movi.bytes, Fourcc("movi"));
    plan.writes.push_back(std::move(movi));

    plan.writes.push_back({0, std::move(start)});
    return plan;
}
