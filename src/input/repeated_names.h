// The first repeated name of a list, as a pairwise scan finds it: visiting the names in order
// and comparing each with all names before it, the first name that equals an earlier one,
// together with the earliest name it equals. A hash table gives the same pair in one pass, so
// a file of a hundred thousand markers is checked as fast as one of a hundred.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace gae {

struct RepeatedName {
  std::size_t later = 0;    // 0-based index of the first name seen before
  std::size_t earlier = 0;  // 0-based index of that name's first occurrence
};

std::optional<RepeatedName> FirstRepeatedName(std::span<const std::string_view> names);

}  // namespace gae
