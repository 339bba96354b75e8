// The repair of recordings cut short, over files laid out the way the
// platform's AVI Mux leaves them when the program dies mid-recording: the
// provisional header at the start, zeros where the mux's header would go, a
// reserved standard-index area, frame chunks, perhaps more reserved areas
// between them, and no idx1. Each repaired file is read back by a walk of
// its own here, not by the product's parser.
#include "video/avi_header.h"
#include "video/avi_repair_file.h"
#include "video/avi_repair_plan.h"
#include "video/recording_file_name.h"

#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

uint32_t Le32(const Bytes& bytes, uint64_t at)
{
    return static_cast<uint32_t>(bytes.at(at)) | static_cast<uint32_t>(bytes.at(at + 1)) << 8 |
        static_cast<uint32_t>(bytes.at(at + 2)) << 16 | static_cast<uint32_t>(bytes.at(at + 3)) << 24;
}

void SetLe32At(Bytes& bytes, uint64_t at, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes.at(at + i) = static_cast<uint8_t>(value >> (8 * i));
}

void AppendLe32(Bytes& bytes, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

uint32_t Code(const char (&text)[5])
{
    return static_cast<uint32_t>(static_cast<uint8_t>(text[0])) |
        static_cast<uint32_t>(static_cast<uint8_t>(text[1])) << 8 |
        static_cast<uint32_t>(static_cast<uint8_t>(text[2])) << 16 |
        static_cast<uint32_t>(static_cast<uint8_t>(text[3])) << 24;
}

std::string CodeText(uint32_t code)
{
    std::string text;
    for (int i = 0; i < 4; ++i)
        text += static_cast<char>(code >> (8 * i));
    return text;
}

// A reader over a buffer that fails the test on any read outside it: the
// plan must check every size it takes from the file before it reads.
class MemoryReader : public AviByteReader {
public:
    explicit MemoryReader(const Bytes& bytes) : bytes_(bytes) {}

    size_t Read(uint64_t offset, uint8_t* buffer, size_t length) const override
    {
        if (offset > bytes_.size() || length > bytes_.size() - offset) {
            ADD_FAILURE() << "read outside the file: " << offset << " + " << length << " of " << bytes_.size();
            return 0;
        }
        std::memcpy(buffer, bytes_.data() + offset, length);
        return length;
    }

private:
    const Bytes& bytes_;
};

AviRepairPlan Plan(const Bytes& bytes)
{
    MemoryReader reader(bytes);
    return PlanAviRepair(reader, bytes.size());
}

Bytes Applied(Bytes bytes, const AviRepairPlan& plan)
{
    for (const AviRepairWrite& write : plan.writes) {
        if (bytes.size() < write.offset + write.bytes.size())
            bytes.resize(write.offset + write.bytes.size());
        std::copy(write.bytes.begin(), write.bytes.end(), bytes.begin() + write.offset);
    }
    bytes.resize(plan.newLength);
    return bytes;
}

BITMAPINFOHEADER Format(int width = 64, int height = 48, DWORD compression = BI_RGB)
{
    BITMAPINFOHEADER format = {};
    format.biSize = sizeof(format);
    format.biWidth = width;
    format.biHeight = height;
    format.biPlanes = 1;
    format.biBitCount = 24;
    format.biCompression = compression;
    format.biSizeImage = width * height * 3;
    return format;
}

constexpr int64_t kFrameTime = 333333;  // 30 frames per second

// The mux's own reservations, as Wine's qcap/avimux.c makes them: three
// lists, avih and dmlh, then per stream a strl list with strh, strf and a
// super index of 2000 entries; LIST movi; a standard index of 4000 entries.
constexpr size_t kSuperIndexSize = 24 + 2000 * 16;
constexpr size_t kStandardIndexSize = 32 + 4000 * 8;
size_t MuxHeaderArea(size_t formatSize)
{
    return 3 * 12 + 64 + 256 + 12 + 64 + 8 + formatSize + kSuperIndexSize;
}

struct WrittenFrame {
    uint64_t at = 0;  // its chunk header
    uint32_t id = 0;
    Bytes payload;
};

// Lays out a recording as the mux writes it until it is killed.
class MuxFile {
public:
    explicit MuxFile(const BITMAPINFOHEADER& format = Format())
    {
        bytes = BuildProvisionalAviHeader(format, kFrameTime);
        bytes.resize(MuxHeaderArea(sizeof(format)) + 12);
        moviData = bytes.size();
        ReserveIndexArea();
    }

    // Frames with recognisable payloads of varied sizes, odd ones among
    // them so that pad bytes are crossed; every fifth is a delta frame.
    void AddFrames(int count)
    {
        for (int i = 0; i < count; ++i) {
            int n = static_cast<int>(frames.size());
            WrittenFrame frame;
            frame.at = bytes.size();
            frame.id = Code(n % 5 == 4 ? "00dc" : "00db");
            uint32_t size = 100 + (n % 7) * 37;
            for (uint32_t k = 0; k < size; ++k)
                frame.payload.push_back(static_cast<uint8_t>(n * 31 + k * 7 + 1) | 1);
            AddChunk(frame.id, frame.payload);
            frames.push_back(frame);
        }
    }

    // The area the mux reserves for its next standard index and never
    // writes if it is killed before 4000 more frames: zeros.
    void ReserveIndexArea() { bytes.resize(bytes.size() + kStandardIndexSize); }

    // The same area once the mux has written its index there.
    void WriteIndexAt(uint64_t at)
    {
        Bytes index;
        AppendLe32(index, Code("ix00"));
        AppendLe32(index, kStandardIndexSize - 8);
        index.resize(kStandardIndexSize, 0x11);
        std::copy(index.begin(), index.end(), bytes.begin() + at);
        if (at == moviData)
            indexAtStart = true;
    }

    // Where the repaired movi's content must begin: at the first chunk.
    uint64_t FirstChunk() const { return indexAtStart || frames.empty() ? moviData : frames.front().at; }

    void AddChunk(uint32_t id, const Bytes& payload)
    {
        AppendLe32(bytes, id);
        AppendLe32(bytes, static_cast<uint32_t>(payload.size()));
        bytes.insert(bytes.end(), payload.begin(), payload.end());
        if (payload.size() & 1)
            bytes.push_back(0);
    }

    Bytes bytes;
    uint64_t moviData = 0;  // where the mux's first index area begins
    bool indexAtStart = false;
    std::vector<WrittenFrame> frames;
};

// A repaired file as an AVI 1.0 reader sees it.
struct ReadBack {
    uint32_t riffSize = 0;
    uint32_t avihFrames = 0;
    uint32_t avihFlags = 0;
    uint32_t strhLength = 0;
    uint32_t strhType = 0;
    Bytes strf;
    uint64_t moviFourcc = 0;  // offset of 'movi'
    uint64_t moviEnd = 0;
    bool moviWalksWhole = false;
    struct Entry {
        uint32_t id, flags, offset, size;
    };
    std::vector<Entry> index;
    bool hasIndex = false;
};

ReadBack Read(const Bytes& file)
{
    ReadBack back;
    EXPECT_GE(file.size(), 12u);
    if (file.size() < 12)
        return back;
    EXPECT_EQ(CodeText(Le32(file, 0)), "RIFF");
    EXPECT_EQ(CodeText(Le32(file, 8)), "AVI ");
    back.riffSize = Le32(file, 4);
    uint64_t at = 12;
    while (at + 8 <= file.size()) {
        uint32_t id = Le32(file, at);
        uint32_t size = Le32(file, at + 4);
        EXPECT_LE(at + 8 + size, file.size()) << CodeText(id);
        if (at + 8 + size > file.size())
            break;
        if (id == Code("LIST") && Le32(file, at + 8) == Code("hdrl")) {
            for (uint64_t in = at + 12; in + 8 <= at + 8 + size;) {
                uint32_t inId = Le32(file, in);
                uint32_t inSize = Le32(file, in + 4);
                if (inId == Code("avih")) {
                    back.avihFlags = Le32(file, in + 8 + 12);
                    back.avihFrames = Le32(file, in + 8 + 16);
                } else if (inId == Code("LIST") && Le32(file, in + 8) == Code("strl")) {
                    for (uint64_t s = in + 12; s + 8 <= in + 8 + inSize;) {
                        uint32_t sId = Le32(file, s);
                        uint32_t sSize = Le32(file, s + 4);
                        if (sId == Code("strh")) {
                            back.strhType = Le32(file, s + 8);
                            back.strhLength = Le32(file, s + 8 + 32);
                        } else if (sId == Code("strf")) {
                            back.strf.assign(file.begin() + s + 8, file.begin() + s + 8 + sSize);
                        }
                        s += 8 + sSize + (sSize & 1);
                    }
                }
                in += 8 + inSize + (inSize & 1);
            }
        } else if (id == Code("LIST") && Le32(file, at + 8) == Code("movi")) {
            back.moviFourcc = at + 8;
            back.moviEnd = at + 8 + size;
            // A reader without the index walks movi chunk by chunk: every
            // chunk must be one it knows and the last must end movi.
            uint64_t c = at + 12;
            bool known = true;
            while (known && c + 8 <= back.moviEnd) {
                std::string cid = CodeText(Le32(file, c));
                known = cid == "00db" || cid == "00dc" || cid == "ix00" || cid == "JUNK";
                EXPECT_TRUE(known) << "chunk " << cid << " at " << c;
                uint32_t cSize = Le32(file, c + 4);
                c += 8 + cSize + (cSize & 1);
            }
            back.moviWalksWhole = known && c == back.moviEnd;
        } else if (id == Code("idx1")) {
            back.hasIndex = true;
            for (uint64_t e = at + 8; e + 16 <= at + 8 + size; e += 16)
                back.index.push_back({Le32(file, e), Le32(file, e + 4), Le32(file, e + 8), Le32(file, e + 12)});
        }
        at += 8 + size + (size & 1);
    }
    return back;
}

// The repaired file is whole, says it holds `frames` frames, and indexes
// the first `frames` frames that were written, where they were written,
// with their payloads.
void ExpectRepaired(const Bytes& repaired, const MuxFile& written, size_t frames)
{
    ReadBack back = Read(repaired);
    EXPECT_EQ(back.riffSize, repaired.size() - 8);
    EXPECT_EQ(back.avihFrames, frames);
    EXPECT_EQ(back.strhLength, frames);
    EXPECT_EQ(back.avihFlags & 0x10, 0x10u) << "AVIF_HASINDEX";
    EXPECT_EQ(CodeText(back.strhType), "vids");
    EXPECT_EQ(back.strf.size(), sizeof(BITMAPINFOHEADER));
    EXPECT_EQ(back.moviFourcc, written.FirstChunk() - 4) << "movi's content begins where the first chunk was";
    EXPECT_TRUE(back.moviWalksWhole);
    ASSERT_TRUE(back.hasIndex);
    ASSERT_EQ(back.index.size(), frames);
    for (size_t i = 0; i < frames; ++i) {
        const WrittenFrame& frame = written.frames[i];
        const ReadBack::Entry& entry = back.index[i];
        EXPECT_EQ(entry.id, frame.id) << i;
        EXPECT_EQ(entry.flags, CodeText(frame.id)[3] == 'b' ? 0x10u : 0u) << i;
        EXPECT_EQ(back.moviFourcc + entry.offset, frame.at) << "frame " << i << " stays where it was";
        EXPECT_EQ(entry.size, frame.payload.size()) << i;
        uint64_t at = back.moviFourcc + entry.offset;
        ASSERT_LE(at + 8 + entry.size, repaired.size()) << i;
        EXPECT_EQ(Le32(repaired, at), frame.id) << i;
        EXPECT_EQ(Le32(repaired, at + 4), entry.size) << i;
        EXPECT_TRUE(std::equal(frame.payload.begin(), frame.payload.end(), repaired.begin() + at + 8)) << i;
    }
    EXPECT_EQ(back.moviEnd + 8 + 16 * frames, repaired.size()) << "idx1 follows movi and ends the file";
}

}  // namespace

