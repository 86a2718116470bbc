#include "map_options.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "engine/frame_ordering.h"
#include "engine/linkage_rule.h"
#include "engine/map_state.h"
#include "frame/map_tool_driver.h"
#include "frame/tool_profile.h"
#include "twopoint/pair_store_file.h"

namespace gaecli {

namespace {

const gae::ToolProfile& MapProfile() { return gae::ProfileOf(gae::MapTool::kMAP); }

}  // namespace

bool GroupByLinkageRule(const gae::LinkageRule& rule, const int32_t* anchors, gae::MapModel& map) {
  const gae::StageContext context = gae::ProcessStageContext(MapProfile().stage_rules);
  gae::PairStoreFile store;
  if (!gae::OpenPairStore(store, context.store)) return false;
  const std::vector<int32_t> groups = gae::LinkageGroups(store.Table(), map.num_markers, rule, anchors);
  std::copy(groups.begin(), groups.end(), map.group.begin());
  return true;
}

bool OrderAroundFrames(const MarkerTable& markers, gae::MapModel& map, std::string& note) {
  const gae::StageContext context = gae::ProcessStageContext(MapProfile().stage_rules);
  gae::PairStoreFile store;
  if (!gae::OpenPairStore(store, context.store)) return false;
  const gae::StageDefaults& d = MapProfile().defaults;
  gae::FrameOrderingOptions options;
  options.frame = {d.ordering_method, d.ordering_by, d.ordering_option, d.ordering_param1, d.ordering_param2};
  options.ripple_by = d.rippling_by;
  options.window_size = d.window_size;
  const gae::StartSink to_log = [&](const gae::StartRecord& record) {
    if (context.log_only) context.log_only(gae::StartLine(record));
  };
  std::string fallback;
  size_t start = 0;
  for (int g = 0; g < map.num_groups; ++g) {
    const int n = map.group_size[static_cast<size_t>(g)];
    std::vector<int32_t> kind(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) kind[static_cast<size_t>(i)] = markers.category[static_cast<size_t>(map.order[start + i] - 1)];
    const gae::FrameOrderingResult result =
        gae::OrderAroundFrame(store.Table(), options, n, kind.data(), map.order.data() + start,
                              map.position.data() + start, *context.random, to_log);
    if (!result.framed && n >= 2) {
      char text[64];
      std::snprintf(text, sizeof text, "%s%d (%d of %d)", fallback.empty() ? "" : ", ", g + 1, result.frame_size, n);
      fallback += text;
    }
    map.group_status[static_cast<size_t>(g)] = gae::kGroupRippled;
    start += static_cast<size_t>(n);
  }
  map.map_state = gae::kMapRippled;
  note = "co-dominant markers ordered first, the others placed where their pairs with them fit best";
  if (!fallback.empty())
    note += "\n                    too few co-dominant markers for that, default order in group " + fallback;
  return true;
}

}  // namespace gaecli
