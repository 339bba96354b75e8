// The repair of recordings cut short, on files laid out as the AVI Mux leaves them, read back by a walk of its own.
#include "video/avi_header.h"
#include "video/avi_repair_file.h"
#include "video/avi_repair_plan.h"
#include "video/recording_file_name.h"

#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
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
    bytes.resize(bytes.size() + 4);
    SetLe32At(bytes, bytes.size() - 4, value);
}

uint32_t Code(const char* text)
{
    return Le32(Bytes(text, text + 4), 0);
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
constexpr uint64_t kStrh = 24 + 64 + 12;  // the strh chunk of the provisional header

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
    MuxFile()
    {
        bytes = BuildProvisionalAviHeader(Format(), kFrameTime);
        bytes.resize(MuxHeaderArea(sizeof(BITMAPINFOHEADER)) + 12);
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
            AppendLe32(bytes, frame.id);
            AppendLe32(bytes, size);
            bytes.insert(bytes.end(), frame.payload.begin(), frame.payload.end());
            if (size & 1)
                bytes.push_back(0);
            frames.push_back(frame);
        }
    }

    // The area the mux reserves for its next standard index and never
    // writes if it is killed before 4000 more frames: zeros.
    void ReserveIndexArea() { bytes.resize(bytes.size() + kStandardIndexSize); }

    // The first area once the mux has written its index there.
    void WriteIndexAtStart()
    {
        Bytes index;
        AppendLe32(index, Code("ix00"));
        AppendLe32(index, kStandardIndexSize - 8);
        index.resize(kStandardIndexSize, 0x11);
        std::copy(index.begin(), index.end(), bytes.begin() + moviData);
        indexAtStart = true;
    }

    // Where the repaired movi's content must begin: at the first chunk.
    uint64_t FirstChunk() const { return indexAtStart || frames.empty() ? moviData : frames.front().at; }

    Bytes bytes;
    uint64_t moviData = 0;  // where the mux's first index area begins
    bool indexAtStart = false;
    std::vector<WrittenFrame> frames;
};

// Runs of frames, each run after the first behind another reserved area.
MuxFile Recording(std::initializer_list<int> runs)
{
    MuxFile file;
    for (int run : runs) {
        if (!file.frames.empty())
            file.ReserveIndexArea();
        file.AddFrames(run);
    }
    return file;
}

// A repaired file as an AVI 1.0 reader sees it.
struct ReadBack {
    uint32_t riffSize = 0;
    // Where each chunk's data begins, and its size, by name (a list's by its type).
    std::map<std::string, std::pair<uint64_t, uint32_t>> chunks;
    uint64_t moviFourcc = 0;  // offset of 'movi'
    uint64_t moviEnd = 0;
    bool moviWalksWhole = false;
    struct Entry {
        uint32_t id, flags, offset, size;
    };
    std::vector<Entry> index;
};

// Walks the chunks from `at` to `end`, into the lists hdrl, strl and movi
// (a list goes by its type). In movi, as a reader without the index walks
// it, every chunk must be one it knows. True when the chunks end at `end`.
bool Walk(const Bytes& file, uint64_t at, uint64_t end, ReadBack& back, bool inMovi = false)
{
    while (at + 8 <= end) {
        const uint32_t id = Le32(file, at), size = Le32(file, at + 4);
        const uint64_t data = at + 8;
        const bool known =
            !inMovi || id == Code("00db") || id == Code("00dc") || id == Code("ix00") || id == Code("JUNK");
        EXPECT_TRUE(known) << "chunk " << CodeText(id) << " at " << at;
        EXPECT_LE(data + size, end) << CodeText(id) << " at " << at;
        if (!known || data + size > end)
            return false;
        const std::string name = CodeText(id == Code("LIST") ? Le32(file, data) : id);
        back.chunks[name] = {data, size};
        if (name == "hdrl" || name == "strl") {
            Walk(file, data + 4, data + size, back);
        } else if (name == "movi") {
            back.moviFourcc = data;
            back.moviEnd = data + size;
            back.moviWalksWhole = Walk(file, data + 4, data + size, back, true);
        } else if (name == "idx1") {
            for (uint64_t e = data; e + 16 <= data + size; e += 16)
                back.index.push_back({Le32(file, e), Le32(file, e + 4), Le32(file, e + 8), Le32(file, e + 12)});
        }
        at = data + size + (size & 1);
    }
    return at == end;
}

