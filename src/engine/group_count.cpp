// Average linkage to a fixed number of groups without recomputing every cluster mean at every
// merge.
//
// The mean that decides a merge is a 32-bit sum in a fixed order, and a merged cluster's sum
// cannot be derived exactly from its parts' sums: the order of the terms changes. So each pair
// of clusters keeps either its exact 32-bit sum (while neither cluster has changed since it
// was summed) or an approximate sum with a rigorous bound on how far the exact 32-bit mean can
// lie from it. A merge needs only the pair with the lowest possible mean, made exact, and
// proven to come first among all pairs that reach that mean: the choice is the rule's own,
// the first smallest in the order of cluster pairs, made on exact values.
// Each cluster keeps the lowest bound of its pairs with the lower clusters, so a merge costs a
// pass over the clusters plus the exact sums of the few pairs that come near the top.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "engine/grouping.h"

namespace gae {

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();   // NaN: never the smallest
constexpr double kUnsure = -std::numeric_limits<double>::infinity();  // no usable bound
constexpr double kUnit = 5.9604644775390625e-08;                      // 2^-24, float rounding

class ClusterMerger {
 public:
  ClusterMerger(const PairTable& table, int by_what, std::vector<std::vector<int32_t>> members)
      : table_(table), by_what_(by_what), members_(std::move(members)) {
    const std::size_t count = members_.size();
    active_.assign(count, true);
    const std::size_t pairs = count * (count - 1) / 2;
    sum_.assign(pairs, 0.0f);
    abs_.assign(pairs, 0.0f);
    exact_.assign(pairs, 1);
    for (std::size_t a = 1; a < count; ++a)
      for (std::size_t b = 0; b < a; ++b) Recompute(a, b);
    row_low_.assign(count, kNever);
    row_arg_.assign(count, 0);
    row_stale_.assign(count, false);
    for (std::size_t a = 1; a < count; ++a) RescanRow(a);
    live_ = count;
  }

  std::size_t Live() const { return live_; }

  // One merge by the rule: the chosen higher cluster joins the lower one.
  void MergeOnce() {
    std::size_t a = 0, b = 0;
    if (!Choose(a, b)) Fallback(a, b);
    Merge(a, b);
  }

  // Final group numbers: the rank of each marker's live cluster.
  void WriteGroups(int32_t* group) const {
    int32_t rank = 0;
    for (std::size_t c = 0; c < members_.size(); ++c) {
      if (!active_[c]) continue;
      ++rank;
      for (const int32_t m : members_[c]) group[m - 1] = rank;
    }
  }

 private:
  static std::size_t Index(std::size_t a, std::size_t b) {  // a > b
    return a * (a - 1) / 2 + b;
  }
  double Size(std::size_t c) const { return static_cast<double>(members_[c].size()); }

  // The rule's own value: the sum in order, over the product of the sizes, in 32 bits.
  void Recompute(std::size_t a, std::size_t b) {
    float sum = 0.0f, abs = 0.0f;
    for (const int32_t x : members_[a]) {
      for (const int32_t y : members_[b]) {
        const float v = PairValue(table_, by_what_, x, y);
        sum += v;
        abs += std::fabs(v);
      }
    }
    const std::size_t k = Index(a, b);
    sum_[k] = sum;
    abs_[k] = abs;
    exact_[k] = 1;
  }

  float ExactMean(std::size_t a, std::size_t b) const {
    const float product = static_cast<float>(members_[a].size() * members_[b].size());
    return sum_[Index(a, b)] / product;
  }

  // A value no greater than the exact mean of the pair.
  double Low(std::size_t a, std::size_t b) const {
    const std::size_t k = Index(a, b);
    if (exact_[k]) {
      const float mean = ExactMean(a, b);
      return std::isnan(mean) ? kNever : static_cast<double>(mean);
    }
    const float abs = abs_[k];
    if (std::isnan(abs)) return kNever;  // a NaN value: the sum is NaN in any order
    const double terms = Size(a) * Size(b);
    // Any order of summing N terms in 32 bits errs by at most (N-1)u/(1-(N-1)u) of the sum of
    // magnitudes, both for the exact sum and for the merged one; the factor 3 covers the two
    // and the rounding of the stored magnitude itself.
    const double spread = 3.0 * (terms + 1.0) * kUnit;
    if (!(abs <= 1e30f) || spread >= 0.5) return kUnsure;
    const double approx = static_cast<double>(sum_[k]) / terms;
    // The division adds two roundings (of the size product and of the quotient); the margin
    // of 1% and the absolute 1e-30 cover the double arithmetic here and 32-bit underflow.
    const double bound =
        1.01 * (spread * static_cast<double>(abs) / terms + 3.0 * kUnit * std::fabs(approx)) + 1e-30;
    return approx - bound;
  }

  void RescanRow(std::size_t a) {
    row_low_[a] = kNever;
    row_arg_[a] = 0;
    row_stale_[a] = false;
    for (std::size_t b = 0; b < a; ++b) {
      if (!active_[b]) continue;
      const double low = Low(a, b);
      if (low < row_low_[a]) {
        row_low_[a] = low;
        row_arg_[a] = b;
      }
    }
  }

  // Makes the pair exact and keeps its row's minimum right.
  void MakeExact(std::size_t a, std::size_t b) {
    if (exact_[Index(a, b)]) return;
    Recompute(a, b);
    Lowered(a, b);
  }

