#include "multipoint/clonal_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "multipoint/clonal_suspects.h"
#include "twopoint/mapping_function.h"

namespace gae {

namespace {

constexpr int kS = kClonalStates;
constexpr double kStartFrequency = 0.05;
constexpr double kMinFrequency = 1e-6;
// A move must raise ln L by this much: less is within what an incompletely fitted window gains
// from refitting alone.
constexpr double kMinMoveGain = 0.05;
// Markers from either end among which blocks are moved whatever the intervals between them.
constexpr int kEndZone = 10;

ClonalRun WholeRun(const ClonalChain& chain) {
  ClonalRun run;
  run.markers = chain.order;
  run.phases = chain.phases;
  run.rf_first.assign(chain.order.size() + 1, 0.5);
  run.rf_second.assign(chain.order.size() + 1, 0.5);
  std::copy(chain.rf_first.begin(), chain.rf_first.end(), run.rf_first.begin() + 1);
  std::copy(chain.rf_second.begin(), chain.rf_second.end(), run.rf_second.begin() + 1);
  run.error_rate = chain.error_rate;
  return run;
}

double Clamp(double r, double max_rf) { return std::clamp(r, kMinFrequency, max_rf); }

// EM's maximisation over the run's intervals that have a marker on both sides.
void Maximise(const ClonalPass& pass, int n, bool has_left, bool has_right, double max_rf, ClonalRun& run) {
  const std::size_t count = run.markers.size();
  for (std::size_t j = 0; j <= count; ++j) {
    if ((j == 0 && !has_left) || (j == count && !has_right)) continue;
    run.rf_first[j] = Clamp(pass.recombinations_first[j] / n, max_rf);
    run.rf_second[j] = Clamp(pass.recombinations_second[j] / n, max_rf);
  }
}

// One position's vectors of every individual, packed. A right boundary carries the marker's
// own calls as well as everything after it.
void PackVectors(const ClonalCalls& calls, const ClonalChain& chain, int position, bool beta, std::vector<double>& v,
                 std::vector<double>& log) {
  const int n = calls.num_individuals;
  const std::size_t length = chain.order.size();
  v.resize(static_cast<std::size_t>(n) * kS);
  log.resize(static_cast<std::size_t>(n));
  const std::vector<double>& from = beta ? chain.pass.beta : chain.pass.alpha;
  const std::vector<double>& from_log = beta ? chain.pass.beta_log : chain.pass.alpha_log;
  const int32_t marker = chain.order[static_cast<std::size_t>(position)];
  const ClonalEmission e = MakeClonalEmission(calls.categories[static_cast<std::size_t>(marker)],
                                              chain.phases[static_cast<std::size_t>(position)], chain.error_rate);
  for (int i = 0; i < n; ++i) {
    const std::size_t cell = static_cast<std::size_t>(i) * length + static_cast<std::size_t>(position);
    double* out = &v[static_cast<std::size_t>(i) * kS];
    std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(cell * kS), kS, out);
    log[static_cast<std::size_t>(i)] = from_log[cell];
    if (!beta) continue;
    const std::size_t code = calls.codes[static_cast<std::size_t>(marker) * static_cast<std::size_t>(n) + static_cast<std::size_t>(i)];
    double sum = 0;
    for (int s = 0; s < kS; ++s) sum += out[s] *= e[code * kS + static_cast<std::size_t>(s)];
    for (int s = 0; s < kS; ++s) out[s] /= sum;
    log[static_cast<std::size_t>(i)] += std::log(sum);
  }
}

// Forward vector at `position` from the one before it, at the chain's current state.
void ForwardStep(const ClonalCalls& calls, ClonalChain& chain, int position) {
  const int n = calls.num_individuals;
  const std::size_t length = chain.order.size();
  const int32_t marker = chain.order[static_cast<std::size_t>(position)];
  const ClonalEmission e = MakeClonalEmission(calls.categories[static_cast<std::size_t>(marker)],
                                              chain.phases[static_cast<std::size_t>(position)], chain.error_rate);
  const double ra = chain.rf_first[static_cast<std::size_t>(position - 1)];
  const double rb = chain.rf_second[static_cast<std::size_t>(position - 1)];
  for (int i = 0; i < n; ++i) {
    const std::size_t here = static_cast<std::size_t>(i) * length + static_cast<std::size_t>(position);
    const double* prev = &chain.pass.alpha[(here - 1) * kS];
    double* a = &chain.pass.alpha[here * kS];
    const uint8_t code = calls.codes[static_cast<std::size_t>(marker) * static_cast<std::size_t>(n) + static_cast<std::size_t>(i)];
    double sum = 0;
    for (int t = 0; t < kS; ++t) {
      double p = 0;
      for (int u = 0; u < kS; ++u)
        p += prev[u] * ((u >> 1) == (t >> 1) ? 1 - ra : ra) * ((u & 1) == (t & 1) ? 1 - rb : rb);
      a[t] = p * e[static_cast<std::size_t>(code) * kS + static_cast<std::size_t>(t)];
      sum += a[t];
    }
    for (int t = 0; t < kS; ++t) a[t] /= sum;
    chain.pass.alpha_log[here] = chain.pass.alpha_log[here - 1] + std::log(sum);
  }
}

struct Move {
  int lo = 0, hi = 0;
  ClonalRun run;
  ClonalPass pass;
  double log_likelihood = -HUGE_VAL;
};

// The frequency to start a new neighbour pair from: theirs if they were neighbours, the two
// either side composed where a marker left, half the gap a marker moved into, else the old
// frequency of the interval at the same place.
double StartFrequency(const std::vector<double>& rf,
                      const std::vector<int>& where, int x, int y, int moved, int moved_from, int same, double max_rf) {
  const int a = where[static_cast<std::size_t>(x)], b = where[static_cast<std::size_t>(y)];
  if (std::abs(a - b) == 1) return rf[static_cast<std::size_t>(std::min(a, b))];
  if (moved >= 0 && x != moved && y != moved && std::min(a, b) + 1 == moved_from && std::max(a, b) - 1 == moved_from) {
    const double r1 = rf[static_cast<std::size_t>(moved_from - 1)], r2 = rf[static_cast<std::size_t>(moved_from)];
    return Clamp(r1 * (1 - r2) + (1 - r1) * r2, max_rf);
  }
  if (moved >= 0 && (x == moved || y == moved)) return kStartFrequency;
  return Clamp(rf[static_cast<std::size_t>(std::clamp(same, 0, static_cast<int>(rf.size()) - 1))], max_rf);
}

// The positions lo..hi rearranged as `arrangement` (old positions, in their new order), with
// the marker from `moved_from` (or -1) the one that travelled.
Move ScoreArrangement(const ClonalCalls& calls, const ClonalChain& chain, const std::vector<int>& arrangement,
                      int lo, int moved_from, const ClonalFitSettings& settings, const std::vector<int>& where,
                      std::vector<double> (&buffers)[4]) {
  const int length = static_cast<int>(chain.order.size());
  const int n = calls.num_individuals;
  Move move;
  move.lo = lo;
  move.hi = lo + static_cast<int>(arrangement.size()) - 1;
  ClonalRun& run = move.run;
  for (const int k : arrangement) {
    run.markers.push_back(chain.order[static_cast<std::size_t>(k)]);
    run.phases.push_back(chain.phases[static_cast<std::size_t>(k)]);
  }
  const bool has_left = move.lo > 0, has_right = move.hi < length - 1;
  if (has_left) {
    PackVectors(calls, chain, move.lo - 1, false, buffers[0], buffers[1]);
    run.left = buffers[0].data();
    run.left_log = buffers[1].data();
  }
  if (has_right) {
    PackVectors(calls, chain, move.hi + 1, true, buffers[2], buffers[3]);
    run.right = buffers[2].data();
    run.right_log = buffers[3].data();
  }
  const int moved = moved_from < 0 ? -1 : chain.order[static_cast<std::size_t>(moved_from)];
  const std::size_t count = run.markers.size();
  run.rf_first.assign(count + 1, 0.5);
  run.rf_second.assign(count + 1, 0.5);
  for (std::size_t j = 0; j <= count; ++j) {
    if ((j == 0 && !has_left) || (j == count && !has_right)) continue;
    const int x = j == 0 ? chain.order[static_cast<std::size_t>(move.lo - 1)] : run.markers[j - 1];
    const int y = j == count ? chain.order[static_cast<std::size_t>(move.hi + 1)] : run.markers[j];
    const int same = move.lo - 1 + static_cast<int>(j);
    run.rf_first[j] = StartFrequency(chain.rf_first, where, x, y, moved, moved_from, same, settings.max_rf);
    run.rf_second[j] = StartFrequency(chain.rf_second, where, x, y, moved, moved_from, same, settings.max_rf);
  }
  run.error_rate = chain.error_rate;
  // One EM round from good starts: the phases of the markers at the new junctions, then the
  // frequencies of the run's intervals.
  RunClonal(calls, run, true, false, move.pass);
  Maximise(move.pass, n, has_left, has_right, settings.max_rf, run);
  move.log_likelihood = RunClonal(calls, run, false, true, move.pass);
  return move;
}

void ApplyMove(Move& move, ClonalChain& chain, int n) {
  const int length = static_cast<int>(chain.order.size());
  const int count = static_cast<int>(move.run.markers.size());
  for (int j = 0; j < count; ++j) {
    chain.order[static_cast<std::size_t>(move.lo + j)] = move.run.markers[static_cast<std::size_t>(j)];
    chain.phases[static_cast<std::size_t>(move.lo + j)] = move.run.phases[static_cast<std::size_t>(j)];
  }
  for (int j = 0; j <= count; ++j) {
    const int interval = move.lo - 1 + j;
    if (interval < 0 || interval >= length - 1) continue;
    chain.rf_first[static_cast<std::size_t>(interval)] = move.run.rf_first[static_cast<std::size_t>(j)];
    chain.rf_second[static_cast<std::size_t>(interval)] = move.run.rf_second[static_cast<std::size_t>(j)];
  }
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < count; ++j) {
      const std::size_t from = static_cast<std::size_t>(i) * static_cast<std::size_t>(count) + static_cast<std::size_t>(j);
      const std::size_t to = static_cast<std::size_t>(i) * static_cast<std::size_t>(length) + static_cast<std::size_t>(move.lo + j);
      std::copy_n(move.pass.alpha.begin() + static_cast<std::ptrdiff_t>(from * kS), kS, chain.pass.alpha.begin() + static_cast<std::ptrdiff_t>(to * kS));
      std::copy_n(move.pass.beta.begin() + static_cast<std::ptrdiff_t>(from * kS), kS, chain.pass.beta.begin() + static_cast<std::ptrdiff_t>(to * kS));
      chain.pass.alpha_log[to] = move.pass.alpha_log[from];
      chain.pass.beta_log[to] = move.pass.beta_log[from];
    }
  chain.log_likelihood = move.log_likelihood;
}

