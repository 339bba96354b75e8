// The repair of a recording cut short (the program killed, the machine off):
// the AVI Mux writes the file's header and index only when it stops, so
// such a file holds the program's provisional header, a hole where the
// mux's header would go, the frame chunks, perhaps zero-filled stretches the
// mux reserved for its indexes and never wrote, perhaps a torn last chunk or
// a zero-filled tail (the file grew but the data never landed), and no idx1.
//
// The plan is pure: it reads the file through a reader, in small pieces
// (a recording may be gigabytes), trusts no size it finds, and says what to
// write where. The frame chunks stay byte for byte where they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The bytes of the file under repair.
class AviByteReader {
public:
    virtual ~AviByteReader() = default;
    // Copies up to `length` bytes from `offset` into `buffer` and returns how
    // many it copied: fewer only at the end of the file or when reading fails.
    virtual size_t Read(uint64_t offset, uint8_t* buffer, size_t length) const = 0;
};

enum class AviRepairVerdict {
    Complete,  // a finished file: leave it alone
    NothingRecoverable,  // no stream format or no whole frame: leave it alone
    Repair,  // apply the writes, then cut the file to the new length
};

// Where the frames the repair keeps come to an end.
enum class AviDataEnd {
    EndOfFile,  // the last chunk ends the file
    TornChunk,  // a chunk runs past the end of the file (or its header does): it is dropped
    ZeroTail,  // zeros to the end of the file
    Unreadable,  // bytes that are no chunk, with no chunk after them
    OldIndex,  // an idx1 (a repair that was itself cut short): it is rewritten
    RiffLimit,  // the next chunk would take the file past what one RIFF can hold: it and all after are cut off
    ReadFailed,  // the reader gave fewer bytes than the file holds
};

struct AviRepairWrite {
    uint64_t offset = 0;
    std::vector<uint8_t> bytes;
};

struct AviRepairPlan {
    AviRepairVerdict verdict = AviRepairVerdict::NothingRecoverable;
    // In the order to apply them: the index after the data first, the header
    // at the start last, so that a repair cut short leaves the provisional
    // header in place and can be run again.
    std::vector<AviRepairWrite> writes;
    uint64_t newLength = 0;  // the file's length once repaired: the end of the new idx1
    uint32_t frames = 0;  // frame chunks kept and indexed
    AviDataEnd end = AviDataEnd::EndOfFile;
    uint64_t dataEnd = 0;  // where the kept chunks end (padded); what follows is replaced by the index
};

// Plans the repair of a file of `fileSize` bytes. Never reads outside
// [0, fileSize).
AviRepairPlan PlanAviRepair(const AviByteReader& reader, uint64_t fileSize);