ReadBack Read(const Bytes& file)
{
    ReadBack back;
    EXPECT_GE(file.size(), 12u);
    if (file.size() < 12)
        return back;
    EXPECT_EQ(CodeText(Le32(file, 0)), "RIFF");
    EXPECT_EQ(CodeText(Le32(file, 8)), "AVI ");
    back.riffSize = Le32(file, 4);
    Walk(file, 12, file.size(), back);
    return back;
}

// The repaired file is whole, says it holds `frames` frames, and indexes
// the first `frames` frames that were written, where they were written,
// with their payloads.
void ExpectRepaired(const Bytes& repaired, const MuxFile& written, size_t frames)
{
    ReadBack back = Read(repaired);
    const uint64_t avih = back.chunks["avih"].first, strh = back.chunks["strh"].first;
    EXPECT_EQ(back.riffSize, repaired.size() - 8);
    EXPECT_EQ(Le32(repaired, avih + 16), frames);
    EXPECT_EQ(Le32(repaired, strh + 32), frames);
    EXPECT_EQ(Le32(repaired, avih + 12) & 0x10, 0x10u) << "AVIF_HASINDEX";
    EXPECT_EQ(CodeText(Le32(repaired, strh)), "vids");
    EXPECT_EQ(back.chunks["strf"].second, sizeof(BITMAPINFOHEADER));
    EXPECT_EQ(back.moviFourcc, written.FirstChunk() - 4) << "movi's content begins where the first chunk was";
    EXPECT_TRUE(back.moviWalksWhole);
    ASSERT_TRUE(back.chunks.count("idx1"));
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

Bytes Cut(const Bytes& bytes, uint64_t length)
{
    return Bytes(bytes.begin(), bytes.begin() + length);
}

}  // namespace

TEST(AviRepairNames, RecordingNamesAreTheProgramsOwn)
{
    for (const wchar_t* name :
         {L"11_25_2026_20_35_02.avi", L"CUT_STAR_11_25_2026_20_35_02.avi", L"pre_11_25_2026_20_35_02_1.avi",
          L"11_25_2026_20_35_02_12.avi", L"a b_11_25_2026_20_35_02.avi", L"C:\\Videos\\x_01_01_2027_00_00_00.avi"})
        EXPECT_TRUE(IsRecordingFileName(name)) << testing::PrintToString(std::wstring(name));
    for (const wchar_t* name :
         {L"holiday.avi", L"11_25_2026_20_35.avi", L"11_25_2026_20_35_02.AVI", L"11_25_2026_20_35_02.Avi",
          L"x11_25_2026_20_35_02.avi", L"11_25_2026_20_35_02", L"11_25_2026_20_35_02.avi.txt",
          L"11_25_2026_20_35_02_0.avi", L"11_25_2026_20_35_02_01.avi", L"11_25_2026_20_35_02_.avi",
          L"11_25_2026_20_35_02_x.avi", L"1_25_2026_20_35_02.avi", L"11_25_26_20_35_02.avi", L"13_25_2026_20_35_02.avi",
          L"11_25_2026_24_35_02.avi", L"11-25-2026-20-35-02.avi", L".avi", L"",
          L"C:\\11_25_2026_20_35_02\\holiday.avi"})
        EXPECT_FALSE(IsRecordingFileName(name)) << testing::PrintToString(std::wstring(name));
}

