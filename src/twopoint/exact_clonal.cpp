#include "twopoint/exact_clonal.h"

#include <cmath>
#include <algorithm>
#include <limits>
#include <vector>

#include "twopoint/exact_search.h"

namespace gae {

namespace {

constexpr double kNegInf = -std::numeric_limits<double>::infinity();

// The observed class (1..4) of hidden alleles x (first parent: 0 A, 1 B) and y (second
// parent: 0 C, 1 D) at a marker of `category`, as the marker reader codes its tokens.
int ClassOf(int category, int x, int y) {
  switch (category) {
    case 1: return 1 + 2 * x + y;          // AC, AD, BC, BD
    case 2: return 1 + y;                  // XC, XD: the first parent's alleles look alike
    case 3: return 1 + 2 * x;              // AX, BX: the second parent's alleles look alike
    case 4: return x == y ? 1 + 3 * x : 2;  // A = C, B = D: AA, AB, BB
    default: return x != y ? 1 + 3 * x : 2;  // A = D, B = C: AA (A, D), AB, BB (B, C)
  }
}

constexpr int kKeys = 5 * 5 * 5 * 5;
int KeyOf(int k00, int k01, int k10, int k11) { return ((k00 * 5 + k01) * 5 + k10) * 5 + k11; }

double ChanceOfKey(int key, double a, double b) {
  const int k11 = key % 5, k10 = key / 5 % 5, k01 = key / 25 % 5, k00 = key / 125;
  return k00 * (1 - a) * (1 - b) + k01 * (1 - a) * b + k10 * a * (1 - b) + k11 * a * b;
}

double Along(int phase, double r) { return phase != 0 ? 1.0 - r : r; }

// The joint search's grid over [0, 1] in each parent's frequency.
constexpr int kJointSteps = 32;
constexpr int kJointPoints = kJointSteps + 1;
double JointPoint(int i) { return static_cast<double>(i) / kJointSteps; }

// ln of every possible class chance on the grids, taken once: the shared frequency's grid in
// each of the four phase combinations, and the joint grid of both frequencies. Searches then
// cost multiplications only.
struct LogTables {
  std::vector<float> shared;  // [key][phase combination][grid point]
  std::vector<float> joint;   // [key][a point][b point]
  const float* Shared(int key, int combo) const {
    return shared.data() + (static_cast<std::size_t>(key) * 4 + combo) * kExactGridPoints;
  }
  const float* Joint(int key) const {
    return joint.data() + static_cast<std::size_t>(key) * kJointPoints * kJointPoints;
  }
};

float LogOrImpossible(double p) { return p > 0.0 ? static_cast<float>(std::log(p)) : -1e30f; }

const LogTables& Tables() {
  static const LogTables tables = [] {
    LogTables t;
    t.shared.resize(static_cast<std::size_t>(kKeys) * 4 * kExactGridPoints);
    t.joint.resize(static_cast<std::size_t>(kKeys) * kJointPoints * kJointPoints);
    for (int key = 0; key < kKeys; ++key) {
      for (int combo = 0; combo < 4; ++combo) {
        float* row = t.shared.data() + (static_cast<std::size_t>(key) * 4 + combo) * kExactGridPoints;
        for (int j = 0; j < kExactGridPoints; ++j) {
          const double r = ExactGridPoint(j);
          row[j] = LogOrImpossible(ChanceOfKey(key, Along(combo >> 1, r), Along(combo & 1, r)));
        }
      }
      float* plane = t.joint.data() + static_cast<std::size_t>(key) * kJointPoints * kJointPoints;
      for (int i = 0; i < kJointPoints; ++i)
        for (int j = 0; j < kJointPoints; ++j)
          plane[i * kJointPoints + j] = LogOrImpossible(ChanceOfKey(key, JointPoint(i), JointPoint(j)));
    }
    return t;
  }();
  return tables;
}

// Cells with the same hidden make-up have the same chance: the likelihood runs over groups.
struct Group {
  double n = 0.0;
  double k00 = 0.0, k01 = 0.0, k10 = 0.0, k11 = 0.0;
  int key = 0;  // the four counts (each at most 4) as one number, for the tables below
  double Chance(double a, double b) const {
    return k00 * (1 - a) * (1 - b) + k01 * (1 - a) * b + k10 * a * (1 - b) + k11 * a * b;
  }
  double DA(double b) const { return -k00 * (1 - b) - k01 * b + k10 * (1 - b) + k11 * b; }
  double DB(double a) const { return -k00 * (1 - a) + k01 * (1 - a) - k10 * a + k11 * a; }
  double DAB() const { return k00 - k01 - k10 + k11; }
};

struct Groups {
  int count = 0;
  double total = 0.0;
  Group g[16];
};

Groups GroupCells(const ClonalCellModel& model, const float cells[16]) {
  Groups out;
  for (int c = 0; c < 16; ++c) {
    const auto& k = model.k[c];
    if (cells[c] == 0.0f || k[0] + k[1] + k[2] + k[3] == 0) continue;
    int s = 0;
    while (s < out.count && !(out.g[s].k00 == k[0] && out.g[s].k01 == k[1] && out.g[s].k10 == k[2] &&
                              out.g[s].k11 == k[3]))
      ++s;
    if (s == out.count) {
      out.g[s].k00 = k[0];
      out.g[s].k01 = k[1];
      out.g[s].k10 = k[2];
      out.g[s].k11 = k[3];
      out.g[s].key = KeyOf(k[0], k[1], k[2], k[3]);
      ++out.count;
    }
    out.g[s].n += cells[c];
    out.total += cells[c];
  }
  return out;
}

double LogLik(const Groups& gs, double a, double b) {
  double sum = 0.0;
  for (int s = 0; s < gs.count; ++s) {
    const double p = gs.g[s].Chance(a, b);
    if (!(p > 0.0)) return kNegInf;
    sum += gs.g[s].n * std::log(p);
  }
  return sum;
}

// For a fixed frequency of one parent the chance of every class is linear in the other's, so
// the log-likelihood is concave in it and its one maximum on [0, 1] is found from anywhere.
double BestB(const Groups& gs, double a) {
  const auto d = [&](double b, double& g, double& h) {
    g = h = 0.0;
    for (int s = 0; s < gs.count; ++s) {
      const double q = gs.g[s].DB(a) / gs.g[s].Chance(a, b);
      g += gs.g[s].n * q;
      h -= gs.g[s].n * q * q;
    }
  };
  return RefineMaximum(d, 0.0, 1.0, 0.5, true, true);
}
double BestA(const Groups& gs, double b) {
  const auto d = [&](double a, double& g, double& h) {
    g = h = 0.0;
    for (int s = 0; s < gs.count; ++s) {
      const double q = gs.g[s].DA(b) / gs.g[s].Chance(a, b);
      g += gs.g[s].n * q;
      h -= gs.g[s].n * q * q;
    }
  };
  return RefineMaximum(d, 0.0, 1.0, 0.5, true, true);
}

// The shared frequency: a = r or 1 - r by the first parent's phase, b likewise.
struct Shared {
  double r = 0.5;
  int phase_a = 0, phase_b = 0;
  double log_lik = kNegInf;
};

// `symmetric`: the model reads the same with the parents exchanged, so the phase combination
// (repulsion, coupling) is that of (coupling, repulsion) and is not searched again.
Shared BestShared(const Groups& gs, bool a_informs, bool b_informs, bool symmetric) {
  struct Combo {
    int pa, pb;
    ExactGrid grid;
  };
  Combo combos[4];
  int count = 0;
  for (int pa = 0; pa <= (a_informs ? 1 : 0); ++pa)
    for (int pb = 0; pb <= (b_informs ? 1 : 0); ++pb)
      if (!(symmetric && pa == 1 && pb == 0)) combos[count++] = {pa, pb, {}};
  float overall = -std::numeric_limits<float>::infinity();
  const LogTables& tables = Tables();
  for (int c = 0; c < count; ++c) {
    for (int s = 0; s < gs.count; ++s) {
      const float n = static_cast<float>(gs.g[s].n);
      const float* row = tables.Shared(gs.g[s].key, combos[c].pa * 2 + combos[c].pb);
      for (int j = 0; j < kExactGridPoints; ++j) combos[c].grid[j] += n * row[j];
    }
    for (float v : combos[c].grid) overall = std::max(overall, v);
  }
  Shared best;
  for (int c = 0; c < count; ++c) {
    const double sa = combos[c].pa != 0 ? -1.0 : 1.0, sb = combos[c].pb != 0 ? -1.0 : 1.0;
    const auto d = [&](double r, double& g, double& h) {
      g = h = 0.0;
      const double a = Along(combos[c].pa, r), b = Along(combos[c].pb, r);
      for (int s = 0; s < gs.count; ++s) {
        const Group& x = gs.g[s];
        const double p = x.Chance(a, b);
        const double p1 = x.DA(b) * sa + x.DB(a) * sb;
        const double p2 = 2.0 * x.DAB() * sa * sb;
        g += x.n * p1 / p;
        h += x.n * (p2 / p - (p1 / p) * (p1 / p));
      }
    };
    int candidates[2];
    const int n = ExactGridCandidates(combos[c].grid, overall, ExactGridMargin(gs.total), candidates);
    for (int k = 0; k < n; ++k) {
      const double r = RefineGridPoint(d, candidates[k]);
      const double l = LogLik(gs, Along(combos[c].pa, r), Along(combos[c].pb, r));
      if (l > best.log_lik) best = {r, combos[c].pa, combos[c].pb, l};
    }
  }
  return best;
}

// Both parents seen and not read off separately: the best point of the joint grid, then the
// profile over a (b at its best for each a, exact since ln L is concave in b) by golden-section
// search between the grid point's neighbours.
void JointMaximum(const Groups& gs, double& a_hat, double& b_hat) {
  std::vector<float> sum(kJointPoints * kJointPoints, 0.0f);
  const LogTables& tables = Tables();
  for (int s = 0; s < gs.count; ++s) {
    const float n = static_cast<float>(gs.g[s].n);
    const float* plane = tables.Joint(gs.g[s].key);
    for (int k = 0; k < kJointPoints * kJointPoints; ++k) sum[k] += n * plane[k];
  }
  const int best = static_cast<int>(std::max_element(sum.begin(), sum.end()) - sum.begin());
  const int i = best / kJointPoints;
  const auto profile = [&](double a) { return LogLik(gs, a, BestB(gs, a)); };
  double lo = JointPoint(std::max(0, i - 1)), hi = JointPoint(std::min(kJointSteps, i + 1));
  const double ratio = 0.5 * (std::sqrt(5.0) - 1.0);
  double x1 = hi - ratio * (hi - lo), x2 = lo + ratio * (hi - lo);
  double f1 = profile(x1), f2 = profile(x2);
  while (hi - lo > 1e-7) {
    if (f1 >= f2) {
      hi = x2;
      x2 = x1;
      f2 = f1;
      x1 = hi - ratio * (hi - lo);
      f1 = profile(x1);
    } else {
      lo = x1;
      x1 = x2;
      f1 = f2;
      x2 = lo + ratio * (hi - lo);
      f2 = profile(x2);
    }
  }
  a_hat = 0.5 * (lo + hi);
  // The ends of the range are maxima of their own when the likelihood keeps rising there.
  for (double end : {0.0, 1.0})
    if (std::fabs(end - a_hat) < 2.0 / kJointSteps && profile(end) > profile(a_hat)) a_hat = end;
  b_hat = BestB(gs, a_hat);
}

// Every class made of a single kind: the likelihood splits into one binomial for each parent.
bool Separable(const Groups& gs) {
  for (int s = 0; s < gs.count; ++s) {
    const Group& x = gs.g[s];
    if ((x.k00 != 0) + (x.k01 != 0) + (x.k10 != 0) + (x.k11 != 0) != 1) return false;
  }
  return true;
}

float Lod(double gain) { return static_cast<float>(gain / std::log(10.0)); }
bool Gains(double gain, double base) { return gain > 1e-9 * (1.0 + std::fabs(base)); }

}  // namespace

ClonalCellModel BuildClonalCellModel(bool clonal, int first, int second) {
  ClonalCellModel model;
  const int max_category = clonal ? 4 : 5;
  if (first < 1 || second < first || second > max_category) return model;
  model.known = true;
  // Hidden alleles: the first parent's x1, x2 and the second parent's y1, y2 at the two markers.
  for (int x1 = 0; x1 < 2; ++x1)
    for (int x2 = 0; x2 < 2; ++x2)
      for (int y1 = 0; y1 < 2; ++y1)
        for (int y2 = 0; y2 < 2; ++y2) {
          const int cell = ClonalCell(ClassOf(first, x1, y1), ClassOf(second, x2, y2));
          ++model.k[cell][2 * (x1 != x2) + (y1 != y2)];
        }
  return model;
}

double ClonalLogLikelihood(const ClonalCellModel& model, const float cells[16], double a, double b) {
  return LogLik(GroupCells(model, cells), a, b);
}

ClonalPairResult ExactClonalPair(bool clonal, int first, int second, const float cells[16]) {
  ClonalPairResult out;
  float n = 0.0f;
  for (int k = 0; k < 16; ++k) n += cells[k];
  if (!(n >= 1.0f)) return out;
  out.phase = 1;
  static const std::array<ClonalCellModel, 72> models = [] {
    std::array<ClonalCellModel, 72> all{};
    for (int c = 0; c < 2; ++c)
      for (int f = 0; f < 6; ++f)
        for (int g = 0; g < 6; ++g) all[static_cast<std::size_t>(c * 36 + f * 6 + g)] = BuildClonalCellModel(c == 1, f, g);
    return all;
  }();
  if (first < 0 || first > 5 || second < 0 || second > 5) return out;
  const ClonalCellModel& model = models[static_cast<std::size_t>((clonal ? 36 : 0) + first * 6 + second)];
  if (!model.known) return out;
  bool a_informs = false, b_informs = false;
  for (const auto& k : model.k) {
    a_informs |= k[0] != k[2] || k[1] != k[3];
    b_informs |= k[0] != k[1] || k[2] != k[3];
  }
  const Groups gs = GroupCells(model, cells);
  const double base = LogLik(gs, 0.5, 0.5);
  const bool same_parents = first >= 4 && second >= 4;
  // Each parent's frequency at its joint maximum. The shared frequency follows from it where
  // the likelihood splits by parent or sees one parent only; otherwise it has a search of its own.
  double a = 0.5, b = 0.5;
  Shared shared;
  shared.log_lik = base;
  const bool separable = a_informs && b_informs && Separable(gs);
  bool symmetric = true;
  for (const auto& k : model.k) symmetric &= k[1] == k[2];
  if (same_parents) {
    shared = BestShared(gs, a_informs, b_informs, symmetric);
  } else if (separable) {
    double rec_a = 0.0, rec_b = 0.0;
    for (int s = 0; s < gs.count; ++s) {
      const Group& x = gs.g[s];
      if (x.k10 != 0 || x.k11 != 0) rec_a += x.n;
      if (x.k01 != 0 || x.k11 != 0) rec_b += x.n;
    }
    a = rec_a / gs.total;
    b = rec_b / gs.total;
    // One binomial for each parent: with each parent's phase on its side of 1/2, the shared
    // frequency is the pooled share of recombinants.
    shared.phase_a = a > 0.5;
    shared.phase_b = b > 0.5;
    shared.r = (std::min(rec_a, gs.total - rec_a) + std::min(rec_b, gs.total - rec_b)) / (2.0 * gs.total);
    shared.log_lik = LogLik(gs, Along(shared.phase_a, shared.r), Along(shared.phase_b, shared.r));
  } else if (a_informs && b_informs) {
    JointMaximum(gs, a, b);
    shared = BestShared(gs, true, true, symmetric);
  } else if (a_informs || b_informs) {
    // One parent seen: its maximum over [0, 1] is the shared one, folded into its phase.
    double& seen = a_informs ? a : b;
    seen = a_informs ? BestA(gs, 0.5) : BestB(gs, 0.5);
    shared.r = std::min(seen, 1.0 - seen);
    (a_informs ? shared.phase_a : shared.phase_b) = seen > 0.5;
    shared.log_lik = LogLik(gs, a, b);
  }
  if (Gains(shared.log_lik - base, base)) {
    out.rec_c = static_cast<float>(shared.r);
    out.lod_c = Lod(shared.log_lik - base);
  }
  if (same_parents) {
    if (out.lod_c > 0.0f) {
      out.rec_a = static_cast<float>(Along(shared.phase_a, shared.r));
      out.rec_b = static_cast<float>(Along(shared.phase_b, shared.r));
    }
    out.lod_a = out.lod_b = out.lod_c;
  } else if (a_informs || b_informs) {
    const double top = LogLik(gs, a, b);
    const double without_a = a_informs ? top - LogLik(gs, 0.5, b_informs ? BestB(gs, 0.5) : 0.5) : 0.0;
    const double without_b = b_informs ? top - LogLik(gs, a_informs ? BestA(gs, 0.5) : 0.5, 0.5) : 0.0;
    if (Gains(without_a, base)) {
      out.rec_a = static_cast<float>(a);
      out.lod_a = Lod(without_a);
    }
    if (Gains(without_b, base)) {
      out.rec_b = static_cast<float>(b);
      out.lod_b = Lod(without_b);
    }
  }
  out.phase = ClonalPhase(out.rec_a, out.rec_b);
  return out;
}

}  // namespace gae
