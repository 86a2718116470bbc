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

}  // namespace gae
