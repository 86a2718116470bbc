#include "multipoint/window_moves.h"

#include <algorithm>

namespace gae {

int WindowIntervals(int first, int last, int content, int m) {
  const bool left = first > 0, right = last < m - 1;
  if (content == 0) return left && right ? 1 : 0;
  return content - 1 + left + right;
}

double GuessFrequency(const ChainState& st, const std::vector<int>& position_of, int32_t x, int32_t y,
                      double max_rf) {
  int a = position_of[x], b = position_of[y];
  if (a > b) std::swap(a, b);
  // EM cannot leave a frequency of 0 (no recombinant is then expected), so a fitted 0 starts
  // a little above it.
  constexpr double kLeastStart = 0.01;
  double sum = 0;
  for (int k = a; k < b; ++k) sum += st.rf[k];
  return std::clamp(sum, std::min(kLeastStart, max_rf), max_rf);
}

namespace {

// The window's marker sequence including its two neighbours, for guessing frequencies.
std::vector<int32_t> WithNeighbours(const ChainState& st, const WindowMove& mv) {
  std::vector<int32_t> seq;
  const int m = static_cast<int>(st.order.size());
  if (mv.first > 0) seq.push_back(st.order[mv.first - 1]);
  seq.insert(seq.end(), mv.markers.begin(), mv.markers.end());
  if (mv.last < m - 1) seq.push_back(st.order[mv.last + 1]);
  return seq;
}

RunInput WindowInput(const GroupCalls& calls, const ChainState& st, const WindowMove& mv, const double* transitions) {
  const int s = calls.design.num_states;
  RunInput in;
  in.calls = &calls;
  in.emissions = &st.emissions;
  in.markers = mv.markers.data();
  in.count = static_cast<int>(mv.markers.size());
  in.transitions = transitions;
  in.left = st.LeftOf(mv.first - 1, s);
  in.right = st.RightOf(mv.last + 1, s);
  return in;
}

}  // namespace

void ScoreWindow(const GroupCalls& calls, const ChainState& st, const std::vector<int>& position_of, int em_rounds,
                 double max_rf, WindowMove& mv, WindowScratch& w, bool start_given) {
  const int m = static_cast<int>(st.order.size());
  const int s = calls.design.num_states;
  const int k = static_cast<int>(mv.markers.size());
  const int intervals = WindowIntervals(mv.first, mv.last, k, m);
  if (!start_given) {
    const std::vector<int32_t> seq = WithNeighbours(st, mv);
    mv.rf.resize(intervals);
    for (int j = 0; j < intervals; ++j) mv.rf[j] = GuessFrequency(st, position_of, seq[j], seq[j + 1], max_rf);
  }
  const std::size_t cells = static_cast<std::size_t>(k) * calls.num_individuals;
  w.alpha.resize(cells * s);
  w.beta.resize(cells * s);
  w.alpha_log.resize(cells);
  w.beta_log.resize(cells);
  w.transitions.resize(static_cast<std::size_t>(intervals) * kMatrixSize);
  const ChainVectors out{w.alpha.data(), w.alpha_log.data(), w.beta.data(), w.beta_log.data(), k};
  RunInput in = WindowInput(calls, st, mv, w.transitions.data());
  in.keep_logs = false;
  for (int round = 0;; ++round) {
    for (int j = 0; j < intervals; ++j) TransitionMatrix(calls.design, mv.rf[j], &w.transitions[j * kMatrixSize]);
    const bool last = round == em_rounds;
    mv.log_likelihood = RunForwardBackward(in, out, last ? nullptr : &w.sums);
    if (last) break;
    for (int j = 0; j < intervals; ++j)
      mv.rf[j] = MaximiseInterval(calls.design, &w.sums.expected[j * kMatrixSize], max_rf);
  }
}

void ApplyWindow(const GroupCalls& calls, ChainState& st, const WindowMove& mv) {
  const int m = static_cast<int>(st.order.size());
  std::copy(mv.markers.begin(), mv.markers.end(), st.order.begin() + mv.first);
  const int first_interval = mv.first > 0 ? mv.first - 1 : 0;
  for (std::size_t j = 0; j < mv.rf.size(); ++j) {
    st.rf[first_interval + j] = mv.rf[j];
    TransitionMatrix(calls.design, mv.rf[j], &st.transitions[(first_interval + j) * kMatrixSize]);
  }
  const int s = calls.design.num_states;
  const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(mv.first);
  const ChainVectors out{st.alpha.data() + offset * s, st.alpha_log.data() + offset, st.beta.data() + offset * s,
                         st.beta_log.data() + offset, m};
  const RunInput in = WindowInput(calls, st, mv, &st.transitions[first_interval * kMatrixSize]);
  st.log_likelihood = RunForwardBackward(in, out, nullptr);
}

}  // namespace gae
