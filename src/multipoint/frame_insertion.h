// Groups that mix co-dominant markers with dominant and recessive ones. A dominant marker
// beside a recessive one says almost nothing about their distance, so an order built through
// such pairs can go astray at large, and moves of one or a few markers cannot bring it back.
// The co-dominant markers, ordered on their own, make a frame; every other marker goes into
// the frame's gap where the chain's likelihood is highest, all scored against the same frame.
#pragma once

#include <cstdint>
#include <vector>

#include "multipoint/chain_fit.h"

namespace gae {

// The frame markers of `start` (co-dominant ones) in its order; empty when the group has fewer
// than `min_frame` of them or nothing but them.
std::vector<int32_t> FrameMarkers(const GroupCalls& calls, const std::vector<int32_t>& start, int min_frame);

// `frame`: the frame, fitted and evaluated; `others`: the markers to place. Returns the whole
// order. Markers that share a gap stand in the order of the side they lean to.
std::vector<int32_t> InsertIntoFrame(const GroupCalls& calls, const ChainState& frame,
                                     const std::vector<int32_t>& others);

}  // namespace gae
