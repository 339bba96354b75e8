// Whether the platform lists any filter category. The graph's intelligent
// connect (IGraphBuilder::Connect, and RenderStream through it) looks through
// that list for a filter to put between two pins that don't join directly.
#pragma once

// Asked once, at the first call.
bool FilterCategoriesListed();