bool ValidInput(int32_t num_individuals, const std::vector<char>& types, const std::vector<int32_t>& categories,
                const std::vector<int32_t>& start_order) {
  if (num_individuals <= 0 || types.size() != categories.size() * static_cast<std::size_t>(num_individuals)) return false;
  for (const int32_t c : categories)
    if (c < 1 || c > 5) return false;
  std::vector<bool> seen(categories.size(), false);
  for (const int32_t m : start_order) {
    if (m < 0 || static_cast<std::size_t>(m) >= categories.size() || seen[static_cast<std::size_t>(m)]) return false;
    seen[static_cast<std::size_t>(m)] = true;
  }
  return true;
}

// The intervals between a parent's first and last segregating markers along an order.
struct ParentSpan {
  std::size_t from = 0, to = 0;  // intervals from..to-1
  bool Covers(std::size_t interval) const { return interval >= from && interval < to; }
};

ParentSpan SegregatingSpan(const ClonalCalls& calls, const std::vector<int32_t>& order, int parent) {
  ParentSpan span;
  bool seen = false;
  for (std::size_t p = 0; p < order.size(); ++p) {
    if (!SegregatesIn(calls.categories[static_cast<std::size_t>(order[p])], parent)) continue;
    if (!seen) span.from = p;
    seen = true;
    span.to = p;
  }
  return span;
}

}  // namespace

