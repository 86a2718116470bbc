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

inline constexpr int kNumCallCodes = 6;  // A, H, B, D, R, missing
inline constexpr uint8_t kMissingCall = 5;

uint8_t CallCode(char letter);

struct GroupCalls {
  HmmDesign design;
  int32_t num_markers = 0;
  int32_t num_individuals = 0;
  std::vector<uint8_t> codes;        // marker-major: codes[m * num_individuals + i]
  std::vector<int32_t> categories;   // 1 codominant, 12 dominant, 10 recessive
  std::vector<int64_t> typed;        // calls that are not missing, per marker
};

GroupCalls MakeGroupCalls(int32_t population_type, int32_t num_individuals, const std::vector<char>& types,
                          const std::vector<int32_t>& categories);

// Whether a call agrees with a state's genotype class.
bool CallMatches(uint8_t code, int8_t genotype_class);

// Per marker, the chance of each call code in each state: [m][code * S + state].
using EmissionTable = std::array<double, kNumCallCodes * kMaxChainStates>;
std::vector<EmissionTable> MakeEmissions(const GroupCalls& calls, double error_rate);

}  // namespace gae
