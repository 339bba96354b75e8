// The header of a one-stream video AVI file: RIFF 'AVI ' and its LIST 'hdrl'
// (avih, then a LIST 'strl' with strh and strf). Written twice in a
// recording's life: provisionally when the file is made, so that a
// recording cut short still says what its frames are, and again by the
// repair of such a file, with the counts it found.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

// What the header says of the video stream, apart from the counts.
struct AviVideoStream {
    std::vector<uint8_t> format;  // the strf payload: a BITMAPINFOHEADER and any bytes after it
    uint32_t handler = 0;  // strh fccHandler
    uint32_t rate = 0;  // frames per second as rate / scale
    uint32_t scale = 0;
    uint32_t microSecondsPerFrame = 0;
};

// The counts a header carries besides the stream.
struct AviHeaderCounts {
    uint32_t riffSize = 0;  // the RIFF chunk's size field: the file's length less 8
    uint32_t frames = 0;
    uint32_t flags = 0;  // avih dwFlags
    uint32_t suggestedBufferSize = 0;
    uint32_t maxBytesPerSec = 0;
};

// The stream of a strf payload (which begins with a BITMAPINFOHEADER) at a
// frame time in 100 ns units; a frame time of 0 or less counts as 30 frames
// per second. The handler is the bitmap's compression code, or 'DIB ' for
// uncompressed and other codes below 256 that are no four-character code.
AviVideoStream AviVideoStreamOf(const std::vector<uint8_t>& format, int64_t avgTimePerFrame100ns);

// RIFF 'AVI ' and LIST 'hdrl', nothing after: the caller follows it with
// LIST 'movi' (and JUNK to reach it). Its length is 172 bytes plus the
// format, padded to even.
std::vector<uint8_t> BuildAviHeader(const AviVideoStream& stream, const AviHeaderCounts& counts);

// The header written at the start of a new recording's file, before the
// AVI Mux runs: RIFF size 0 and no frames, but the stream's format, which a
// file the mux never finished holds nowhere else.
//
// The caller relies on this: for the same format, it is shorter than the
// header area the mux reserves at the start of the file (by over 32 KB: the
// mux leaves room for the same format plus an extended header and a super
// index of 2000 entries), and the mux writes nothing there until it stops,
// so the frames never overwrite it and a normal stop overwrites all of it.
std::vector<uint8_t> BuildProvisionalAviHeader(const BITMAPINFOHEADER& format, int64_t avgTimePerFrame100ns);
// The same, for a format with bytes after the BITMAPINFOHEADER (palette,
// masks, codec data), as the mux's strf carries them.
std::vector<uint8_t> BuildProvisionalAviHeader(const std::vector<uint8_t>& format, int64_t avgTimePerFrame100ns);