TEST(AviRepairNames, RecordingNamesAreTheProgramsOwn)
{
    struct Row {
        const wchar_t* name;
        bool ours;
    } rows[] = {
        {L"11_25_2026_20_35_02.avi", true},
        {L"CUT_STAR_11_25_2026_20_35_02.avi", true},
        {L"pre_11_25_2026_20_35_02_1.avi", true},
        {L"11_25_2026_20_35_02_12.avi", true},
        {L"a b_11_25_2026_20_35_02.avi", true},
        {L"C:\\Videos\\x_01_01_2027_00_00_00.avi", true},
        {L"holiday.avi", false},
        {L"11_25_2026_20_35.avi", false},
        {L"11_25_2026_20_35_02.AVI", false},
        {L"11_25_2026_20_35_02.Avi", false},
        {L"x11_25_2026_20_35_02.avi", false},
        {L"11_25_2026_20_35_02", false},
        {L"11_25_2026_20_35_02.avi.txt", false},
        {L"11_25_2026_20_35_02_0.avi", false},
        {L"11_25_2026_20_35_02_01.avi", false},
        {L"11_25_2026_20_35_02_.avi", false},
        {L"11_25_2026_20_35_02_x.avi", false},
        {L"1_25_2026_20_35_02.avi", false},
        {L"11_25_26_20_35_02.avi", false},
        {L"13_25_2026_20_35_02.avi", false},
        {L"11_25_2026_24_35_02.avi", false},
        {L"11-25-2026-20-35-02.avi", false},
        {L".avi", false},
        {L"", false},
        {L"C:\\11_25_2026_20_35_02\\holiday.avi", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(IsRecordingFileName(row.name), row.ours) << testing::PrintToString(std::wstring(row.name));
}

TEST(AviRepairHeader, ProvisionalHeaderCarriesTheFormatAndFitsInTheMuxHeaderArea)
{
    BITMAPINFOHEADER format = Format(640, 480);
    Bytes header = BuildProvisionalAviHeader(format, kFrameTime);
    EXPECT_LT(header.size(), 400u);
    EXPECT_LT(header.size() + 12, MuxHeaderArea(sizeof(format)));
    ASSERT_GE(header.size(), 12u + 12 + 64 + 12 + 64 + 8 + 40);
    EXPECT_EQ(CodeText(Le32(header, 0)), "RIFF");
    EXPECT_EQ(Le32(header, 4), 0u);
    EXPECT_EQ(CodeText(Le32(header, 8)), "AVI ");
    EXPECT_EQ(CodeText(Le32(header, 12)), "LIST");
    EXPECT_EQ(Le32(header, 16), header.size() - 20) << "hdrl is all of the rest";
    EXPECT_EQ(CodeText(Le32(header, 20)), "hdrl");
    EXPECT_EQ(CodeText(Le32(header, 24)), "avih");
    EXPECT_EQ(Le32(header, 32), 33333u) << "microseconds per frame";
    EXPECT_EQ(Le32(header, 32 + 16), 0u) << "frames";
    EXPECT_EQ(Le32(header, 32 + 24), 1u) << "streams";
    EXPECT_EQ(Le32(header, 32 + 32), 640u);
    EXPECT_EQ(Le32(header, 32 + 36), 480u);
    uint64_t strh = 24 + 64 + 12;
    EXPECT_EQ(CodeText(Le32(header, strh)), "strh");
    EXPECT_EQ(CodeText(Le32(header, strh + 8)), "vids");
    EXPECT_EQ(CodeText(Le32(header, strh + 12)), "DIB ");
    EXPECT_EQ(Le32(header, strh + 8 + 20), 333333u) << "scale";
    EXPECT_EQ(Le32(header, strh + 8 + 24), 10000000u) << "rate";
    uint64_t strf = strh + 64;
    EXPECT_EQ(CodeText(Le32(header, strf)), "strf");
    EXPECT_EQ(Le32(header, strf + 4), 40u);
    EXPECT_EQ(std::memcmp(header.data() + strf + 8, &format, sizeof(format)), 0);
    EXPECT_EQ(strf + 8 + 40, header.size());
}

TEST(AviRepairHeader, ProvisionalHeaderNamesTheCompressionAndReducesTheRate)
{
    struct Row {
        DWORD compression;
        int64_t frameTime;
        const char* handler;
        uint32_t rate, scale, microSeconds;
    } rows[] = {
        {BI_RGB, 400000, "DIB ", 25, 1, 40000},
        {BI_BITFIELDS, 333333, "DIB ", 10000000, 333333, 33333},
        {Code("MJPG"), 333667, "MJPG", 10000000, 333667, 33366},
        {Code("YUY2"), 0, "YUY2", 30, 1, 33333},
        {Code("YUY2"), -5, "YUY2", 30, 1, 33333},
    };
    for (const Row& row : rows) {
        Bytes header = BuildProvisionalAviHeader(Format(320, 240, row.compression), row.frameTime);
        uint64_t strh = 24 + 64 + 12;
        EXPECT_EQ(CodeText(Le32(header, strh + 12)), row.handler) << row.frameTime;
        EXPECT_EQ(Le32(header, strh + 8 + 24), row.rate) << row.frameTime;
        EXPECT_EQ(Le32(header, strh + 8 + 20), row.scale) << row.frameTime;
        EXPECT_EQ(Le32(header, 32), row.microSeconds) << row.frameTime;
    }
    // A palette after the bitmap header goes into strf with it.
    Bytes withPalette(sizeof(BITMAPINFOHEADER) + 1024, 0x5A);
    BITMAPINFOHEADER format = Format(8, 8);
    std::memcpy(withPalette.data(), &format, sizeof(format));
    Bytes header = BuildProvisionalAviHeader(withPalette, kFrameTime);
    EXPECT_EQ(Le32(header, 24 + 64 + 12 + 64 + 4), withPalette.size());
    EXPECT_LT(header.size() + 12, MuxHeaderArea(withPalette.size()));
}

TEST(AviRepair, CutInsideTheHeaderLeavesTheFileAlone)
{
    MuxFile file;
    file.AddFrames(3);
    for (size_t cut : {size_t{0}, size_t{7}, size_t{11}, size_t{100}, size_t{190}, size_t{1000}, size_t{40000},
                       static_cast<size_t>(file.frames[0].at), static_cast<size_t>(file.frames[0].at + 50)}) {
        Bytes bytes(file.bytes.begin(), file.bytes.begin() + cut);
        AviRepairPlan plan = Plan(bytes);
        EXPECT_EQ(plan.verdict, AviRepairVerdict::NothingRecoverable) << cut;
        EXPECT_TRUE(plan.writes.empty()) << cut;
    }
}

TEST(AviRepair, NoProvisionalHeaderMeansNoFormatAndNothingRecoverable)
{
    // A recording made before the program wrote its header: frames but no format.
    MuxFile file;
    file.AddFrames(5);
    std::fill(file.bytes.begin(), file.bytes.begin() + 400, 0);
    AviRepairPlan plan = Plan(file.bytes);
    EXPECT_EQ(plan.verdict, AviRepairVerdict::NothingRecoverable);
    EXPECT_TRUE(plan.writes.empty());
}

TEST(AviRepair, CutInsideAChunkDropsThatChunkAndKeepsAllBefore)
{
    MuxFile file;
    file.AddFrames(12);
    const WrittenFrame& last = file.frames.back();
    // Inside the last chunk's header, its payload, and just short of its end.
    for (uint64_t into :
         {uint64_t{1}, uint64_t{4}, uint64_t{7}, uint64_t{8}, uint64_t{60}, uint64_t{8 + last.payload.size() - 1}}) {
        Bytes bytes(file.bytes.begin(), file.bytes.begin() + last.at + into);
        AviRepairPlan plan = Plan(bytes);
        ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair) << into;
        EXPECT_EQ(plan.frames, 11u) << into;
        EXPECT_EQ(plan.end, AviDataEnd::TornChunk) << into;
        EXPECT_EQ(plan.dataEnd, last.at) << into;
        ExpectRepaired(Applied(bytes, plan), file, 11);
    }
}

TEST(AviRepair, CutRightAfterTheLastChunkKeepsEveryFrame)
{
    MuxFile file;
    file.AddFrames(9);
    AviRepairPlan plan = Plan(file.bytes);
    ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(plan.frames, 9u);
    EXPECT_EQ(plan.end, AviDataEnd::EndOfFile);
    EXPECT_EQ(plan.newLength, file.bytes.size() + 8 + 16 * 9);
    ExpectRepaired(Applied(file.bytes, plan), file, 9);
}

TEST(AviRepair, LastChunkWithoutItsPadByteIsKeptAndPadded)
{
    MuxFile file;
    file.AddFrames(2);  // the second frame's size, 137, is odd
    ASSERT_EQ(file.frames.back().payload.size() % 2, 1u);
    Bytes bytes(file.bytes.begin(), file.bytes.end() - 1);
    AviRepairPlan plan = Plan(bytes);
    ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(plan.frames, 2u);
    ExpectRepaired(Applied(bytes, plan), file, 2);
}

TEST(AviRepair, ZeroFilledTailIsCutOff)
{
    MuxFile file;
    file.AddFrames(7);
    for (size_t tail : {size_t{1}, size_t{6}, size_t{8}, size_t{4096}, size_t{200001}}) {
        Bytes bytes = file.bytes;
        bytes.resize(bytes.size() + tail, 0);
        AviRepairPlan plan = Plan(bytes);
        ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair) << tail;
        EXPECT_EQ(plan.frames, 7u) << tail;
        EXPECT_EQ(plan.end, AviDataEnd::ZeroTail) << tail;
        EXPECT_EQ(plan.newLength, file.bytes.size() + 8 + 16 * 7) << tail;
        ExpectRepaired(Applied(bytes, plan), file, 7);
    }
}

