#include "multipoint/group_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "multipoint/chain_fit.h"
#include "multipoint/far_blocks.h"
#include "multipoint/frame_insertion.h"
#include "multipoint/hmm_design.h"
#include "multipoint/linkage_gain.h"
#include "multipoint/order_polish.h"
#include "multipoint/relocation.h"
#include "twopoint/mapping_function.h"

namespace gae {

namespace {

constexpr double kStartFrequency = 0.05;
// Fewer co-dominant markers than this make no frame worth ordering on its own.
constexpr int kMinFrame = 4;

FitSettings FitFrom(const MultipointOptions& o) {
  FitSettings f;
  // A rate of exactly 0 would make a single wrong call impossible, and the likelihood with it.
  if (o.error_rate) f.fixed_error = std::clamp(*o.error_rate, 1e-6, 0.5);
  f.max_iterations = o.max_em_iterations;
  f.tolerance = o.tolerance;
  return f;
}

int Fit(const GroupCalls& calls, ChainState& st, const std::vector<int32_t>& order, double error_rate,
        const FitSettings& fit) {
  st.order = order;
  st.rf.assign(order.empty() ? 0 : order.size() - 1, kStartFrequency);
  st.error_rate = error_rate;
  return FitChain(calls, st, fit);
}

std::vector<SuspectCall> FindSuspects(const GroupCalls& calls, const ChainState& st, double threshold) {
  std::vector<SuspectCall> out;
  const std::vector<double> post = Posteriors(calls, st);
  const int s = calls.design.num_states;
  const std::size_t m = st.order.size();
  for (int32_t i = 0; i < calls.num_individuals; ++i)
    for (std::size_t p = 0; p < m; ++p) {
      const int32_t marker = st.order[p];
      const uint8_t code = calls.codes[static_cast<std::size_t>(marker) * calls.num_individuals + i];
      if (code == kMissingCall) continue;
      double agree = 0;
      for (int u = 0; u < s; ++u)
        if (calls.Agrees(marker, code, u)) agree += post[(i * m + p) * s + u];
      if (agree < threshold) out.push_back({marker, i, agree});
    }
  return out;
}

// The local search from an evaluated, fitted chain: markers stranded far from their place are
// put back before the polish, while the block moves cannot yet have found them a poor place
// that looks linked, and once more after it; blocks far from their place are carried back
// after it. Returns the moves taken; `gains` is left with the
// linkage of each position when the last step moved nothing, else empty.
int SearchOrder(const GroupCalls& calls, ChainState& st, const FitSettings& fit, const MultipointOptions& options,
                int& em_iterations, std::vector<double>& gains) {
  PolishSettings polish;
  polish.reach = options.reach;
  polish.window = options.window;
  polish.em_rounds = options.polish_em_rounds;
  RelocationSettings relocation;
  relocation.below_lod = options.relocate_lod;
  const int early = RelocateStrays(calls, st, LinkageGains(calls, st, fit.max_rf), fit, relocation);
  if (early > 0) em_iterations += FitChain(calls, st, fit);
  int moves = early + PolishOrder(calls, st, fit, polish).moves;
  const int carried = CarryFarBlocks(calls, st, fit, FarBlockSettings{});
  if (carried > 0) {
    moves += carried;
    em_iterations += FitChain(calls, st, fit);
    moves += PolishOrder(calls, st, fit, polish).moves;
  }
  gains = LinkageGains(calls, st, fit.max_rf);
  const int relocated = RelocateStrays(calls, st, gains, fit, relocation);
  if (relocated > 0) {
    moves += relocated;
    em_iterations += FitChain(calls, st, fit);
    moves += PolishOrder(calls, st, fit, polish).moves;
    gains.clear();
  }
  return moves;
}

// The frame searched on its own, the other markers put in its gaps, and the whole searched
// again. Returns the moves of the last search.
int SearchFromFrame(const GroupCalls& calls, const std::vector<int32_t>& start_order, const std::vector<int32_t>& frame,
                    const FitSettings& fit,
                    const MultipointOptions& options, ChainState& st, int& em_iterations, std::vector<double>& gains) {
  em_iterations += Fit(calls, st, frame, fit.fixed_error.value_or(options.start_error_rate), fit);
  SearchOrder(calls, st, fit, options, em_iterations, gains);
  std::vector<bool> in_frame(calls.num_markers, false);
  for (int32_t m : frame) in_frame[m] = true;
  std::vector<int32_t> others;
  for (int32_t m : start_order)
    if (!in_frame[m]) others.push_back(m);
  em_iterations += Fit(calls, st, InsertIntoFrame(calls, st, others), st.error_rate, fit);
  return SearchOrder(calls, st, fit, options, em_iterations, gains);
}

}  // namespace

bool ValidStartOrder(std::size_t num_markers, const std::vector<int32_t>& start_order) {
  std::vector<bool> seen(num_markers, false);
  for (int32_t m : start_order) {
    if (m < 0 || static_cast<std::size_t>(m) >= num_markers || seen[m]) return false;
    seen[m] = true;
  }
  return true;
}

MultipointGroupMap MapGroupMultipoint(int32_t population_type, int32_t num_individuals,
                                      const std::vector<char>& types, const std::vector<int32_t>& categories,
                                      const std::vector<int32_t>& start_order, const MultipointOptions& options) {
  if (MakeHmmDesign(population_type).num_states == 0 || num_individuals <= 0 ||
      types.size() != categories.size() * static_cast<std::size_t>(num_individuals) ||
      !ValidStartOrder(categories.size(), start_order)) {
    MultipointGroupMap map;
    map.ok = false;
    return map;
  }
  return MapGroupCalls(MakeGroupCalls(population_type, num_individuals, types, categories), start_order, options);
}

MultipointGroupMap MapGroupCalls(const GroupCalls& calls, const std::vector<int32_t>& start_order,
                                 const MultipointOptions& options) {
  MultipointGroupMap map;
  const FitSettings fit = FitFrom(options);
  ChainState st;
  map.em_iterations = Fit(calls, st, start_order, fit.fixed_error.value_or(options.start_error_rate), fit);
  std::vector<double> gains;
  if (options.polish_order) {
    map.polish_moves = SearchOrder(calls, st, fit, options, map.em_iterations, gains);
    // A frame of co-dominant markers with the others put in its gaps is a second start; the
    // likelier of the two searched orders stands.
    const std::vector<int32_t> frame = FrameMarkers(calls, start_order, kMinFrame);
    if (!frame.empty()) {
      ChainState framed;
      std::vector<double> framed_gains;
      const int moves = SearchFromFrame(calls, start_order, frame, fit, options, framed, map.em_iterations, framed_gains);
      if (framed.log_likelihood > st.log_likelihood) {
        st = std::move(framed);
        gains = std::move(framed_gains);
        map.polish_moves = moves;
      }
    }
  }
  // Markers that the chain gains nothing from leave the group, and the rest is fitted again.
  if (gains.empty()) gains = LinkageGains(calls, st, fit.max_rf);
  std::vector<int32_t> kept;
  for (std::size_t p = 0; p < st.order.size(); ++p) {
    if (st.order.size() > 1 && gains[p] < options.min_link_lod)
      map.dropped.push_back(st.order[p]);
    else
      kept.push_back(st.order[p]);
  }
  if (!map.dropped.empty()) map.em_iterations += Fit(calls, st, kept, st.error_rate, fit);

  map.order = st.order;
  map.interval_rf = st.rf;
  map.error_rate = st.error_rate;
  map.log10_likelihood = st.log_likelihood / std::numbers::ln10;
  map.positions_cm.assign(st.order.size(), 0.0);
  for (std::size_t k = 0; k < st.rf.size(); ++k)
    map.positions_cm[k + 1] =
        map.positions_cm[k] + MapRecToDistance(options.mapping_function, static_cast<float>(st.rf[k]));
  map.suspects = FindSuspects(calls, st, options.suspect_posterior);
  return map;
}

}  // namespace gae
