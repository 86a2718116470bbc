#include "prep/group_names_from_loci.h"

#include <algorithm>
#include <map>
#include <set>

namespace gae {

void NameGroupsByChromosome(const LocusTable& table, const std::vector<std::string>& marker_names,
                            const std::vector<int>& group_of, std::size_t width, std::vector<std::string>& names) {
  std::map<std::string, std::string> chromosome_of;
  for (const LocusRow& row : table.rows)
    if (!row.chromosome.empty()) chromosome_of[row.marker] = row.chromosome;
  // For each group, the chromosome most of its markers come from and how many do.
  struct Claim {
    int markers = 0, group = 0;
    std::string chromosome;
  };
  std::vector<Claim> claims;
  for (std::size_t g = 1; g <= names.size(); ++g) {
    std::map<std::string, int> count;
    int size = 0;
    for (std::size_t m = 0; m < marker_names.size() && m < group_of.size(); ++m) {
      if (group_of[m] != static_cast<int>(g)) continue;
      ++size;
      if (const auto at = chromosome_of.find(marker_names[m]); at != chromosome_of.end()) ++count[at->second];
    }
    const auto top = std::max_element(count.begin(), count.end(),
                                      [](const auto& a, const auto& b) { return a.second < b.second; });
    if (top != count.end() && 2 * top->second > size) claims.push_back({top->second, static_cast<int>(g), top->first});
  }
  std::stable_sort(claims.begin(), claims.end(), [](const Claim& a, const Claim& b) { return a.markers > b.markers; });
  std::set<std::string> taken;
  for (const Claim& c : claims) {
    if (!taken.insert(c.chromosome).second) continue;
    std::string name = c.chromosome.substr(0, width);
    name.resize(width, ' ');
    names[static_cast<std::size_t>(c.group - 1)] = name;
  }
}

}  // namespace gae
