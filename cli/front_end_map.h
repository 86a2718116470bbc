// The working map that a front end keeps between the stage calls of a map tool, with the
// library's rules for the group model and the group names.
#pragma once

#include <string>
#include <vector>

#include "engine/map_state.h"
#include "frame/name_codes.h"

namespace gaecli {

struct FrontEndMap {
  gae::MapModel model;

  void BuildFromGroups() { gae::RebuildGroupModel(model); }

  std::vector<std::string> Names() const {
    std::vector<std::string> names(static_cast<size_t>(model.num_groups), std::string(gae::kGroupNameWidth, ' '));
    gae::NameGroups(model.num_groups, model.group_status.data(), names);
    return names;
  }
};

}  // namespace gaecli
