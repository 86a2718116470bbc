#include "multipoint/block_moves.h"

#include <algorithm>
#include <cmath>

namespace gae {

namespace {

constexpr double kLeastStart = 0.01;

// Two intervals r1 and r2 side by side without interference, as one.
double Joined(double r1, double r2) { return r1 + r2 - 2 * r1 * r2; }

// The interval that, taken twice, makes r.
double Halved(double r) { return 0.5 * (1.0 - std::sqrt(std::max(0.0, 1.0 - 2.0 * r))); }

// The block's inner intervals, in the block's new direction.
std::vector<double> Inner(const ChainState& st, int first, int last, bool reversed) {
  std::vector<double> rf(st.rf.begin() + first, st.rf.begin() + last);
  if (reversed) std::reverse(rf.begin(), rf.end());
  return rf;
}

std::vector<int32_t> Block(const ChainState& st, int first, int last, bool reversed) {
  std::vector<int32_t> block(st.order.begin() + first, st.order.begin() + last + 1);
  if (reversed) std::reverse(block.begin(), block.end());
  return block;
}

double Kept(double r) { return std::max(r, kLeastStart); }

}  // namespace

WindowMove ReversalMove(const ChainState& st, int first, int last) {
  const int m = static_cast<int>(st.order.size());
  WindowMove mv;
  mv.first = first;
  mv.last = last;
  mv.markers = Block(st, first, last, true);
  if (first > 0) mv.rf.push_back(Kept(st.rf[first - 1]));
  const std::vector<double> inner = Inner(st, first, last, true);
  mv.rf.insert(mv.rf.end(), inner.begin(), inner.end());
  if (last < m - 1) mv.rf.push_back(Kept(st.rf[last]));
  return mv;
}

WindowMove ShiftMove(const ChainState& st, int first, int last, int after, bool reversed) {
  const int m = static_cast<int>(st.order.size());
  const std::vector<int32_t> block = Block(st, first, last, reversed);
  const std::vector<double> inner = Inner(st, first, last, reversed);
  WindowMove mv;
  // The gap the block leaves closes; the one it lands in is halved on each side of it.
  if (after > last) {
    mv.first = first;
    mv.last = after;
    mv.markers.assign(st.order.begin() + last + 1, st.order.begin() + after + 1);
    mv.markers.insert(mv.markers.end(), block.begin(), block.end());
    if (first > 0) mv.rf.push_back(Kept(Joined(st.rf[first - 1], st.rf[last])));
    mv.rf.insert(mv.rf.end(), st.rf.begin() + last + 1, st.rf.begin() + after);
    const double landing = after < m - 1 ? Halved(st.rf[after]) : 0.0;
    mv.rf.push_back(Kept(after < m - 1 ? landing : Halved(st.rf[last])));
    mv.rf.insert(mv.rf.end(), inner.begin(), inner.end());
    if (after < m - 1) mv.rf.push_back(Kept(landing));
  } else {
    mv.first = after + 1;
    mv.last = last;
    mv.markers = block;
    mv.markers.insert(mv.markers.end(), st.order.begin() + after + 1, st.order.begin() + first);
    const double landing = after >= 0 ? Halved(st.rf[after]) : 0.0;
    if (after >= 0) mv.rf.push_back(Kept(landing));
    mv.rf.insert(mv.rf.end(), inner.begin(), inner.end());
    mv.rf.push_back(Kept(after >= 0 ? landing : Halved(st.rf[first - 1])));
    mv.rf.insert(mv.rf.end(), st.rf.begin() + after + 1, st.rf.begin() + first - 1);
    if (last < m - 1) mv.rf.push_back(Kept(Joined(st.rf[first - 1], st.rf[last])));
  }
  return mv;
}


namespace {

RunBoundary ScratchBoundary(const std::vector<double>& data, const std::vector<double>& log, int at, int stride,
                            int num_states, int32_t marker) {
  return {data.data() + static_cast<std::ptrdiff_t>(at) * num_states, log.data() + at, stride, marker};
}

}  // namespace

// Rightward, the passed markers follow the gap the block leaves: their forward vectors, entered
// through the closed gap, serve every distance. Leftward, they precede it: their backward
// vectors, left through the closed gap, do.
int CarryScorer::Prepare(const GroupCalls& calls, const ChainState& st, int first, int last, int reach,
                         bool rightward) {
  const int m = static_cast<int>(st.order.size());
  const int s = calls.design.num_states;
  const int passed = rightward ? std::min(reach, m - 1 - last) : std::min(reach, first);
  if (passed <= 0) return 0;
  const int from = rightward ? last + 1 : first - passed;
  passed_markers_.assign(st.order.begin() + from, st.order.begin() + from + passed);
  std::vector<double> rf;
  const bool closes = rightward ? first > 0 : last < m - 1;
  const double closed = closes ? Kept(Joined(st.rf[first - 1], st.rf[last])) : 0;
  if (rightward && closes) rf.push_back(closed);
  rf.insert(rf.end(), st.rf.begin() + from, st.rf.begin() + from + passed - 1);
  if (!rightward && closes) rf.push_back(closed);
  passed_transitions_.resize(rf.size() * kMatrixSize);
  for (std::size_t j = 0; j < rf.size(); ++j) TransitionMatrix(calls.design, rf[j], &passed_transitions_[j * kMatrixSize]);
  const std::size_t cells = static_cast<std::size_t>(passed) * calls.num_individuals;
  alpha_.resize(cells * s);
  beta_.resize(cells * s);
  alpha_log_.resize(cells);
  beta_log_.resize(cells);
  RunInput in;
  in.calls = &calls;
  in.emissions = &st.emissions;
  in.markers = passed_markers_.data();
  in.count = passed;
  in.transitions = passed_transitions_.data();
  if (rightward) {
    in.left = st.LeftOf(first - 1, s);
    in.backward = false;
  } else {
    in.right = st.RightOf(last + 1, s);
  }
  RunForwardBackward(in, {alpha_.data(), alpha_log_.data(), beta_.data(), beta_log_.data(), passed}, nullptr);
  return passed;
}

WindowMove CarryScorer::ScoreOne(const GroupCalls& calls, const ChainState& st, int first, int last, int d,
                                 bool rightward, bool reversed) {
  const int s = calls.design.num_states;
  const int k = last - first + 1;
  const int passed = static_cast<int>(passed_markers_.size());
  WindowMove mv = ShiftMove(st, first, last, rightward ? last + d : first - d - 1, reversed);
  // The block's own stretch of the move: its markers and the intervals into, inside and out of it.
  RunInput in;
  in.calls = &calls;
  in.emissions = &st.emissions;
  in.keep_logs = false;
  in.backward = false;
  const int32_t* block;
  const double* rf;
  int intervals;
  if (rightward) {
    block = mv.markers.data() + d;
    in.left = ScratchBoundary(alpha_, alpha_log_, d - 1, passed, s, passed_markers_[d - 1]);
    in.right = st.RightOf(last + d + 1, s);
    rf = mv.rf.data() + (mv.rf.size() - k - (in.right.data != nullptr ? 1 : 0));
    intervals = k + (in.right.data != nullptr ? 1 : 0);
  } else {
    block = mv.markers.data();
    in.left = st.LeftOf(first - d - 1, s);
    in.right = ScratchBoundary(beta_, beta_log_, passed - d, passed, s, passed_markers_[passed - d]);
    rf = mv.rf.data();
    intervals = k + (in.left.data != nullptr ? 1 : 0);
  }
  block_transitions_.resize(static_cast<std::size_t>(intervals) * kMatrixSize);
  for (int j = 0; j < intervals; ++j) TransitionMatrix(calls.design, rf[j], &block_transitions_[j * kMatrixSize]);
  in.markers = block;
  in.count = k;
  in.transitions = block_transitions_.data();
  const std::size_t cells = static_cast<std::size_t>(k) * calls.num_individuals;
  alpha2_.resize(cells * s);
  alpha2_log_.resize(cells);
  const ChainVectors fresh{alpha2_.data(), alpha2_log_.data(), alpha2_.data(), alpha2_log_.data(), k};
  mv.log_likelihood = RunForwardBackward(in, fresh, nullptr);
  return mv;
}

}  // namespace gae
