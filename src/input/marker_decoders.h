// One decoder per kind of population. Each takes one marker row and writes one letter per
// token and the marker's category. A refusal stores its code in `MessageCode`, prints its line
// and returns false.
//
// Letters: A, H, B, D, R, X for bi-parental populations (P1, F1, P2, P1 or F1, F1 or P2,
// missing); A to K and X for clonal F1 and double cross (the twelve two-letter types); A to H
// and X for pure lines (the founder whose allele the line carries).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "input/marker_token.h"

namespace gae {

struct MarkerRow {
  int32_t marker = 0;                  // 1-based number of the row
  std::string_view category;           // the 8-character category field (tools 20 and 30)
  std::span<const MarkerToken> tokens; // one per line of the population
};

bool DecodeBiparental(int32_t population_type, const MarkerRow& row, std::span<char> letters,
                      int32_t& category);
bool DecodeSegmentLines(const MarkerRow& row, std::span<char> letters, int32_t& category);
bool DecodeNestedAssociation(int32_t population_type, const MarkerRow& row,
                             std::span<char> letters, int32_t& category);
bool DecodeClonal(int32_t population_type, const MarkerRow& row, std::span<char> letters,
                  int32_t& category);
bool DecodePureLine(int32_t population_type, const MarkerRow& row, std::span<char> letters,
                    int32_t& category);

// The decoder of a tool code, as the marker section chooses it.
bool DecodeMarkerRow(int tool_code, int32_t population_type, const MarkerRow& row,
                     std::span<char> letters, int32_t& category);

// Shared by the decoders: store `code` and print the marker line.
bool MarkerFailure(int code, int marker, int line, std::string_view token);

}  // namespace gae
