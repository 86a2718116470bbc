// The working map that a front end keeps between the stage calls of a map tool.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "gaengine.h"

namespace gaecli {

struct FrontEndMap {
  int num_markers = 0, num_groups = 0, map_state = 0;
  int num_mapped = 0, num_unlinked = 0;
  std::vector<int> group, group_size, group_status, order;
  std::vector<float> position;

  // From the marker groups: the group table, then the order (each group's markers by number,
  // then the unlinked, then the deleted markers) with zero positions.
  void BuildFromGroups() {
    num_groups = std::max(0, group.empty() ? 0 : *std::max_element(group.begin(), group.end()));
    MapGroupCheck(num_markers, &num_groups, group.data());
    group_size.assign(num_groups, 0);
    group_status.assign(num_groups, 1);
    order.clear();
    for (int g = 1; g <= num_groups; ++g)
      for (int m = 1; m <= num_markers; ++m)
        if (group[m - 1] == g) order.push_back(m), ++group_size[g - 1];
    num_mapped = static_cast<int>(order.size());
    for (int m = 1; m <= num_markers; ++m)
      if (group[m - 1] == 0) order.push_back(m);
    num_unlinked = static_cast<int>(order.size()) - num_mapped;
    for (int m = 1; m <= num_markers; ++m)
      if (group[m - 1] < 0) order.push_back(m);
    position.assign(num_markers, 0.0f);
    map_state = 1;
  }

  std::vector<int> NameCodes() const {
    std::vector<int> codes;
    for (int g = 1; g <= num_groups; ++g) {
      std::string name = (group_status[g - 1] >= 2 ? "Chromsome" : "Group") + std::to_string(g);
      name.resize(19, ' ');
      for (char c : name) codes.push_back(static_cast<unsigned char>(c));
    }
    return codes;
  }
};

}  // namespace gaecli