int FitClonalChain(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings, bool fresh_phases) {
  const std::size_t intervals = chain.order.empty() ? 0 : chain.order.size() - 1;
  if (chain.rf_first.size() != intervals) chain.rf_first.assign(intervals, kStartFrequency);
  if (chain.rf_second.size() != intervals) chain.rf_second.assign(intervals, kStartFrequency);
  chain.phases.resize(chain.order.size());
  if (settings.fixed_error) chain.error_rate = *settings.fixed_error;
  if (fresh_phases) {
    ClonalRun run = WholeRun(chain);
    run.past_only = true;
    ClonalPass scratch;
    RunClonal(calls, run, true, false, scratch);
    chain.phases = run.phases;
  }
  const int n = calls.num_individuals;
  double last = -HUGE_VAL;
  int iterations = 0;
  ClonalPass pass;
  while (iterations < settings.max_iterations && !chain.order.empty()) {
    ClonalRun run = WholeRun(chain);
    const double ll = RunClonal(calls, run, true, false, pass);
    chain.phases = run.phases;
    Maximise(pass, n, false, false, settings.max_rf, run);
    std::copy(run.rf_first.begin() + 1, run.rf_first.end() - 1, chain.rf_first.begin());
    std::copy(run.rf_second.begin() + 1, run.rf_second.end() - 1, chain.rf_second.begin());
    if (!settings.fixed_error && pass.typed > 0) chain.error_rate = std::clamp(pass.errors / pass.typed, 1e-6, 0.5);
    ++iterations;
    if (ll - last < settings.tolerance * std::abs(ll)) break;
    last = ll;
  }
  ClonalRun run = WholeRun(chain);
  chain.log_likelihood = RunClonal(calls, run, false, true, chain.pass);
  return iterations;
}

