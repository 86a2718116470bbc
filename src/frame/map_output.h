#pragma once

namespace gae {

// The caller's finished map, as the output export receives it.
struct MapOutputArgs {
  int num_markers = 0;
  const int* anchor = nullptr;          // by marker
  int num_mapped = 0;                   // linked markers
  int num_unlinked = 0;
  int num_groups = 0;                   // chromosomes
  const int* group_name_codes = nullptr;  // 19 character codes per chromosome
  const int* group_size = nullptr;      // markers on each chromosome
  const int* order = nullptr;           // all markers: linked in map order, unlinked, deleted
  const float* position = nullptr;      // cM, one per linked marker
  int write_lod = 0, write_rec = 0, write_dis = 0, write_qtl_files = 0;  // on when 1
};

// Writes the reports of a bi-parental map beside the input file: .sum and .mtp always, .lod,
// .rec and .dis by their switches. The input file is read again for names and genotypes.
void MapOutputEntry(int path_len, const char* path, const MapOutputArgs& args);

}  // namespace gae
