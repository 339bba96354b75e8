// The file branch of a recording graph, assembled by hand where the
// platform's capture graph builder won't write files itself.
#pragma once

#include <windows.h>
#include <dshow.h>

#include "base/com_ptr.h"

// Adds the platform's AVI Mux and the program's own file sink to the graph,
// named "AVI Mux" and "File Writer", sets the file name and joins the mux to
// the sink before any stream reaches the mux. The caller owns the two
// references it hands out.
HRESULT AssembleFileBranch(IGraphBuilder* graph, const wchar_t* filePath, IBaseFilter** mux, IFileSinkFilter** sink);

// Takes an assembled branch out of the graph and assembles a fresh one for
// the same file, with the new mux's first input. This platform's mux fails
// (a null read inside it) when an input that was joined and let go is
// joined again, so a branch whose mux input was let go is made anew.
HRESULT RenewFileBranch(IGraphBuilder* graph, const wchar_t* filePath, ComPtr<IBaseFilter>& mux,
                        ComPtr<IFileSinkFilter>& sink, ComPtr<IPin>& muxInput);