int PolishClonalOrder(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings, int reach,
                      int max_sweeps) {
  const int n = calls.num_individuals;
  int total = 0;
  std::vector<double> buffers[4];
  // The first sweep tries every marker, later ones only the neighbourhoods of the last moves.
  std::vector<char> active(static_cast<std::size_t>(calls.num_markers), 1);
  for (int sweep = 0; sweep < max_sweeps; ++sweep) {
    const int length = static_cast<int>(chain.order.size());
    if (length < 3) break;
    std::vector<char> next_active(active.size(), 0);
    int moves = 0, alpha_valid = length - 1;
    for (int p = 0; p < length; ++p) {
      if (!active[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(p)])]) continue;
      for (; alpha_valid < p - 1; ++alpha_valid) ForwardStep(calls, chain, alpha_valid + 1);
      std::vector<int> where(static_cast<std::size_t>(calls.num_markers), -1);
      for (int k = 0; k < length; ++k) where[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(k)])] = k;
      Move best;
      auto consider = [&](const std::vector<int>& arrangement, int lo, int moved_from) {
        Move move = ScoreArrangement(calls, chain, arrangement, lo, moved_from, settings, where, buffers);
        if (move.log_likelihood > chain.log_likelihood + kMinMoveGain && move.log_likelihood > best.log_likelihood)
          best = std::move(move);
      };
      std::vector<int> arrangement;
      for (int q = std::max(0, p - reach); q <= std::min(length - 1, p + reach); ++q) {
        if (q == p) continue;
        arrangement.clear();
        if (q > p) {
          for (int k = p + 1; k <= q; ++k) arrangement.push_back(k);
          arrangement.push_back(p);
        } else {
          arrangement.push_back(p);
          for (int k = q; k < p; ++k) arrangement.push_back(k);
        }
        consider(arrangement, std::min(p, q), p);
      }
      // Blocks turned end to end: orders from pairs often hold a run of markers backwards.
      for (int end = p + 2; end <= std::min(length - 1, p + 2 * reach); ++end) {
        arrangement.clear();
        for (int k = end; k >= p; --k) arrangement.push_back(k);
        consider(arrangement, p, -1);
      }
      if (best.log_likelihood == -HUGE_VAL) continue;
      ApplyMove(best, chain, n);
      alpha_valid = best.hi;
      for (int k = std::max(0, best.lo - reach); k <= std::min(length - 1, best.hi + reach); ++k)
        next_active[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(k)])] = 1;
      ++moves;
    }
    active.swap(next_active);
    total += moves;
    FitClonalChain(calls, chain, settings, false);
    if (moves == 0) break;
  }
  return total;
}

