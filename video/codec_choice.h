// The user's choice of codec for a media subtype, from the lines of the
// last trial.
#pragma once

#include <windows.h>

#include "video/video_sources.h"

// Pairs the codec of that line of usableCodecs with the subtype for this
// run and, with `save`, in the options file's list too, which is then
// written. A line that names no installed codec is reported and changes
// nothing.
HRESULT SelectUsableCodec(int line, VideoSubtype subtype, bool save);
