#include "multipoint/group_calls.h"

namespace gae {

uint8_t CallCode(char letter) {
  switch (letter) {
    case 'A': return 0;
    case 'H': return 1;
    case 'B': return 2;
    case 'D': return 3;
    case 'R': return 4;
    default: return kMissingCall;
  }
}

bool CallMatches(uint8_t code, int8_t c) {
  switch (code) {
    case 0: case 1: case 2: return c == code;
    case 3: return c != 2;
    case 4: return c != 0;
    default: return true;
  }
}

GroupCalls MakeGroupCalls(int32_t population_type, int32_t num_individuals, const std::vector<char>& types,
                          const std::vector<int32_t>& categories) {
  GroupCalls g;
  g.design = MakeHmmDesign(population_type);
  g.num_markers = static_cast<int32_t>(categories.size());
  g.num_individuals = num_individuals;
  g.categories = categories;
  g.codes.resize(types.size());
  g.typed.assign(g.num_markers, 0);
  for (std::size_t k = 0; k < types.size(); ++k) {
    g.codes[k] = CallCode(types[k]);
    if (g.codes[k] != kMissingCall) ++g.typed[k / num_individuals];
  }
  const HmmDesign& d = g.design;
  g.agrees.assign(static_cast<std::size_t>(g.num_markers) * kNumCallCodes, 0);
  for (int32_t m = 0; m < g.num_markers; ++m) {
    // A codominant marker shows every class of the design; a dominant or recessive one two.
    g.shown.push_back(static_cast<int8_t>(categories[m] == 1 ? d.num_classes : 2));
    for (int code = 0; code < kNumCallCodes; ++code)
      for (int s = 0; s < d.num_states; ++s)
        if (CallMatches(static_cast<uint8_t>(code), d.state_class[s]))
          g.agrees[static_cast<std::size_t>(m) * kNumCallCodes + code] |= static_cast<uint8_t>(1 << s);
  }
  return g;
}

std::vector<EmissionTable> MakeEmissions(const GroupCalls& calls, double e) {
  const HmmDesign& d = calls.design;
  std::vector<EmissionTable> out(calls.num_markers);
  for (int32_t m = 0; m < calls.num_markers; ++m) {
    const int shown = calls.shown[m];
    const double wrong = shown > 1 ? e / (shown - 1) : 0.0;
    EmissionTable& t = out[m];
    t.fill(0);
    for (int code = 0; code < kNumCallCodes; ++code)
      for (int s = 0; s < d.num_states; ++s) {
        double p = 1.0;
        if (code != kMissingCall) {
          p = calls.Agrees(m, static_cast<uint8_t>(code), s) ? 1 - e : wrong;
        }
        t[code * kMaxChainStates + s] = p;
      }
  }
  return out;
}

}  // namespace gae