TEST(AviRepairHeader, ProvisionalHeaderCarriesTheFormatRateAndCompression)
{
    struct Case {
        DWORD compression;
        int64_t frameTime;
        const char* handler;
        uint32_t rate, scale, microSeconds;
    };
    const Case kCases[] = {
        {BI_RGB, 333333, "DIB ", 10000000, 333333, 33333},
        {BI_RGB, 400000, "DIB ", 25, 1, 40000},
        {BI_BITFIELDS, 333333, "DIB ", 10000000, 333333, 33333},
        {Code("MJPG"), 333667, "MJPG", 10000000, 333667, 33366},
        {Code("YUY2"), 0, "YUY2", 30, 1, 33333},
        {Code("YUY2"), -5, "YUY2", 30, 1, 33333},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(CodeText(c.compression) + " at " + std::to_string(c.frameTime));
        BITMAPINFOHEADER format = Format(640, 480, c.compression);
        Bytes header = BuildProvisionalAviHeader(format, c.frameTime);
        // RIFF, LIST hdrl, avih, LIST strl, strh and strf with the format: nothing more.
        ASSERT_EQ(header.size(), 12u + 12 + 64 + 12 + 64 + 8 + 40);
        // avih: microseconds per frame, frames, streams, width, height; strh: type, handler, scale, rate.
        const std::pair<uint64_t, uint32_t> fields[] = {
            {0, Code("RIFF")}, {4, 0}, {8, Code("AVI ")}, {12, Code("LIST")},
            {16, static_cast<uint32_t>(header.size() - 20)}, {20, Code("hdrl")}, {24, Code("avih")},
            {32, c.microSeconds}, {32 + 16, 0}, {32 + 24, 1}, {32 + 32, 640}, {32 + 36, 480}, {kStrh, Code("strh")},
            {kStrh + 8, Code("vids")}, {kStrh + 12, Code(c.handler)}, {kStrh + 8 + 20, c.scale},
            {kStrh + 8 + 24, c.rate}, {kStrh + 64, Code("strf")}, {kStrh + 64 + 4, 40}};
        for (auto [at, value] : fields)
            EXPECT_EQ(Le32(header, at), value) << "at " << at << ": " << CodeText(Le32(header, at));
        EXPECT_EQ(std::memcmp(header.data() + kStrh + 64 + 8, &format, sizeof(format)), 0);
    }
    // A palette after the bitmap header goes into strf with it.
    Bytes withPalette(sizeof(BITMAPINFOHEADER) + 1024, 0x5A);
    BITMAPINFOHEADER format = Format(8, 8);
    std::memcpy(withPalette.data(), &format, sizeof(format));
    Bytes header = BuildProvisionalAviHeader(withPalette, kFrameTime);
    EXPECT_EQ(Le32(header, kStrh + 64 + 4), withPalette.size());
    EXPECT_LT(header.size() + 12, MuxHeaderArea(withPalette.size()));
}

TEST(AviRepair, NoFormatOrNoWholeFrameIsNothingAndRepairedOrFinishedFilesAreCompleteAndLeftAlone)
{
    MuxFile file = Recording({3});
    std::vector<std::pair<Bytes, AviRepairVerdict>> files;
    for (uint64_t cut : {uint64_t{0}, uint64_t{7}, uint64_t{11}, uint64_t{100}, uint64_t{190}, uint64_t{1000},
                         uint64_t{40000}, file.frames[0].at, file.frames[0].at + 50})
        files.push_back({Cut(file.bytes, cut), AviRepairVerdict::NothingRecoverable});
    // A recording made before the program wrote its header: frames but no format.
    files.push_back({file.bytes, AviRepairVerdict::NothingRecoverable});
    std::fill(files.back().first.begin(), files.back().first.begin() + 400, 0);
    file = Recording({6});
    file.bytes.resize(file.bytes.size() + 3000, 0);
    Bytes repaired = Applied(file.bytes, Plan(file.bytes));
    files.push_back({repaired, AviRepairVerdict::Complete});
    // As the mux finishes a file: 8 zero bytes after the RIFF.
    files.push_back({repaired, AviRepairVerdict::Complete});
    files.back().first.resize(repaired.size() + 8, 0);
    // Without idx1 but with its frame count and movi size.
    files.push_back({Cut(repaired, Read(repaired).moviEnd), AviRepairVerdict::Complete});
    SetLe32At(files.back().first, 4, static_cast<uint32_t>(files.back().first.size() - 8));
    for (const auto& [bytes, verdict] : files) {
        AviRepairPlan plan = Plan(bytes);
        EXPECT_EQ(plan.verdict, verdict) << bytes.size();
        EXPECT_TRUE(plan.writes.empty()) << bytes.size();
    }
}