int MoveClonalBlocks(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings, int max_span,
                     int max_moves) {
  std::vector<double> buffers[4];
  int moves = 0;
  for (; moves < max_moves; ++moves) {
    const int length = static_cast<int>(chain.order.size());
    if (length < 4) break;
    // Cuts before each position whose interval from the one before is long for this chromosome,
    // and at both ends: where orders from pairs put blocks of markers in the wrong place.
    std::vector<double> combined;
    for (std::size_t k = 0; k < chain.rf_first.size(); ++k) combined.push_back(chain.rf_first[k] + chain.rf_second[k]);
    std::vector<double> sorted = combined;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2), sorted.end());
    const double long_interval = std::max(3.0 * sorted[sorted.size() / 2], 0.05);
    std::vector<int> cuts = {0};
    for (int k = 1; k < length; ++k)
      if (combined[static_cast<std::size_t>(k - 1)] >= long_interval) cuts.push_back(k);
    cuts.push_back(length);
    std::vector<int> where(static_cast<std::size_t>(calls.num_markers), -1);
    for (int k = 0; k < length; ++k) where[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(k)])] = k;
    Move best;
    std::vector<int> arrangement;
    auto consider = [&](int lo) {
      Move move = ScoreArrangement(calls, chain, arrangement, lo, -1, settings, where, buffers);
      if (move.log_likelihood > chain.log_likelihood + kMinMoveGain && move.log_likelihood > best.log_likelihood)
        best = std::move(move);
    };
    auto append = [&](int from, int to, bool reversed) {
      for (int k = 0; k < to - from; ++k) arrangement.push_back(reversed ? to - 1 - k : from + k);
    };
    for (std::size_t x = 0; x < cuts.size(); ++x)
      for (std::size_t y = x + 1; y < cuts.size() && cuts[y] - cuts[x] <= max_span; ++y) {
        const int a = cuts[x], b = cuts[y];
        if (b - a >= 2) {
          arrangement.clear();
          append(a, b, true);
          consider(a);
        }
        for (std::size_t z = y + 1; z < cuts.size() && cuts[z] - a <= max_span / 2; ++z) {
          const int c = cuts[z];
          for (int turn = 0; turn < 4; ++turn) {
            arrangement.clear();
            append(b, c, (turn & 1) != 0);
            append(a, b, (turn & 2) != 0);
            consider(a);
          }
        }
      }
    // At the ends, markers that segregate in one parent only can stand in blocks in the wrong
    // order with nothing long between them: blocks reaching an end are swapped (either way
    // round), and three put in the opposite order, which takes two swaps that each lose.
    const int zone = std::min(kEndZone, length);
    auto blocks = [&](std::initializer_list<std::pair<int, int>> runs, bool turn_first, bool turn_second) {
      arrangement.clear();
      int k = 0;
      for (const auto& [from, to] : runs) append(from, to, (k == 0 && turn_first) || (k == 1 && turn_second)), ++k;
      consider(std::min(runs.begin()->first, (runs.end() - 1)->first));
    };
    for (int a = 1; a < zone; ++a)
      for (int b = a + 1; b <= zone; ++b) {
        const int ta = length - b, tb = length - a;  // the same cuts counted from the tail
        for (int turn = 0; turn < 4; ++turn) {
          blocks({{a, b}, {0, a}}, turn & 1, turn & 2);
          blocks({{tb, length}, {ta, tb}}, turn & 1, turn & 2);
        }
        for (int c = b + 1; c <= zone; ++c) {
          blocks({{b, c}, {a, b}, {0, a}}, false, false);
          blocks({{length - a, length}, {length - b, length - a}, {length - c, length - b}}, false, false);
        }
      }
    if (best.log_likelihood == -HUGE_VAL) break;
    ApplyMove(best, chain, calls.num_individuals);
    // Fresh vectors everywhere for the next round's windows; the full fit waits for the end.
    ClonalRun run = WholeRun(chain);
    chain.log_likelihood = RunClonal(calls, run, false, true, chain.pass);
  }
  if (moves > 0) FitClonalChain(calls, chain, settings, false);
  return moves;
}

