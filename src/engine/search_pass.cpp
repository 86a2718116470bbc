#include "engine/search_pass.h"

#include "engine/candidate_moves.h"
#include "vocabulary/pair_index.h"

namespace gae {

PassView ViewPass(const TourMatrix& d, const Successors& next, bool open_path) {
  PassView v;
  v.m = static_cast<int32_t>(next.size()) - 1;
  v.city = TourFromCityOne(next, v.m);
  v.city.push_back(v.city.front());
  v.edge.resize(static_cast<std::size_t>(v.m));
  for (int32_t p = 0; p < v.m; ++p) {
    v.edge[static_cast<std::size_t>(p)] = d(v.city[static_cast<std::size_t>(p)], v.city[static_cast<std::size_t>(p + 1)]);
  }
  if (!open_path) return v;
  int64_t edges[4];
  LongestEdges(d, next, v.longest, edges);
  v.rank.assign(static_cast<std::size_t>(v.m), 0);
  for (int32_t p = 0; p < v.m; ++p) {
    const int64_t index = GroupPairIndex(v.city[static_cast<std::size_t>(p)], v.city[static_cast<std::size_t>(p + 1)]);
    for (int8_t k = 0; k < 3; ++k) {
      if (edges[k] == index) {
        v.rank[static_cast<std::size_t>(p)] = static_cast<int8_t>(k + 1);
        break;
      }
    }
  }
  return v;
}

std::vector<int32_t> PositionsOf(const PassView& v) {
  std::vector<int32_t> pos(static_cast<std::size_t>(v.m + 1), 0);
  for (int32_t p = 0; p < v.m; ++p) pos[static_cast<std::size_t>(v.city[static_cast<std::size_t>(p)])] = p;
  return pos;
}

}  // namespace gae