TEST(AviRepair, ZeroGapInsideMoviBecomesJunkAndTheFramesAfterItAreKept)
{
    MuxFile file;
    file.AddFrames(5);
    uint64_t gap = file.bytes.size();
    file.ReserveIndexArea();
    file.AddFrames(6);
    file.ReserveIndexArea();
    file.AddFrames(2);
    AviRepairPlan plan = Plan(file.bytes);
    ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(plan.frames, 13u);
    Bytes repaired = Applied(file.bytes, plan);
    EXPECT_EQ(CodeText(Le32(repaired, gap)), "JUNK");
    EXPECT_EQ(Le32(repaired, gap + 4), kStandardIndexSize - 8);
    ExpectRepaired(repaired, file, 13);
}

TEST(AviRepair, WrittenStandardIndexIsKeptButNotIndexed)
{
    // The mux wrote its first standard index into the first reserved area
    // (after 4000 frames), and the next area is still zeros.
    MuxFile file;
    file.WriteIndexAt(file.moviData);
    file.AddFrames(4);
    file.ReserveIndexArea();
    file.AddFrames(3);
    AviRepairPlan plan = Plan(file.bytes);
    ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(plan.frames, 7u);
    Bytes repaired = Applied(file.bytes, plan);
    EXPECT_EQ(CodeText(Le32(repaired, file.moviData)), "ix00");
    ExpectRepaired(repaired, file, 7);
}

