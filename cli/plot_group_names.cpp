#include "plot_group_names.h"

#include <map>

namespace gaecli {

std::vector<std::string> NameGroups(const std::vector<std::vector<std::string>>& chromosomes,
                                    const std::vector<std::string>& fallback, std::vector<std::string>* chosen) {
  std::vector<std::string> names(fallback);
  if (chosen != nullptr) chosen->assign(names.size(), "");
  std::vector<bool> from_table(names.size(), false);
  std::map<std::string, int> groups_of;
  for (std::size_t g = 0; g < chromosomes.size() && g < names.size(); ++g) {
    std::map<std::string, int> count;
    for (const std::string& c : chromosomes[g])
      if (!c.empty()) ++count[c];
    std::string best;
    for (const std::string& c : chromosomes[g])
      if (!c.empty() && (best.empty() || count[c] > count[best])) best = c;
    if (best.empty()) continue;
    names[g] = best;
    if (chosen != nullptr) (*chosen)[g] = best;
    from_table[g] = true;
    ++groups_of[best];
  }
  std::map<std::string, int> seen;
  for (std::size_t g = 0; g < names.size(); ++g) {
    if (from_table[g] && groups_of[names[g]] > 1) names[g].append(".").append(std::to_string(++seen[names[g]]));
  }
  return names;
}

}  // namespace gaecli
