// One linkage group's order and distances: the step of the map pipeline that a group's
// genotypes go through once its markers are known. Marker indexes here are 0-based positions in
// the group's list of markers, as a multipoint engine takes them.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "engine/order_group.h"
#include "input/map_tool_reader.h"
#include "multipoint/group_map.h"
#include "twopoint/pair_table.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

// A group's map, as the multipoint engine returns it; the two-point layout fills the same record.
using GroupLayout = MultipointGroupMap;

// How a group's start order is found: the tour search of the ordering stage and a ripple of
// its result, or, for data with many dominant and recessive markers, the co-dominant markers
// first and the others placed around them.
struct StartOrderOptions {
  OrderingOptions tour;
  int32_t ripple_by = kByFirstValue;
  int32_t window_size = 5;
  bool around_frame = false;
};

// From this size on a group is ordered along the backbone of its spanning tree rather than by
// the tour search from random starts, whose passes grow with the cube of the group: at 150
// markers the search still takes a fraction of a second, and the backbone is as good.
inline constexpr int32_t kBackboneFrom = 150;
// The backbone reads a pair's frequency only from this LOD on (see TrustedFrequencies): in a
// two-class population of 300 this masks only frequencies above 0.4.
inline constexpr float kTrustedLod = 3.0f;

// The start order of the group of `markers` (1-based input numbers; `kinds` their categories,
// 1 co-dominant, 12 dominant, 10 recessive, read by the frame order only), 0-based. `framed`
// says whether a frame order found enough co-dominant markers. `log` takes one line per
// random start of the tour search.
std::vector<int32_t> StartOrder(const PairTable& pairs, const StartOrderOptions& options,
                                const std::vector<int32_t>& markers, const std::vector<int32_t>& kinds,
                                UniformStream& random, const std::function<void(std::string_view)>& log,
                                bool* framed = nullptr);

// The layout of the group in `start_order` from the stored two-point frequencies of
// neighbouring markers (`markers` 1-based input numbers); positions by `mapping_function`.
// Nothing is dropped and no error rate is known.
GroupLayout GroupMapFromTwoPoint(const PairTable& pairs, int32_t mapping_function,
                                 const std::vector<int32_t>& markers, const std::vector<int32_t>& start_order);

// The genotype letters of `markers` (1-based) marker by marker, types[m * n + i] for the m-th
// marker of the list and individual i, as a multipoint engine reads a group.
std::vector<char> GroupGenotypes(const MapToolInput& input, const std::vector<int32_t>& markers);

}  // namespace gae