  // Entry (a, b) of row a has a new value: the row's minimum is kept a true lower bound, and
  // marked stale when the entry that held it may have grown.
  void Lowered(std::size_t a, std::size_t b) {
    const double low = Low(a, b);
    if (low < row_low_[a]) {  // below a bound of every other entry: the row's true minimum
      row_low_[a] = low;
      row_arg_[a] = b;
      row_stale_[a] = false;
    } else if (row_arg_[a] == b || low == row_low_[a]) {
      // The minimum may have grown, or an earlier entry may now tie with it.
      row_stale_[a] = true;
    }
  }

  // The rule's choice, or false when no pair has a mean below infinity.
  //
  // The first row (in cluster order) with the lowest bound is brought up to date until its
  // bound is attained by an exact mean. That pair is then the rule's: every other pair's exact
  // mean is at least its own bound, the rows before this one have higher bounds, and inside
  // the row no pair before it reaches the bound.
  bool Choose(std::size_t& chosen_a, std::size_t& chosen_b) {
    for (;;) {
      std::size_t a = 0;
      double low = kNever;
      for (std::size_t r = 1; r < members_.size(); ++r) {
        if (active_[r] && row_low_[r] < low) {
          low = row_low_[r];
          a = r;
        }
      }
      if (low == kNever) return false;
      if (row_stale_[a]) {
        RescanRow(a);
        continue;
      }
      const std::size_t b = row_arg_[a];
      if (!exact_[Index(a, b)]) {
        MakeExact(a, b);
        continue;
      }
      if (Low(a, b) != low) {  // never trust a minimum that its pair does not reach
        RescanRow(a);
        continue;
      }
      chosen_a = a;
      chosen_b = b;
      return true;
    }
  }

  // No mean compares (empty clusters or NaN values only): the first pair in the rule's order
  // that involves an empty cluster merges, which moves no marker; failing that the first pair.
  void Fallback(std::size_t& chosen_a, std::size_t& chosen_b) const {
    std::vector<std::size_t> live;
    for (std::size_t c = 0; c < members_.size(); ++c)
      if (active_[c]) live.push_back(c);
    chosen_a = live[1];
    chosen_b = live[0];
    for (std::size_t x = 1; x < live.size(); ++x) {
      for (std::size_t y = 0; y < x; ++y) {
        if (members_[live[x]].empty() || members_[live[y]].empty()) {
          chosen_a = live[x];
          chosen_b = live[y];
          return;
        }
      }
    }
  }

  void Merge(std::size_t a, std::size_t b) {
    std::vector<int32_t> joined;
    joined.reserve(members_[a].size() + members_[b].size());
    std::merge(members_[b].begin(), members_[b].end(), members_[a].begin(), members_[a].end(),
               std::back_inserter(joined));
    members_[b].swap(joined);
    std::vector<int32_t>().swap(members_[a]);
    active_[a] = false;
    --live_;
    for (std::size_t c = 0; c < members_.size(); ++c) {
      if (!active_[c] || c == b) continue;
      const std::size_t kb = b > c ? Index(b, c) : Index(c, b);
      const std::size_t ka = a > c ? Index(a, c) : Index(c, a);
      if (members_[b].empty() || members_[c].empty()) {
        sum_[kb] = 0.0f;  // no term: the mean is 0/0 and never counts
        abs_[kb] = 0.0f;
        exact_[kb] = 1;
      } else {
        sum_[kb] += sum_[ka];
        abs_[kb] += abs_[ka];
        exact_[kb] = 0;
      }
    }
    RescanRow(b);
    for (std::size_t c = b + 1; c < members_.size(); ++c) {
      if (!active_[c]) continue;
      if (row_arg_[c] == a) row_stale_[c] = true;  // its minimum went with cluster a
      Lowered(c, b);
    }
  }

  const PairTable& table_;
  int by_what_;
  std::vector<std::vector<int32_t>> members_;  // by cluster, ascending marker numbers
  std::vector<bool> active_;
  std::size_t live_ = 0;
  // By pair of clusters (higher, lower), packed: the 32-bit sum, the sum of magnitudes, and
  // whether the sum is the rule's exact one.
  std::vector<float> sum_;
  std::vector<float> abs_;
  std::vector<uint8_t> exact_;
  // By cluster: a lower bound of the possible means against the lower clusters and the pair
  // that attains it; once stale, only the bound holds until the row is scanned again.
  std::vector<double> row_low_;
  std::vector<std::size_t> row_arg_;
  std::vector<bool> row_stale_;
};

}  // namespace

void GroupToCount(const PairTable& table, int by_what, int32_t n, int32_t count,
                  const int32_t* anchor, int32_t* group) {
  if (n < 1) return;
  // A negative anchor is no anchor; a count below one means one group.
  const std::vector<int32_t> ranked = AnchorRanks(n, anchor);
  anchor = ranked.data();
  const int32_t largest = std::max(0, *std::max_element(anchor, anchor + n));
  const int32_t target = std::max(1, std::min(n, std::max(count, largest)));
  if (target == 1) {
    std::fill(group, group + n, 1);
    return;
  }
  std::vector<std::vector<int32_t>> members(static_cast<std::size_t>(largest));
  for (int32_t i = 1; i <= n; ++i) {
    if (anchor[i - 1] >= 1) {
      members[static_cast<std::size_t>(anchor[i - 1] - 1)].push_back(i);
    } else {
      members.push_back({i});
    }
  }
  ClusterMerger merger(table, by_what, std::move(members));
  while (merger.Live() > static_cast<std::size_t>(target)) merger.MergeOnce();
  merger.WriteGroups(group);
}

}  // namespace gae