TEST(AviRepair, GapThenTornChunkIsCutAtTheGap)
{
    MuxFile file;
    file.AddFrames(3);
    uint64_t gap = file.bytes.size();
    file.ReserveIndexArea();
    file.AddFrames(1);
    Bytes bytes(file.bytes.begin(), file.bytes.end() - 20);
    AviRepairPlan plan = Plan(bytes);
    ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(plan.frames, 3u);
    EXPECT_EQ(plan.dataEnd, gap);
    ExpectRepaired(Applied(bytes, plan), file, 3);
}

TEST(AviRepair, RepairedFileIsCompleteAndLeftAlone)
{
    MuxFile file;
    file.AddFrames(6);
    file.bytes.resize(file.bytes.size() + 3000, 0);
    Bytes repaired = Applied(file.bytes, Plan(file.bytes));
    AviRepairPlan again = Plan(repaired);
    EXPECT_EQ(again.verdict, AviRepairVerdict::Complete);
    EXPECT_TRUE(again.writes.empty());
    // As the mux finishes a file: 8 zero bytes after the RIFF.
    repaired.resize(repaired.size() + 8, 0);
    EXPECT_EQ(Plan(repaired).verdict, AviRepairVerdict::Complete);
}

TEST(AviRepair, FinishedMuxFileWithFrameCountAndSizedMoviIsComplete)
{
    // A finished file without idx1 but with its frame count and movi size.
    MuxFile file;
    file.AddFrames(4);
    Bytes repaired = Applied(file.bytes, Plan(file.bytes));
    ReadBack back = Read(repaired);
    Bytes noIndex(repaired.begin(), repaired.begin() + back.moviEnd);
    SetLe32At(noIndex, 4, static_cast<uint32_t>(noIndex.size() - 8));
    EXPECT_EQ(Plan(noIndex).verdict, AviRepairVerdict::Complete);
    // The same with no frame count is not known to be whole: it is indexed again.
    SetLe32At(noIndex, 24 + 8 + 16, 0);
    AviRepairPlan plan = Plan(noIndex);
    ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(plan.frames, 4u);
    ExpectRepaired(Applied(noIndex, plan), file, 4);
}