TEST(AviRepair, CutShortFilesKeepEveryWholeFrameWhereItWasAndGainAnIndex)
{
    struct Case {
        std::string what;
        MuxFile file;  // as the mux wrote it
        Bytes bytes;  // as it is on disk
        uint32_t frames;
        AviDataEnd end;
        uint64_t dataEnd;  // where the kept chunks end
        const char* area;  // a reserved area that stays in movi as this chunk, at areaAt
        uint64_t areaAt;
    };
    std::vector<Case> cases;
    MuxFile file = Recording({12});
    const WrittenFrame last = file.frames.back();
    // Inside the last chunk's header, its payload, and just short of its end.
    for (uint64_t into :
         {uint64_t{1}, uint64_t{4}, uint64_t{7}, uint64_t{8}, uint64_t{60}, 8 + last.payload.size() - 1})
        cases.push_back({"cut " + std::to_string(into) + " bytes into the last chunk", file,
                         Cut(file.bytes, last.at + into), 11, AviDataEnd::TornChunk, last.at, nullptr, 0});
    file = Recording({9});
    cases.push_back(
        {"cut right after the last chunk", file, file.bytes, 9, AviDataEnd::EndOfFile, file.bytes.size(), nullptr, 0});
    file = Recording({2});  // the second frame's size, 137, is odd
    ASSERT_EQ(file.frames.back().payload.size() % 2, 1u);
    cases.push_back({"last chunk without its pad byte", file, Cut(file.bytes, file.bytes.size() - 1), 2,
                     AviDataEnd::EndOfFile, file.bytes.size(), nullptr, 0});
    file = Recording({7});
    for (size_t tail : {size_t{1}, size_t{6}, size_t{8}, size_t{4096}, size_t{200001}}) {
        Bytes bytes = file.bytes;
        bytes.resize(bytes.size() + tail, 0);
        cases.push_back({"zero tail of " + std::to_string(tail), file, bytes, 7, AviDataEnd::ZeroTail,
                         file.bytes.size(), nullptr, 0});
    }
    file = Recording({5, 6, 2});
    cases.push_back({"zero gaps inside movi", file, file.bytes, 13, AviDataEnd::EndOfFile, file.bytes.size(), "JUNK",
                     file.frames[5].at - kStandardIndexSize});
    // The mux wrote its first standard index (after 4000 frames), and the next area is still zeros.
    file = Recording({4, 3});
    file.WriteIndexAtStart();
    cases.push_back({"written standard index", file, file.bytes, 7, AviDataEnd::EndOfFile, file.bytes.size(), "ix00",
                     file.moviData});
    // No whole chunk follows the gap, so the search past it finds nothing readable.
    file = Recording({3, 1});
    cases.push_back({"gap then a torn chunk", file, Cut(file.bytes, file.bytes.size() - 20), 3, AviDataEnd::Unreadable,
                     file.frames[3].at - kStandardIndexSize, nullptr, 0});
    // A repair cut short after its index landed: the provisional header is
    // still in place and the idx1 after the frames is rewritten.
    file = Recording({5});
    AviRepairPlan first = Plan(file.bytes);
    ASSERT_FALSE(first.writes.empty());
    first.writes.resize(1);
    first.newLength = first.writes[0].offset + first.writes[0].bytes.size();
    cases.push_back({"repair cut short before its header", file, Applied(file.bytes, first), 5, AviDataEnd::OldIndex,
                     file.bytes.size(), nullptr, 0});
    // A finished file without idx1 and without its frame count is not known to be whole.
    file = Recording({4});
    Bytes noIndex = Cut(Applied(file.bytes, Plan(file.bytes)), file.bytes.size());
    SetLe32At(noIndex, 4, static_cast<uint32_t>(noIndex.size() - 8));
    SetLe32At(noIndex, 24 + 8 + 16, 0);
    cases.push_back({"finished file without a frame count", file, noIndex, 4, AviDataEnd::EndOfFile, file.bytes.size(),
                     nullptr, 0});

    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        AviRepairPlan plan = Plan(c.bytes);
        ASSERT_EQ(plan.verdict, AviRepairVerdict::Repair);
        EXPECT_EQ(plan.frames, c.frames);
        EXPECT_EQ(plan.end, c.end);
        EXPECT_EQ(plan.dataEnd, c.dataEnd);
        EXPECT_EQ(plan.newLength, c.dataEnd + 8 + 16 * c.frames);
        Bytes repaired = Applied(c.bytes, plan);
        if (c.area) {
            EXPECT_EQ(CodeText(Le32(repaired, c.areaAt)), c.area);
            EXPECT_EQ(Le32(repaired, c.areaAt + 4), kStandardIndexSize - 8);
        }
        ExpectRepaired(repaired, c.file, c.frames);
    }
}

