// Marker binning: markers whose genotypes agree wherever both are typed carry the same
// information for a map, so all but one of them are redundant.
//
// Identical genotype vectors are first gathered by hashing. The distinct vectors are then taken
// from the most completely typed down; each joins the first bin whose consensus it agrees with
// wherever both are typed, or opens a new bin. A bin's consensus is filled in by its members, and
// a value once set never changes, so any two members of a bin agree wherever both are typed.
// The comparisons run on bit planes: a typed mask and four bits of the letter per line, 64
// lines to a word, and most pairs part on their first word.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace gae {

struct BinningData {
  int32_t num_markers = 0, num_individuals = 0;
  const char* letters = nullptr;  // the reader's letters, num_individuals per marker, 'X' missing
  // Markers of different classes never share a bin (the caller's choice: the category, and the
  // anchor group when anchors count).
  std::span<const int32_t> classes;
};

struct BinningOptions {
  float max_missing_rate = 1.0f;  // a marker missing on more of its lines is dropped
  float min_distortion_p = 0.0f;  // a marker whose segregation test gives a smaller p is dropped
  int method = 1;                 // 1 keep the member with the fewest missing; 2 the consensus
  // Whether a missing value agrees with any value; if not, only identical vectors share a bin.
  bool missing_agrees = true;
  // Near-identical markers: the share of the lines typed in both where a newcomer may differ
  // from a bin's consensus and still join it (a genotyping error is then no reason to map a
  // marker apart). 0 asks for agreement everywhere.
  float tolerance = 0.0f;
};

struct MarkerBin {
  std::vector<int32_t> members;  // 0-based marker numbers, the representative first
  std::string letters;           // what the bin keeps: the representative's or the consensus
};

struct BinningResult {
  std::vector<MarkerBin> bins;  // by the file position of their representatives
  std::vector<int32_t> dropped_missing, dropped_distortion;  // 0-based
};

// `p_values`: per marker, the p-value of its segregation test (1 where untested).
BinningResult BinMarkers(const BinningData& data, std::span<const float> p_values,
                         const BinningOptions& options);

}  // namespace gae