namespace {

// ln L of the chromosome with `marker` (phase `phase`) also placed in the gap after position
// `gap` (-1: before the first), halving that interval: the marker's calls count twice, which
// shifts every gap alike, so the gaps far from its own place compare fairly.
double GapScore(const ClonalCalls& calls, const ClonalChain& chain, int32_t marker, Phase phase, int gap) {
  const int n = calls.num_individuals;
  const int length = static_cast<int>(chain.order.size());
  const ClonalEmission e = MakeClonalEmission(calls.categories[static_cast<std::size_t>(marker)], phase, chain.error_rate);
  const bool inner = gap >= 0 && gap < length - 1;
  const double ra = inner ? chain.rf_first[static_cast<std::size_t>(gap)] / 2 : kStartFrequency;
  const double rb = inner ? chain.rf_second[static_cast<std::size_t>(gap)] / 2 : kStartFrequency;
  ClonalEmission next_e{};
  if (gap < length - 1)
    next_e = MakeClonalEmission(calls.categories[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(gap + 1)])],
                                chain.phases[static_cast<std::size_t>(gap + 1)], chain.error_rate);
  double ll = 0;
  for (int i = 0; i < n; ++i) {
    double left[kS] = {0.25, 0.25, 0.25, 0.25}, right[kS] = {1, 1, 1, 1};
    double logs = 0;
    if (gap >= 0) {
      const std::size_t cell = static_cast<std::size_t>(i) * static_cast<std::size_t>(length) + static_cast<std::size_t>(gap);
      for (int u = 0; u < kS; ++u) left[u] = chain.pass.alpha[cell * kS + static_cast<std::size_t>(u)];
      logs += chain.pass.alpha_log[cell];
    }
    if (gap < length - 1) {
      const std::size_t cell = static_cast<std::size_t>(i) * static_cast<std::size_t>(length) + static_cast<std::size_t>(gap + 1);
      const std::size_t code = calls.codes[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(gap + 1)]) * static_cast<std::size_t>(n) + static_cast<std::size_t>(i)];
      for (int u = 0; u < kS; ++u) right[u] = chain.pass.beta[cell * kS + static_cast<std::size_t>(u)] * next_e[code * kS + static_cast<std::size_t>(u)];
      logs += chain.pass.beta_log[cell];
    }
    double a[kS], b[kS];
    for (int t = 0; t < kS; ++t) {
      a[t] = 0;
      b[t] = 0;
      for (int u = 0; u < kS; ++u) {
        const double tr = ((u >> 1) == (t >> 1) ? 1 - ra : ra) * ((u & 1) == (t & 1) ? 1 - rb : rb);
        a[t] += left[u] * tr;
        b[t] += tr * right[u];
      }
    }
    const std::size_t code = calls.codes[static_cast<std::size_t>(marker) * static_cast<std::size_t>(n) + static_cast<std::size_t>(i)];
    double sum = 0;
    for (int t = 0; t < kS; ++t) sum += a[t] * e[code * kS + static_cast<std::size_t>(t)] * b[t];
    ll += logs + std::log(sum);
  }
  return ll;
}

}  // namespace

