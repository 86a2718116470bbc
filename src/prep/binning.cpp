#include "prep/binning.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <string_view>
#include <unordered_map>

namespace gae {

namespace {

constexpr int kValueBits = 4;
constexpr int kPlanes = 1 + kValueBits;  // typed mask, then the letter's bits

// The letters present get the codes 1..15 in the order met; 'X' is untyped.
struct LetterCodes {
  std::array<uint8_t, 256> code{};
  std::array<char, 16> letter{};
  int used = 0;
  uint8_t Of(char c) {
    if (c == 'X') return 0;
    uint8_t& k = code[static_cast<unsigned char>(c)];
    if (k == 0 && used < 15) {
      k = static_cast<uint8_t>(++used);
      letter[k] = c;
    }
    return k;
  }
};

class Planes {
 public:
  Planes(std::size_t vectors, int32_t lines)
      : words_((static_cast<std::size_t>(lines) + 63) / 64), bits_(vectors * words_ * kPlanes, 0) {}
  std::size_t Words() const { return words_; }
  uint64_t* Of(std::size_t v) { return bits_.data() + v * words_ * kPlanes; }
  const uint64_t* Of(std::size_t v) const { return bits_.data() + v * words_ * kPlanes; }

 private:
  std::size_t words_;
  std::vector<uint64_t> bits_;
};

void Encode(std::string_view letters, LetterCodes& codes, uint64_t* planes, std::size_t words) {
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const uint8_t c = codes.Of(letters[i]);
    if (c == 0) continue;
    const uint64_t bit = uint64_t{1} << (i % 64);
    const std::size_t w = i / 64;
    planes[w] |= bit;
    for (int b = 0; b < kValueBits; ++b)
      if ((c >> b) & 1) planes[(1 + b) * words + w] |= bit;
  }
}

// Whether b may join the bin of consensus a: they differ on at most `tolerance` of the lines
// typed in both (none when it is 0, where most pairs part on their first word).
bool Agree(const uint64_t* a, const uint64_t* b, std::size_t words, float tolerance) {
  int64_t differ_lines = 0, both_lines = 0;
  for (std::size_t w = 0; w < words; ++w) {
    uint64_t differ = 0;
    for (int p = 1; p < kPlanes; ++p) differ |= a[p * words + w] ^ b[p * words + w];
    differ &= a[w] & b[w];
    if (tolerance <= 0.0f) {
      if (differ != 0) return false;
      continue;
    }
    differ_lines += std::popcount(differ);
    both_lines += std::popcount(a[w] & b[w]);
  }
  return static_cast<double>(differ_lines) <= static_cast<double>(tolerance) * static_cast<double>(both_lines);
}

// Lines that the bin has not yet typed take the newcomer's values.
void FillIn(uint64_t* bin, const uint64_t* add, std::size_t words) {
  for (std::size_t w = 0; w < words; ++w) {
    const uint64_t fresh = add[w] & ~bin[w];
    bin[w] |= fresh;
    for (int p = 1; p < kPlanes; ++p) bin[p * words + w] |= add[p * words + w] & fresh;
  }
}

std::string Decode(const uint64_t* planes, std::size_t words, int32_t lines, const LetterCodes& codes) {
  std::string letters(static_cast<std::size_t>(lines), 'X');
  for (int32_t i = 0; i < lines; ++i) {
    const std::size_t w = static_cast<std::size_t>(i) / 64;
    const uint64_t bit = uint64_t{1} << (i % 64);
    if ((planes[w] & bit) == 0) continue;
    int c = 0;
    for (int b = 0; b < kValueBits; ++b)
      if (planes[(1 + b) * words + w] & bit) c |= 1 << b;
    letters[static_cast<std::size_t>(i)] = codes.letter[c];
  }
  return letters;
}

struct DistinctVector {
  std::string_view letters;
  int32_t category = 0;
  int32_t missing = 0;
  std::vector<int32_t> markers;  // in file order
};

}  // namespace

BinningResult BinMarkers(const BinningData& data, std::span<const float> p_values,
                         const BinningOptions& options) {
  BinningResult result;
  const std::size_t n = static_cast<std::size_t>(data.num_individuals);
  auto letters_of = [&](int32_t m) { return std::string_view(data.letters + m * n, n); };

  // Filters first, then identical vectors (of one category) gathered by hashing.
  std::vector<DistinctVector> distinct;
  std::unordered_map<std::string_view, std::vector<std::size_t>> by_vector;
  for (int32_t m = 0; m < data.num_markers; ++m) {
    const std::string_view v = letters_of(m);
    const auto missing = static_cast<int32_t>(std::count(v.begin(), v.end(), 'X'));
    if (n > 0 && static_cast<float>(missing) / static_cast<float>(n) > options.max_missing_rate) {
      result.dropped_missing.push_back(m);
      continue;
    }
    if (static_cast<std::size_t>(m) < p_values.size() && p_values[m] < options.min_distortion_p) {
      result.dropped_distortion.push_back(m);
      continue;
    }
    const int32_t category = static_cast<std::size_t>(m) < data.classes.size() ? data.classes[m] : 0;
    std::vector<std::size_t>& same = by_vector[v];
    auto it = std::find_if(same.begin(), same.end(),
                           [&](std::size_t d) { return distinct[d].category == category; });
    if (it != same.end()) {
      distinct[*it].markers.push_back(m);
    } else {
      same.push_back(distinct.size());
      distinct.push_back({v, category, missing, {m}});
    }
  }

  // Most completely typed first; among equals, the earlier in the file.
  std::vector<std::size_t> order(distinct.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return distinct[a].missing < distinct[b].missing;
  });

  LetterCodes codes;
  Planes vectors(distinct.size(), data.num_individuals);
  const std::size_t words = vectors.Words();
  for (std::size_t d = 0; d < distinct.size(); ++d) Encode(distinct[d].letters, codes, vectors.Of(d), words);

  Planes consensus(distinct.size(), data.num_individuals);
  std::vector<int32_t> bin_category;
  std::vector<std::vector<std::size_t>> bin_vectors;
  for (std::size_t d : order) {
    std::size_t b = options.missing_agrees ? 0 : bin_vectors.size();
    while (b < bin_vectors.size() &&
           (bin_category[b] != distinct[d].category || !Agree(consensus.Of(b), vectors.Of(d), words, options.tolerance)))
      ++b;
    if (b == bin_vectors.size()) {
      bin_vectors.emplace_back();
      bin_category.push_back(distinct[d].category);
    }
    FillIn(consensus.Of(b), vectors.Of(d), words);
    bin_vectors[b].push_back(d);
  }

  for (std::size_t b = 0; b < bin_vectors.size(); ++b) {
    MarkerBin bin;
    const DistinctVector& first = distinct[bin_vectors[b].front()];
    const int32_t representative = first.markers.front();
    for (std::size_t d : bin_vectors[b])
      bin.members.insert(bin.members.end(), distinct[d].markers.begin(), distinct[d].markers.end());
    std::sort(bin.members.begin(), bin.members.end());
    std::rotate(bin.members.begin(),
                std::find(bin.members.begin(), bin.members.end(), representative),
                std::find(bin.members.begin(), bin.members.end(), representative) + 1);
    bin.letters = options.method == 2 ? Decode(consensus.Of(b), words, data.num_individuals, codes)
                                      : std::string(first.letters);
    result.bins.push_back(std::move(bin));
  }
  std::sort(result.bins.begin(), result.bins.end(),
            [](const MarkerBin& a, const MarkerBin& b) { return a.members.front() < b.members.front(); });
  return result;
}

}  // namespace gae
