#include "errorscan/founder_lines.h"

#include "errorscan/generation_chain.h"
#include "errorscan/population_states.h"

namespace gae {

std::vector<float> ClonalTriples(float r12, float r23) {
  // One factor for each parent and interval: that parent's allele is kept or switched.
  auto factor = [](int from, int to, float r) {
    const float first = ((from >> 1) == (to >> 1)) ? 1.0f - r : r;
    const float second = ((from & 1) == (to & 1)) ? 1.0f - r : r;
    return first * second;
  };
  std::vector<float> joint(64);
  for (int l = 0; l < 4; ++l)
    for (int m = 0; m < 4; ++m)
      for (int r = 0; r < 4; ++r) joint[(l * 4 + m) * 4 + r] = factor(l, m, r12) * factor(m, r, r23) / 4.0f;
  return joint;
}

FounderHaplotype PureFounder(int32_t founders, int32_t founder) {
  FounderHaplotype h;
  h.founders = founders;
  h.chances.assign(static_cast<std::size_t>(founders) * founders * founders, 0.0f);
  h.chances[(founder * founders + founder) * founders + founder] = 1.0f;
  return h;
}

namespace {

// Index of the founder triple x with the loci outside `mask` (bit 4 locus 1, 2 locus 2,
// 1 locus 3) set to founder 0: the cell of a marginal law.
int Project(int x, int mask, int f) {
  const int x1 = x / (f * f), x2 = (x / f) % f, x3 = x % f;
  return (((mask & 4) ? x1 : 0) * f + ((mask & 2) ? x2 : 0)) * f + ((mask & 1) ? x3 : 0);
}

// The marginal laws of a haplotype on each subset of the loci.
std::vector<std::vector<float>> Marginals(const FounderHaplotype& h) {
  const int f = h.founders;
  const int cells = f * f * f;
  std::vector<std::vector<float>> m(8, std::vector<float>(cells, 0.0f));
  for (int mask = 0; mask < 8; ++mask)
    for (int x = 0; x < cells; ++x) m[mask][Project(x, mask, f)] += h.chances[x];
  return m;
}

}  // namespace

FounderHaplotype Transmit(const FounderHaplotype& first, const FounderHaplotype& second,
                          const std::array<float, 8>& origins) {
  const int f = first.founders;
  const int cells = f * f * f;
  const auto m1 = Marginals(first);
  const auto m2 = Marginals(second);
  FounderHaplotype out;
  out.founders = f;
  out.chances.assign(cells, 0.0f);
  for (int x = 0; x < cells; ++x) {
    float sum = 0.0f;
    for (int o = 0; o < 8; ++o) {
      if (origins[o] == 0.0f) continue;
      const int from_first = ~o & 7;
      sum += origins[o] * m1[from_first][Project(x, from_first, f)] * m2[o][Project(x, o, f)];
    }
    out.chances[x] = sum;
  }
  return out;
}

std::vector<float> PureLineTriples(int32_t design, int32_t type, float r12, float r23, float r13) {
  const bool four = design == kFourWayDesign && (type == 1 || type == 2);
  const bool eight = design == kEightWayDesign && (type == 3 || type == 4);
  if (!four && !eight) return {};
  const int f = four ? 4 : 8;
  const std::array<float, 8> meiosis = MeiosisOrigins(r12, r23, r13);
  // First crosses of sister founders: A x B, C x D (and E x F, G x H).
  std::vector<FounderHaplotype> stage;
  for (int k = 0; k < f; k += 2) stage.push_back(Transmit(PureFounder(f, k), PureFounder(f, k + 1), meiosis));
  // Each further cross of the funnel joins two gametes of the stage before.
  while (stage.size() > 2) {
    std::vector<FounderHaplotype> next;
    for (std::size_t k = 0; k < stage.size(); k += 2) next.push_back(Transmit(stage[k], stage[k + 1], meiosis));
    stage = std::move(next);
  }
  const bool doubled = (type == 1 || type == 3);
  const std::array<float, 8> last = doubled ? meiosis : InbredOrigins(r12, r23, r13);
  return Transmit(stage[0], stage[1], last).chances;
}

}  // namespace gae