int RelocateClonalStrays(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings) {
  std::vector<double> buffers[4];
  int moves = 0;
  const int length = static_cast<int>(chain.order.size());
  if (length < 4) return 0;
  std::vector<double> combined;
  for (std::size_t k = 0; k < chain.rf_first.size(); ++k) combined.push_back(chain.rf_first[k] + chain.rf_second[k]);
  std::vector<double> sorted = combined;
  std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2), sorted.end());
  const double long_interval = std::max(3.0 * sorted[sorted.size() / 2], 0.05);
  std::vector<int32_t> strays;
  for (int p = 0; p < length; ++p)
    if ((p == 0 || combined[static_cast<std::size_t>(p - 1)] >= long_interval) &&
        (p == length - 1 || combined[static_cast<std::size_t>(p)] >= long_interval))
      strays.push_back(chain.order[static_cast<std::size_t>(p)]);
  for (const int32_t marker : strays) {
    const int p = static_cast<int>(std::find(chain.order.begin(), chain.order.end(), marker) - chain.order.begin());
    double best = -HUGE_VAL;
    int best_gap = p;
    for (int gap = -1; gap < length; ++gap) {
      if (gap == p || gap == p - 1) continue;
      for (const Phase phase : PhaseChoices(calls.categories[static_cast<std::size_t>(marker)])) {
        const double score = GapScore(calls, chain, marker, phase, gap);
        if (score > best) {
          best = score;
          best_gap = gap;
        }
      }
    }
    if (best_gap == p) continue;
    std::vector<int> arrangement;
    int lo = 0;
    if (best_gap > p) {
      lo = p;
      for (int k = p + 1; k <= best_gap; ++k) arrangement.push_back(k);
      arrangement.push_back(p);
    } else {
      lo = best_gap + 1;
      arrangement.push_back(p);
      for (int k = best_gap + 1; k < p; ++k) arrangement.push_back(k);
    }
    std::vector<int> where(static_cast<std::size_t>(calls.num_markers), -1);
    for (int k = 0; k < length; ++k) where[static_cast<std::size_t>(chain.order[static_cast<std::size_t>(k)])] = k;
    Move move = ScoreArrangement(calls, chain, arrangement, lo, p, settings, where, buffers);
    if (move.log_likelihood <= chain.log_likelihood + kMinMoveGain) continue;
    ApplyMove(move, chain, calls.num_individuals);
    ClonalRun run = WholeRun(chain);
    chain.log_likelihood = RunClonal(calls, run, false, true, chain.pass);
    ++moves;
  }
  if (moves > 0) FitClonalChain(calls, chain, settings, false);
  return moves;
}

std::vector<double> ClonalLinkageLods(const ClonalCalls& calls, const ClonalChain& chain) {
  const int length = static_cast<int>(chain.order.size());
  const int n = calls.num_individuals;
  std::vector<double> lods(static_cast<std::size_t>(length), 0.0);
  if (length < 2) return lods;
  std::vector<double> buffers[4];
  for (int p = 0; p < length; ++p) {
    const int32_t marker = chain.order[static_cast<std::size_t>(p)];
    // The marker's own calls with nothing linked to it.
    const ClonalEmission e = MakeClonalEmission(calls.categories[static_cast<std::size_t>(marker)], {}, chain.error_rate);
    double alone = 0;
    for (int i = 0; i < n; ++i) {
      const std::size_t code = calls.codes[static_cast<std::size_t>(marker) * static_cast<std::size_t>(n) + static_cast<std::size_t>(i)];
      alone += std::log(0.25 * (e[code * kS] + e[code * kS + 1] + e[code * kS + 2] + e[code * kS + 3]));
    }
    double without = 0;
    if (p == length - 1) {
      for (int i = 0; i < n; ++i) without += chain.pass.alpha_log[static_cast<std::size_t>(i * length + p - 1)];
    } else if (p == 0) {
      PackVectors(calls, chain, 1, true, buffers[2], buffers[3]);
      for (int i = 0; i < n; ++i) without += buffers[3][static_cast<std::size_t>(i)] + std::log(0.25);
    } else {
      ClonalRun gap;
      PackVectors(calls, chain, p - 1, false, buffers[0], buffers[1]);
      PackVectors(calls, chain, p + 1, true, buffers[2], buffers[3]);
      gap.left = buffers[0].data();
      gap.left_log = buffers[1].data();
      gap.right = buffers[2].data();
      gap.right_log = buffers[3].data();
      auto compose = [p](const std::vector<double>& rf) {
        const double r1 = rf[static_cast<std::size_t>(p - 1)], r2 = rf[static_cast<std::size_t>(p)];
        return r1 * (1 - r2) + (1 - r1) * r2;
      };
      gap.rf_first = {compose(chain.rf_first)};
      gap.rf_second = {compose(chain.rf_second)};
      ClonalPass pass;
      without = RunClonal(calls, gap, false, false, pass);
    }
    lods[static_cast<std::size_t>(p)] = (chain.log_likelihood - without - alone) / std::numbers::ln10;
  }
  return lods;
}

