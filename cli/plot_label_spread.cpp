#include "plot_label_spread.h"

#include <algorithm>
#include <numeric>

namespace gaecli {

namespace {

// Least-squares fit of a non-decreasing sequence (pool adjacent violators): a block of pooled
// values takes their mean, and blocks merge while a later mean falls below an earlier one.
std::vector<double> NonDecreasingFit(const std::vector<double>& values) {
  struct Block {
    double sum;
    std::size_t count;
    double Mean() const { return sum / static_cast<double>(count); }
  };
  std::vector<Block> blocks;
  for (double v : values) {
    blocks.push_back({v, 1});
    while (blocks.size() > 1 && blocks[blocks.size() - 2].Mean() >= blocks.back().Mean()) {
      const Block last = blocks.back();
      blocks.pop_back();
      blocks.back().sum += last.sum;
      blocks.back().count += last.count;
    }
  }
  std::vector<double> fit;
  fit.reserve(values.size());
  for (const Block& b : blocks) fit.insert(fit.end(), b.count, b.Mean());
  return fit;
}

}  // namespace

std::vector<double> SpreadLabels(const std::vector<double>& wanted, double pitch, double low, double high) {
  const std::size_t n = wanted.size();
  if (n == 0) return {};
  // Markers come in map order, but a label list need not be sorted: keep each label's rank.
  std::vector<std::size_t> rank(n);
  std::iota(rank.begin(), rank.end(), 0);
  std::stable_sort(rank.begin(), rank.end(), [&](std::size_t a, std::size_t b) { return wanted[a] < wanted[b]; });
  // With z_k = y_k - k * pitch, "at least pitch apart" becomes "z non-decreasing", so the
  // closest spread placement is the non-decreasing least-squares fit of wanted_k - k * pitch.
  std::vector<double> shifted(n);
  for (std::size_t k = 0; k < n; ++k) shifted[k] = wanted[rank[k]] - static_cast<double>(k) * pitch;
  std::vector<double> z = NonDecreasingFit(shifted);
  const double span = static_cast<double>(n - 1) * pitch;
  double z_low = low, z_high = high - span;
  if (z_high < z_low) {
    // Too many labels for the room: centre the column on the markers it names.
    const double centre = 0.5 * (wanted[rank.front()] + wanted[rank.back()]);
    z_low = z_high = centre - 0.5 * span;
  }
  // Clipping the fit to constant bounds keeps it optimal under those bounds.
  std::vector<double> placed(n);
  for (std::size_t k = 0; k < n; ++k) {
    placed[rank[k]] = std::clamp(z[k], z_low, z_high) + static_cast<double>(k) * pitch;
  }
  return placed;
}

}  // namespace gaecli