TEST(AviRepair, RepairCutShortBeforeItsHeaderIsRunAgain)
{
    // Only the index landed: the provisional header is still in place and
    // the idx1 after the frames is rewritten.
    MuxFile file;
    file.AddFrames(5);
    AviRepairPlan first = Plan(file.bytes);
    ASSERT_EQ(first.verdict, AviRepairVerdict::Repair);
    Bytes half = file.bytes;
    const AviRepairWrite& index = first.writes.front();
    half.resize(index.offset + index.bytes.size());
    std::copy(index.bytes.begin(), index.bytes.end(), half.begin() + index.offset);
    AviRepairPlan again = Plan(half);
    ASSERT_EQ(again.verdict, AviRepairVerdict::Repair);
    EXPECT_EQ(again.end, AviDataEnd::OldIndex);
    EXPECT_EQ(again.frames, 5u);
    ExpectRepaired(Applied(half, again), file, 5);
}

TEST(AviRepair, HostileSizesNeverReadOutsideTheFile)
{
    MuxFile file;
    file.AddFrames(6);
    const uint64_t strh = 24 + 64 + 12;
    struct Row {
        const char* what;
        uint64_t at;
        uint32_t value;
        AviRepairVerdict verdict;
        uint32_t frames;
    } rows[] = {
        {"hdrl size all ones", 16, 0xFFFFFFFF, AviRepairVerdict::NothingRecoverable, 0},
        {"hdrl size wraps", 16, 0xFFFFFFF8, AviRepairVerdict::NothingRecoverable, 0},
        {"strl size all ones", 24 + 64 + 4, 0xFFFFFFFF, AviRepairVerdict::NothingRecoverable, 0},
        {"strh size all ones", strh + 4, 0xFFFFFFFF, AviRepairVerdict::NothingRecoverable, 0},
        {"strf size all ones", strh + 64 + 4, 0xFFFFFFFF, AviRepairVerdict::NothingRecoverable, 0},
        {"strf size short", strh + 64 + 4, 12, AviRepairVerdict::NothingRecoverable, 0},
        {"RIFF size all ones", 4, 0xFFFFFFFF, AviRepairVerdict::Repair, 6},
        {"RIFF size as if whole", 4, static_cast<uint32_t>(file.bytes.size() - 8), AviRepairVerdict::Repair, 6},
        {"third frame size all ones", file.frames[2].at + 4, 0xFFFFFFFF, AviRepairVerdict::Repair, 2},
        {"third frame size wraps", file.frames[2].at + 4, 0xFFFFFFF8, AviRepairVerdict::Repair, 2},
        {"third frame size to the last byte", file.frames[2].at + 4,
         static_cast<uint32_t>(file.bytes.size() - file.frames[2].at - 8), AviRepairVerdict::Repair, 3},
        // The search past the header's hole passes over a chunk that can't
        // be one and starts at the next.
        {"first frame size all ones", file.frames[0].at + 4, 0xFFFFFFFF, AviRepairVerdict::Repair, 5},
    };
    for (const Row& row : rows) {
        Bytes bytes = file.bytes;
        SetLe32At(bytes, row.at, row.value);
        AviRepairPlan plan = Plan(bytes);
        EXPECT_EQ(plan.verdict, row.verdict) << row.what;
        EXPECT_EQ(plan.frames, row.frames) << row.what;
        if (plan.verdict == AviRepairVerdict::Repair) {
            ReadBack back = Read(Applied(bytes, plan));
            EXPECT_EQ(back.index.size(), row.frames) << row.what;
            EXPECT_TRUE(back.moviWalksWhole) << row.what;
        }
    }
}

