// A group's genotype calls as the chain reads them, and the chance of each call given the true
// genotype under a genotyping-error rate e: a call of the true class has chance 1 - e, the
// error spreads evenly over the other calls a marker of its kind can show. A dominant call
// ("A or H") and a recessive call ("H or B") match two classes; a missing call matches all.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "multipoint/hmm_design.h"

namespace gae {

// A, H, B, D, R for bi-parental calls; a founder's letter A to H for pure lines; then missing.
inline constexpr int kNumCallCodes = 9;
inline constexpr uint8_t kMissingCall = 8;

uint8_t CallCode(char letter);

struct GroupCalls {
  HmmDesign design;
  int32_t num_markers = 0;
  int32_t num_individuals = 0;
  std::vector<uint8_t> codes;        // marker-major: codes[m * num_individuals + i]
  std::vector<int32_t> categories;   // 1 codominant, 12 dominant, 10 recessive
  std::vector<int64_t> typed;        // calls that are not missing, per marker
  // Per marker and call code, the states the call agrees with (bit s for state s), and the
  // number of distinct calls the marker can show (among which an error spreads).
  std::vector<uint8_t> agrees;       // [m * kNumCallCodes + code]
  std::vector<int8_t> shown;

  bool Agrees(int32_t marker, uint8_t code, int state) const {
    return (agrees[static_cast<std::size_t>(marker) * kNumCallCodes + code] >> state & 1) != 0;
  }
};

GroupCalls MakeGroupCalls(int32_t population_type, int32_t num_individuals, const std::vector<char>& types,
                          const std::vector<int32_t>& categories);

// Whether a bi-parental call agrees with a state's genotype class.
bool CallMatches(uint8_t code, int8_t genotype_class);

// Per marker, the chance of each call code in each state: [m][code * S + state].
using EmissionTable = std::array<double, kNumCallCodes * kMaxChainStates>;
std::vector<EmissionTable> MakeEmissions(const GroupCalls& calls, double error_rate);

}  // namespace gae
