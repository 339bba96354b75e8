// Finding pins and filters in a graph, and splicing a filter between two
// connected pins.
#pragma once

#include <windows.h>
#include <dshow.h>

#include <initializer_list>

#include "base/com_ptr.h"

// The first pin of a direction whose name doesn't begin with '~', or of that
// exact name; the caller owns the reference.
IPin* GetFilterPin(IBaseFilter* filter, PIN_DIRECTION direction, const wchar_t* name);

// A filter's first input and first output pin; false when either is missing.
bool GetFilterPinPair(IBaseFilter* filter, ComPtr<IPin>& input, ComPtr<IPin>& output);

// The Smart Tee the capture graph builder put in. Its name is "Smart Tee"
// where the builder names it so; this platform's builder gives it a number,
// so it is then known by its class.
HRESULT FindSmartTee(IGraphBuilder* graph, IBaseFilter** tee);

// Undoes the links of the pins in `release`, in that order, then connects
// upstream to the filter's input and its output to downstream, with no
// media type. The results aren't looked at: a link that fails leaves that
// side of the branch open.
void SpliceFilterPins(IGraphBuilder* graph, std::initializer_list<IPin*> release, IPin* upstream, IPin* input,
                      IPin* output, IPin* downstream);