TEST(AviRepair, GarbageAndMutatedFilesNeverReadOutsideAndRepairToWholeFiles)
{
    MuxFile file;
    file.AddFrames(8);
    file.ReserveIndexArea();
    file.AddFrames(3);
    uint32_t state = 12345;
    auto next = [&state] {
        state = state * 1103515245 + 12345;
        return state >> 8;
    };
    for (int round = 0; round < 300; ++round) {
        Bytes bytes = file.bytes;
        if (round % 3 == 0)
            bytes.resize(next() % bytes.size());
        int changes = 1 + next() % 6;
        for (int i = 0; i < changes && !bytes.empty(); ++i) {
            // Half of the changes fall on the header, the rest anywhere.
            size_t at = i % 2 ? next() % std::min<size_t>(bytes.size(), 300) : next() % bytes.size();
            bytes[at] = static_cast<uint8_t>(next());
        }
        AviRepairPlan plan = Plan(bytes);
        if (plan.verdict != AviRepairVerdict::Repair)
            continue;
        Bytes repaired = Applied(bytes, plan);
        ReadBack back = Read(repaired);
        EXPECT_EQ(back.riffSize, repaired.size() - 8) << round;
        EXPECT_EQ(back.index.size(), plan.frames) << round;
        EXPECT_TRUE(back.moviWalksWhole) << round;
        for (const ReadBack::Entry& entry : back.index) {
            uint64_t at = back.moviFourcc + entry.offset;
            ASSERT_LE(at + 8 + entry.size, repaired.size()) << round;
            EXPECT_EQ(Le32(repaired, at), entry.id) << round;
        }
        EXPECT_EQ(Plan(repaired).verdict, AviRepairVerdict::Complete) << round;
    }
    // Bytes that are no AVI at all, and an AVI start over noise.
    Bytes noise(70000);
    for (uint8_t& b : noise)
        b = static_cast<uint8_t>(next());
    EXPECT_EQ(Plan(noise).verdict, AviRepairVerdict::NothingRecoverable);
    Bytes header = BuildProvisionalAviHeader(Format(), kFrameTime);
    std::copy(header.begin(), header.end(), noise.begin());
    AviRepairPlan plan = Plan(noise);
    if (plan.verdict == AviRepairVerdict::Repair) {
        EXPECT_TRUE(Read(Applied(noise, plan)).moviWalksWhole);
    }
}

