#include "prep/pair_file_checks.h"

#include "vocabulary/pair_index.h"

#include <algorithm>
#include <cmath>
#include <utility>


namespace gae {

namespace {

// The conflicts of the markers under `anchors` as they stand. A group's claim on a marker is
// the number of its markers linked above the threshold, so that a block of misplaced markers,
// linked among themselves, still counts for little against the group they came from.
std::vector<AnchorConflict> Conflicts(const PairTable& pairs, const std::vector<int32_t>& anchors, float threshold) {
  std::vector<AnchorConflict> found;
  const auto n = static_cast<int64_t>(anchors.size());
  const int32_t groups = anchors.empty() ? 0 : *std::max_element(anchors.begin(), anchors.end());
  const std::size_t slots = static_cast<std::size_t>(std::max(groups, 0)) + 1;
  std::vector<float> best(slots);
  std::vector<int> partner(slots), links(slots);
  for (int64_t i = 1; i <= n; ++i) {
    const int32_t own = anchors[static_cast<std::size_t>(i - 1)];
    if (own <= 0) continue;
    std::fill(best.begin(), best.end(), 0.0f);
    std::fill(links.begin(), links.end(), 0);
    for (int64_t j = 1; j <= n; ++j) {
      const auto group = static_cast<std::size_t>(std::max(anchors[static_cast<std::size_t>(j - 1)], 0));
      if (j == i || group == 0) continue;
      const float lod = -pairs.First(i, j);
      if (std::isnan(lod)) continue;
      links[group] += lod > threshold;
      if (lod > best[group]) best[group] = lod, partner[group] = static_cast<int>(j);
    }
    const auto most = static_cast<std::size_t>(std::max_element(links.begin(), links.end()) - links.begin());
    const auto mine = static_cast<std::size_t>(own);
    if (most != mine && links[most] > links[mine])
      found.push_back({static_cast<int>(i), own, static_cast<int32_t>(most), best[mine], best[most], partner[most],
                       links[mine], links[most]});
  }
  return found;
}

}  // namespace

// A misplaced marker pulls the markers it links to into conflict with their own, right, group.
// So the clearest case (the fewest links into its own group against the other) is named first
// and freed, and the rest judged again without it.
std::vector<AnchorConflict> AnchorConflicts(const PairTable& pairs, std::span<const int32_t> anchors,
                                            float threshold) {
  std::vector<int32_t> working(anchors.begin(), anchors.end());
  std::vector<AnchorConflict> named;
  for (;;) {
    const std::vector<AnchorConflict> found = Conflicts(pairs, working, threshold);
    if (found.empty()) break;
    const auto clearest = std::min_element(found.begin(), found.end(), [](const AnchorConflict& a, const AnchorConflict& b) {
      const int by_links = (a.links_own - a.links_other) - (b.links_own - b.links_other);
      return by_links != 0 ? by_links < 0 : a.lod_own - a.lod_other < b.lod_own - b.lod_other;
    });
    named.push_back(*clearest);
    working[static_cast<std::size_t>(clearest->marker - 1)] = 0;
  }
  std::sort(named.begin(), named.end(), [](const AnchorConflict& a, const AnchorConflict& b) { return a.marker < b.marker; });
  return named;
}

// A marker whose strongest link is to the recombinant side (a frequency above 1/2) is read as
// switched; switching it turns the side of all its pairs, which can clear its neighbours, so the
// clearest marker is named first and the rest judged again.
namespace {

// Each marker's strongest parental and recombinant links, as the markers named so far being
// switched make them: one pass over the records in store order.
void StrongestSides(const PairTable& pairs, int64_t num_markers, const std::vector<bool>& switched,
                    std::vector<float>& parental, std::vector<float>& recombinant,
                    const std::function<void(int64_t)>& passed) {
  parental.assign(static_cast<std::size_t>(num_markers) + 1, 0.0f);
  recombinant.assign(static_cast<std::size_t>(num_markers) + 1, 0.0f);
  const int64_t stored = std::min(PairCount(num_markers), pairs.num_records);
  int64_t k = 0;
  for (int64_t i = 2; i <= num_markers && k < stored; ++i) {
    for (int64_t j = 1; j < i && k < stored; ++j, ++k) {
      const float* record = pairs.records + k * pairs.record_length;
      const float lod = -record[0], rec = record[1];
      if (std::isnan(lod) || std::isnan(rec) || rec == 0.5f) continue;
      const bool high = (rec > 0.5f) != (switched[static_cast<std::size_t>(i)] != switched[static_cast<std::size_t>(j)]);
      std::vector<float>& side = high ? recombinant : parental;
      side[static_cast<std::size_t>(i)] = std::max(side[static_cast<std::size_t>(i)], lod);
      side[static_cast<std::size_t>(j)] = std::max(side[static_cast<std::size_t>(j)], lod);
    }
    if (passed && i % 256 == 0) passed(k);
  }
  if (passed) passed(k);
}

}  // namespace

std::vector<int> SwitchedAlleleMarkers(const PairTable& pairs, int64_t num_markers, float threshold,
                                       const std::function<void(int64_t)>& passed) {
  std::vector<bool> switched(static_cast<std::size_t>(num_markers) + 1, false);
  std::vector<int> named;
  std::vector<float> parental, recombinant;
  for (int64_t round = 0; round < num_markers; ++round) {
    StrongestSides(pairs, num_markers, switched, parental, recombinant, passed);
    int best_marker = 0;
    float best_margin = 0.0f;
    for (int64_t i = 1; i <= num_markers; ++i) {
      const float p = parental[static_cast<std::size_t>(i)], r = recombinant[static_cast<std::size_t>(i)];
      if (r > threshold && r - p > best_margin) {
        best_margin = r - p;
        best_marker = static_cast<int>(i);
      }
    }
    if (best_marker == 0) break;
    switched[static_cast<std::size_t>(best_marker)] = !switched[static_cast<std::size_t>(best_marker)];
    named.push_back(best_marker);
  }
  return named;
}

}  // namespace gae
