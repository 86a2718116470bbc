#include "input/repeated_names.h"

#include <unordered_map>

namespace gae {

std::optional<RepeatedName> FirstRepeatedName(std::span<const std::string_view> names) {
  std::unordered_map<std::string_view, std::size_t> first_seen;
  first_seen.reserve(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto [it, inserted] = first_seen.emplace(names[i], i);
    if (!inserted) return RepeatedName{i, it->second};
  }
  return std::nullopt;
}

}  // namespace gae
