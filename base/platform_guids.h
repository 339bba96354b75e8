// Identifiers of the platform that mingw-w64's headers or import libraries
// don't carry, each defined once here. selectany lets every file that
// includes this share the one definition.
#pragma once

#include <guiddef.h>

extern "C" {
// MSXML 6 document.
__declspec(selectany) extern const CLSID CLSID_DOMDocument60 = {
    0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
// The Enhanced Video Renderer.
__declspec(selectany) extern const CLSID CLSID_EnhancedVideoRenderer = {
    0xfa10746c, 0x9b63, 0x4b6c, {0xbc, 0x49, 0xfc, 0x30, 0x0e, 0xa5, 0xf2, 0x56}};
// The Null Renderer.
__declspec(selectany) extern const CLSID CLSID_NullRenderer = {
    0xc1f400a4, 0x3f08, 0x11d3, {0x9f, 0x0b, 0x00, 0x60, 0x08, 0x03, 0x9e, 0x37}};
// evr.h declares it; no library defines it.
__declspec(selectany) extern const IID IID_IMFVideoDisplayControl = {
    0xa490b1e4, 0xab84, 0x4d31, {0xa1, 0xb2, 0x18, 0x1e, 0x03, 0xb1, 0x07, 0x7a}};
}
