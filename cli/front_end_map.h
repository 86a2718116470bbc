// The working map that a front end keeps between the stage calls of a map tool, with the
// library's rules for the group model and the group names.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/map_state.h"
#include "frame/name_codes.h"
#include "prep/group_names_from_loci.h"
#include "prep/locus_table.h"

namespace gaecli {

struct FrontEndMap {
  gae::MapModel model;
  // The locus table an import left beside the input, and the input's marker names: groups
  // are then named after the chromosomes of their markers.
  std::optional<gae::LocusTable> loci;
  std::vector<std::string> marker_names;

  void BuildFromGroups() { gae::RebuildGroupModel(model); }

  std::vector<std::string> Names() const {
    std::vector<std::string> names(static_cast<size_t>(model.num_groups), std::string(gae::kGroupNameWidth, ' '));
    gae::NameGroups(model.num_groups, model.group_status.data(), names);
    if (loci) gae::NameGroupsByChromosome(*loci, marker_names, model.group, gae::kGroupNameWidth, names);
    return names;
  }
};

}  // namespace gaecli
