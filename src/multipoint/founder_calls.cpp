#include "multipoint/founder_calls.h"

#include "multipoint/founder_design.h"

namespace gae {

int FounderAllele(int32_t pattern, int founders, int f) {
  for (int k = f + 1; k < founders; ++k) pattern /= 10;
  return pattern % 10;
}

GroupCalls MakeFounderCalls(int32_t type, int32_t num_individuals, const std::vector<char>& letters,
                            const std::vector<int32_t>& patterns) {
  GroupCalls g;
  g.design = MakeFounderDesign(type);
  const int f = g.design.founders;
  g.num_markers = static_cast<int32_t>(patterns.size());
  g.num_individuals = num_individuals;
  g.categories = patterns;
  g.codes.resize(letters.size());
  g.typed.assign(g.num_markers, 0);
  for (std::size_t k = 0; k < letters.size(); ++k) {
    const int founder = letters[k] - 'A';
    g.codes[k] = founder >= 0 && founder < f ? static_cast<uint8_t>(founder) : kMissingCall;
    if (g.codes[k] != kMissingCall) ++g.typed[k / static_cast<std::size_t>(num_individuals)];
  }
  g.agrees.assign(static_cast<std::size_t>(g.num_markers) * kNumCallCodes, 0);
  for (int32_t m = 0; m < g.num_markers; ++m) {
    int alleles = 0;
    uint8_t* agrees = &g.agrees[static_cast<std::size_t>(m) * kNumCallCodes];
    for (int founder = 0; founder < f; ++founder) {
      bool first = true;
      for (int code = 0; code < founder; ++code)
        if (FounderAllele(patterns[m], f, code) == FounderAllele(patterns[m], f, founder)) first = false;
      alleles += first;
    }
    for (int s = 0; s < g.design.num_states; ++s) {
      const int founder = FounderOfState(g.design, s);
      for (int code = 0; code < f; ++code)
        if (FounderAllele(patterns[m], f, code) == FounderAllele(patterns[m], f, founder))
          agrees[code] |= static_cast<uint8_t>(1 << s);
      agrees[kMissingCall] |= static_cast<uint8_t>(1 << s);
    }
    g.shown.push_back(static_cast<int8_t>(alleles));
  }
  return g;
}

}  // namespace gae
