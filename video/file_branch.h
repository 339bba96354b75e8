// The file branch of a recording graph, assembled by hand where the
// platform's capture graph builder won't write files itself.
#pragma once

#include <windows.h>
#include <dshow.h>

// Adds the platform's AVI Mux and the program's own file sink to the graph,
// named "AVI Mux" and "File Writer", sets the file name and joins the mux to
// the sink before any stream reaches the mux. The caller owns the two
// references it hands out.
HRESULT AssembleFileBranch(IGraphBuilder* graph, const wchar_t* filePath, IBaseFilter** mux, IFileSinkFilter** sink);