TEST(AviRepairFile, RepairsARecordingOnDiskInPlace)
{
    TempFolder folder;
    MuxFile file;
    file.AddFrames(10);
    file.ReserveIndexArea();
    file.AddFrames(5);
    Bytes damaged(file.bytes.begin(), file.bytes.end() - 33);
    const std::string damagedText(damaged.begin(), damaged.end());

    std::wstring ours = folder.File(L"CUT_11_25_2026_20_35_02.avi");
    ASSERT_TRUE(WriteFileBytes(ours, damagedText));
    AviRepairOutcome outcome;
    ASSERT_EQ(RepairAviFile(ours, &outcome), S_OK);
    EXPECT_EQ(outcome.result, AviRepairResult::Repaired);
    EXPECT_EQ(outcome.frames, 14u);
    EXPECT_EQ(outcome.end, AviDataEnd::TornChunk);
    EXPECT_EQ(outcome.lengthBefore, damaged.size());
    std::string onDisk = ReadFileBytes(ours);
    EXPECT_EQ(outcome.lengthAfter, onDisk.size());
    Bytes repaired(onDisk.begin(), onDisk.end());
    EXPECT_EQ(repaired, Applied(damaged, Plan(damaged)));
    ExpectRepaired(repaired, file, 14);

    // Again: the file is whole now and stays as it is.
    ASSERT_EQ(RepairAviFile(ours, &outcome), S_OK);
    EXPECT_EQ(outcome.result, AviRepairResult::LeftComplete);
    EXPECT_EQ(ReadFileBytes(ours), onDisk);

    // Another program's file with the same bytes is not touched.
    std::wstring theirs = folder.File(L"holiday.avi");
    ASSERT_TRUE(WriteFileBytes(theirs, damagedText));
    ASSERT_EQ(RepairAviFile(theirs, &outcome), S_OK);
    EXPECT_EQ(outcome.result, AviRepairResult::NotOurRecording);
    EXPECT_EQ(ReadFileBytes(theirs), damagedText);

    // Nothing to recover: untouched.
    std::wstring headless = folder.File(L"11_25_2026_20_35_03.avi");
    const std::string cut = damagedText.substr(0, 150);
    ASSERT_TRUE(WriteFileBytes(headless, cut));
    ASSERT_EQ(RepairAviFile(headless, &outcome), S_OK);
    EXPECT_EQ(outcome.result, AviRepairResult::NothingRecoverable);
    EXPECT_EQ(ReadFileBytes(headless), cut);

    // A file that isn't there is not made.
    std::wstring missing = folder.File(L"11_25_2026_20_35_04.avi");
    EXPECT_TRUE(FAILED(RepairAviFile(missing, &outcome)));
    EXPECT_EQ(GetFileAttributesW(missing.c_str()), INVALID_FILE_ATTRIBUTES);
}