TEST(AviRepair, HostileSizesNeverReadOutsideTheFile)
{
    MuxFile file = Recording({6});
    const uint64_t third = file.frames[2].at + 4;
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
        {"strh size all ones", kStrh + 4, 0xFFFFFFFF, AviRepairVerdict::NothingRecoverable, 0},
        {"strf size all ones", kStrh + 64 + 4, 0xFFFFFFFF, AviRepairVerdict::NothingRecoverable, 0},
        {"strf size short", kStrh + 64 + 4, 12, AviRepairVerdict::NothingRecoverable, 0},
        {"RIFF size all ones", 4, 0xFFFFFFFF, AviRepairVerdict::Repair, 6},
        {"RIFF size as if whole", 4, static_cast<uint32_t>(file.bytes.size() - 8), AviRepairVerdict::Repair, 6},
        {"third frame size all ones", third, 0xFFFFFFFF, AviRepairVerdict::Repair, 2},
        {"third frame size wraps", third, 0xFFFFFFF8, AviRepairVerdict::Repair, 2},
        {"third frame size to the last byte", third, static_cast<uint32_t>(file.bytes.size() - third - 4),
         AviRepairVerdict::Repair, 3},
        // The search past the header's hole passes over a chunk that can't
        // be one and starts at the next.
        {"first frame size all ones", file.frames[0].at + 4, 0xFFFFFFFF, AviRepairVerdict::Repair, 5},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Bytes bytes = file.bytes;
        SetLe32At(bytes, row.at, row.value);
        AviRepairPlan plan = Plan(bytes);
        EXPECT_EQ(plan.verdict, row.verdict);
        EXPECT_EQ(plan.frames, row.frames);
        if (plan.verdict == AviRepairVerdict::Repair) {
            ReadBack back = Read(Applied(bytes, plan));
            EXPECT_EQ(back.index.size(), row.frames);
            EXPECT_TRUE(back.moviWalksWhole);
        }
    }
}

TEST(AviRepair, GarbageAndMutatedFilesNeverReadOutsideAndRepairToWholeFiles)
{
    MuxFile file = Recording({8, 3});
    uint32_t state = 12345;
    auto next = [&state] {
        state = state * 1103515245 + 12345;
        return state >> 8;
    };
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
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
        EXPECT_EQ(back.riffSize, repaired.size() - 8);
        EXPECT_EQ(back.index.size(), plan.frames);
        EXPECT_TRUE(back.moviWalksWhole);
        for (const ReadBack::Entry& entry : back.index) {
            uint64_t at = back.moviFourcc + entry.offset;
            ASSERT_LE(at + 8 + entry.size, repaired.size());
            EXPECT_EQ(Le32(repaired, at), entry.id);
        }
        EXPECT_EQ(Plan(repaired).verdict, AviRepairVerdict::Complete);
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

TEST(AviRepairFile, RepairsOnlyTheProgramsOwnDamagedRecordingsOnDiskInPlace)
{
    TempFolder folder;
    MuxFile file = Recording({10, 5});
    const Bytes damaged = Cut(file.bytes, file.bytes.size() - 33);
    const std::string damagedText(damaged.begin(), damaged.end());
    AviRepairOutcome outcome;
    auto repair = [&outcome](const std::wstring& path, AviRepairResult result) {
        ASSERT_EQ(RepairAviFile(path, &outcome), S_OK);
        EXPECT_EQ(outcome.result, result);
    };

    std::wstring ours = folder.File(L"CUT_11_25_2026_20_35_02.avi");
    ASSERT_TRUE(WriteFileBytes(ours, damagedText));
    repair(ours, AviRepairResult::Repaired);
    EXPECT_EQ(outcome.frames, 14u);
    EXPECT_EQ(outcome.end, AviDataEnd::TornChunk);
    EXPECT_EQ(outcome.lengthBefore, damaged.size());
    std::string onDisk = ReadFileBytes(ours);
    EXPECT_EQ(outcome.lengthAfter, onDisk.size());
    Bytes repaired(onDisk.begin(), onDisk.end());
    EXPECT_EQ(repaired, Applied(damaged, Plan(damaged)));
    ExpectRepaired(repaired, file, 14);
    // Again: the file is whole now and stays as it is.
    repair(ours, AviRepairResult::LeftComplete);
    EXPECT_EQ(ReadFileBytes(ours), onDisk);

    // Another program's file with the same bytes, and a file with nothing to recover: untouched.
    const std::pair<const wchar_t*, AviRepairResult> untouched[] = {
        {L"holiday.avi", AviRepairResult::NotOurRecording},
        {L"11_25_2026_20_35_03.avi", AviRepairResult::NothingRecoverable}};
    for (auto [name, result] : untouched) {
        std::string bytes = result == AviRepairResult::NothingRecoverable ? damagedText.substr(0, 150) : damagedText;
        ASSERT_TRUE(WriteFileBytes(folder.File(name), bytes));
        repair(folder.File(name), result);
        EXPECT_EQ(ReadFileBytes(folder.File(name)), bytes);
    }

    // A file that isn't there is not made.
    std::wstring missing = folder.File(L"11_25_2026_20_35_04.avi");
    EXPECT_TRUE(FAILED(RepairAviFile(missing, &outcome)));
    EXPECT_EQ(GetFileAttributesW(missing.c_str()), INVALID_FILE_ATTRIBUTES);
}
