// Moving one marker between the three blocks of `order`: out of a group, into a group, and
// between the unlinked and deleted blocks. Every step keeps the layout whole: the entries
// between the old and the new place slide one place, the counts follow, and `group` of the
// marker names its new block. A place or group out of range, or a distance needed with no
// `table`, returns false with nothing changed.
//
// Places are 1-based and local: p is the marker's place inside its group, or inside the
// unlinked or deleted block.
#pragma once

#include <cstdint>

#include "engine/edit_group_model.h"
#include "twopoint/pair_table.h"

namespace gae {

// Whether taking the marker at place p out of group g reads a distance: only a middle marker
// of an ordered group does, to join its two neighbours.
bool RemovalNeedsDistance(const GroupModelArrays& model, int32_t g, int32_t p);
// Whether adding a marker at the end of group t reads a distance: only an ordered group that
// already has a last marker does.
bool InsertNeedsDistance(const GroupModelArrays& model, int32_t t);

// The marker at place p of group g becomes the last unlinked (or, second form, the last
// deleted) marker. An ordered group is patched: a middle marker's neighbours are joined by
// their stored distance and the later gaps kept; when the first marker leaves, the remaining
// positions stay where they were, so each marker shows the position of the one before it.
bool RemoveToUnlinked(GroupModelArrays& model, int32_t g, int32_t p, const PairTable* table);
bool RemoveToDeleted(GroupModelArrays& model, int32_t g, int32_t p, const PairTable* table);

// The unlinked marker at place p becomes the last deleted marker.
bool UnlinkedToDeleted(GroupModelArrays& model, int32_t p);
// The deleted marker at place p becomes the last unlinked marker.
bool DeletedToUnlinked(GroupModelArrays& model, int32_t p);

// The unlinked (or deleted) marker at place p joins the end of group t, placed at its stored
// distance from the group's last marker when the group is ordered; `place_mode` 4 then moves
// it to its best place.
bool InsertFromUnlinked(GroupModelArrays& model, int32_t p, int32_t t, int32_t place_mode,
                        const PairTable* table);
bool InsertFromDeleted(GroupModelArrays& model, int32_t p, int32_t t, int32_t place_mode,
                       const PairTable* table);

// The marker at place p of group s joins group t (t != s) as `InsertFromUnlinked` places it,
// passing through the unlinked block; the block counts come out unchanged.
bool MoveBetweenGroups(GroupModelArrays& model, int32_t s, int32_t p, int32_t t,
                       int32_t place_mode, const PairTable* table);

}  // namespace gae
