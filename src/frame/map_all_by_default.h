#pragma once

namespace gae {

// A whole linkage-map construction from one MAP input file with the settled defaults: read and
// check, pairwise file, grouping (LOD 3.0), ordering (recombination frequency, five random
// starts, 2-opt on the open path), rippling (LOD, window 5), then the reports, the error scan
// and the written input files beside the input.
void MapAllByDefaultEntry(int path_len, const char* path, int* status, int threads);

}  // namespace gae