ClonalGroupMap MapClonalGroup(int32_t num_individuals, const std::vector<char>& types,
                              const std::vector<int32_t>& categories, const std::vector<int32_t>& start_order,
                              const MultipointOptions& options) {
  ClonalGroupMap out;
  MultipointGroupMap& map = out.map;
  if (!ValidInput(num_individuals, types, categories, start_order)) {
    map.ok = false;
    return out;
  }
  const ClonalCalls calls = MakeClonalCalls(num_individuals, types, categories);
  ClonalFitSettings fit;
  if (options.error_rate) fit.fixed_error = std::clamp(*options.error_rate, 1e-6, 0.5);
  fit.max_iterations = options.max_em_iterations;
  fit.tolerance = options.tolerance;
  ClonalChain chain;
  chain.order = start_order;
  chain.error_rate = fit.fixed_error.value_or(options.start_error_rate);
  map.em_iterations = FitClonalChain(calls, chain, fit, true);
  if (options.polish_order) {
    map.polish_moves = PolishClonalOrder(calls, chain, fit, options.reach, 10);
    // Blocks and markers far from their place, then the local moves again, until neither finds
    // anything: a stretch misplaced as a whole comes back one block at a time.
    for (int round = 0; round < 4; ++round) {
      const int far = MoveClonalBlocks(calls, chain, fit, 60, 50) + RelocateClonalStrays(calls, chain, fit);
      if (far == 0) break;
      map.polish_moves += far + PolishClonalOrder(calls, chain, fit, options.reach, 10);
    }
  }
  // Markers the chain gains nothing from leave the group, and the rest is fitted again.
  const std::vector<double> lods = ClonalLinkageLods(calls, chain);
  ClonalChain kept;
  kept.error_rate = chain.error_rate;
  for (std::size_t p = 0; p < chain.order.size(); ++p) {
    if (chain.order.size() > 1 && lods[p] < options.min_link_lod) {
      map.dropped.push_back(chain.order[p]);
    } else {
      kept.order.push_back(chain.order[p]);
      kept.phases.push_back(chain.phases[p]);
    }
  }
  if (!map.dropped.empty()) {
    map.em_iterations += FitClonalChain(calls, kept, fit, false);
    chain = std::move(kept);
  }
  map.order = chain.order;
  map.error_rate = chain.error_rate;
  map.log10_likelihood = chain.log_likelihood / std::numbers::ln10;
  map.positions_cm.assign(chain.order.size(), 0.0);
  const ParentSpan first = SegregatingSpan(calls, chain.order, 0), second = SegregatingSpan(calls, chain.order, 1);
  for (std::size_t k = 0; k < chain.rf_first.size(); ++k) {
    // Beyond a parent's outermost segregating marker nothing tells its frequency from the
    // start EM left it at: the combined map takes the other parent's there.
    const bool first_known = first.Covers(k), second_known = second.Covers(k);
    const double rf_first = first_known || !second_known ? chain.rf_first[k] : chain.rf_second[k];
    const double rf_second = second_known || !first_known ? chain.rf_second[k] : chain.rf_first[k];
    const double combined = 0.5 * (rf_first + rf_second);
    map.interval_rf.push_back(combined);
    map.positions_cm[k + 1] = map.positions_cm[k] + MapRecToDistance(options.mapping_function, static_cast<float>(combined));
    if (first_known) out.first_length_cm += MapRecToDistance(options.mapping_function, static_cast<float>(rf_first));
    if (second_known) out.second_length_cm += MapRecToDistance(options.mapping_function, static_cast<float>(rf_second));
  }
  map.suspects = ClonalSuspects(calls, chain, options.suspect_posterior);
  out.phases = chain.phases;
  out.rf_first = chain.rf_first;
  out.rf_second = chain.rf_second;
  return out;
}

}  // namespace gae
