#include "multipoint/clonal_suspects.h"

namespace gae {

std::vector<SuspectCall> ClonalSuspects(const ClonalCalls& calls, const ClonalChain& chain, double threshold) {
  std::vector<SuspectCall> out;
  const std::size_t length = chain.order.size();
  const std::size_t n = static_cast<std::size_t>(calls.num_individuals);
  if (chain.pass.alpha.size() != length * n * kClonalStates) return out;
  for (std::size_t p = 0; p < length; ++p) {
    const int32_t marker = chain.order[p];
    // Without errors a call has chance 1 in the states that show its type and 0 elsewhere.
    const ClonalEmission shows = MakeClonalEmission(calls.categories[static_cast<std::size_t>(marker)], chain.phases[p], 0.0);
    for (std::size_t i = 0; i < n; ++i) {
      const uint8_t code = calls.codes[static_cast<std::size_t>(marker) * n + i];
      if (code == kClonalMissing) continue;
      const std::size_t cell = (i * length + p) * kClonalStates;
      double z = 0, agree = 0;
      for (int s = 0; s < kClonalStates; ++s) {
        const double g = chain.pass.alpha[cell + static_cast<std::size_t>(s)] * chain.pass.beta[cell + static_cast<std::size_t>(s)];
        z += g;
        if (shows[static_cast<std::size_t>(code) * kClonalStates + static_cast<std::size_t>(s)] > 0.5) agree += g;
      }
      if (z > 0 && agree / z < threshold) out.push_back({marker, static_cast<int32_t>(i), agree / z});
    }
  }
  return out;
}

}  // namespace gae
