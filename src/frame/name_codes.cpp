#include "frame/name_codes.h"

#include <algorithm>
#include <cstdint>

namespace gae {

void NamesToCodes(std::span<const std::string> names, int width, int extent, int* codes) {
  const int n = std::min<int64_t>(extent, static_cast<int64_t>(names.size()));
  for (int i = 0; i < n; ++i) {
    const std::string& name = names[i];
    for (int j = 0; j < width; ++j) {
      const char c = j < static_cast<int>(name.size()) ? name[j] : ' ';
      codes[static_cast<int64_t>(j) * extent + i] = static_cast<unsigned char>(c);
    }
  }
}

std::vector<int> GroupNamesToCodes(std::span<const std::string> names) {
  std::vector<int> codes;
  codes.reserve(names.size() * kGroupNameWidth);
  for (const std::string& name : names)
    for (int j = 0; j < kGroupNameWidth; ++j)
      codes.push_back(static_cast<unsigned char>(j < static_cast<int>(name.size()) ? name[j] : ' '));
  return codes;
}

std::string GroupNameFromCodes(const int* codes, int g) {
  std::string name(kGroupNameWidth, ' ');
  for (int j = 0; j < kGroupNameWidth; ++j)
    name[j] = static_cast<char>(codes[static_cast<int64_t>(g) * kGroupNameWidth + j]);
  return name;
}

}  // namespace gae
