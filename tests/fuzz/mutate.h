// Random edits of an input for the fuzz drivers that have no coverage guidance: the plain
// replay driver and the validators' test over the bundled examples.
#pragma once

#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace gae::fuzz {

// Values that sit on the edges of what the readers take.
inline const char* const kEdgeTokens[] = {"0", "-1", "1", "2147483647", "-2147483648", "NaN", "Inf", "1e39", "-0.0",
                                   "9999999999", "X", "ABCD", "!", "", "300000000"};

// One mutation of `text`: a byte changed, inserted or dropped, a stretch repeated or cut, a
// token replaced by an edge value, or the tail of another input spliced on.
inline void Mutate(std::string& text, const std::vector<std::string>& pool, std::mt19937_64& rng) {
  auto pick = [&rng](std::size_t n) { return n == 0 ? std::size_t{0} : std::uniform_int_distribution<std::size_t>(0, n - 1)(rng); };
  const std::size_t at = pick(text.size() + 1);
  switch (pick(7)) {
    case 0:
      if (!text.empty()) text[pick(text.size())] = static_cast<char>(pick(256));
      break;
    case 1:
      text.insert(at, 1, "0123456789 \n.-+eEXABHDR!"[pick(24)]);
      break;
    case 2:
      if (!text.empty()) text.erase(pick(text.size()), 1 + pick(16));
      break;
    case 3: {
      const std::size_t from = pick(text.size() + 1), length = pick(200);
      text.insert(at, text.substr(from, length));
      break;
    }
    case 4: {  // a whitespace-delimited token becomes an edge value
      std::size_t begin = text.find_first_not_of(" \t\n\r", at);
      if (begin == std::string::npos) break;
      const std::size_t end = text.find_first_of(" \t\n\r", begin);
      text.replace(begin, (end == std::string::npos ? text.size() : end) - begin, kEdgeTokens[pick(std::size(kEdgeTokens))]);
      break;
    }
    case 5:
      text.resize(at);
      break;
    default: {
      const std::string& other = pool[pick(pool.size())];
      text = text.substr(0, at) + other.substr(pick(other.size() + 1));
      break;
    }
  }
  if (text.size() > (1u << 20)) text.resize(1u << 20);
}

}  // namespace gae::fuzz
