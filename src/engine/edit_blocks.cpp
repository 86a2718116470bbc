#include "engine/edit_blocks.h"

#include "engine/edit_in_group.h"

namespace gae {

namespace {

// The caller's arrays through 1-based indices, as every rule of the layout is stated.
struct Indexed {
  GroupModelArrays& model;
  int32_t& Order(int32_t i) const { return model.order[i - 1]; }
  float& Position(int32_t i) const { return model.position[i - 1]; }
  bool IsMarker(int32_t m) const { return m >= 1 && m <= model.num_markers; }
  // Entries from+1..end move to from..end-1; entry `end` keeps its old value.
  void ShiftPositionsLeft(int32_t from, int32_t end) const {
    for (int32_t i = from; i < end; ++i) Position(i) = Position(i + 1);
  }
};

// Takes the marker at place p of group g out and puts it at index `end` (1-based), the last
// place of the block it joins; the entries in between slide one place towards the front.
// Returns the marker, or 0 when the request is invalid.
int32_t TakeOutOfGroup(GroupModelArrays& model, int32_t g, int32_t p, int32_t end,
                       const PairTable* table) {
  if (!IsGroupNumber(model, g)) return 0;
  const Indexed a{model};
  const int32_t base = GroupStart(model, g);
  const int32_t n = model.group_size[g - 1];
  if (p < 1 || p > n) return 0;
  const int32_t m = a.Order(base + p);
  if (!a.IsMarker(m)) return 0;
  // No store to join the neighbours with: leave the map as it is.
  if (RemovalNeedsDistance(model, g, p) && table == nullptr) return 0;

  if (model.group_status[g - 1] == kGroupGrouped) {
    a.ShiftPositionsLeft(p + base, end);
  } else if (p == 1) {
    // The group's positions are made relative to the leaving marker but stay in their
    // places: the markers that remain show the positions of the first n-1 entries, one place
    // out of step. Front ends rely on exactly this result, so it stays.
    const float first = a.Position(base + 1);
    for (int32_t i = base + 1; i <= base + n - 1; ++i) a.Position(i) -= first;
    a.ShiftPositionsLeft(base + n, end);
  } else if (p == n) {
    a.ShiftPositionsLeft(base + n, end);
  } else {
    // Join the two neighbours by their own distance; every later gap is kept.
    const float d = table->Distance(a.Order(base + p - 1), a.Order(base + p + 1));
    a.Position(base + p) = a.Position(base + p - 1) + d;
    for (int32_t k = base + p + 1; k <= base + n - 1; ++k) {
      const float gap = a.Position(k + 1) - a.Position(k);
      a.Position(k) = a.Position(k - 1) + gap;
    }
    a.ShiftPositionsLeft(base + n, end);
  }
  a.Position(end) = 0.0f;
  for (int32_t i = base + p; i < end; ++i) a.Order(i) = a.Order(i + 1);
  a.Order(end) = m;
  model.group_size[g - 1] -= 1;
  model.num_mapped -= 1;
  return m;
}

// Moves the entry at index `from` (1-based, behind the groups) to the end of group t; the
// entries in between slide one place towards the back. Returns false on an invalid request.
bool PutAtEndOfGroup(GroupModelArrays& model, int32_t from, int32_t t, int32_t place_mode,
                     const PairTable* table) {
  if (!IsGroupNumber(model, t)) return false;
  const Indexed a{model};
  const int32_t m = a.Order(from);
  if (!a.IsMarker(m)) return false;
  if (InsertNeedsDistance(model, t) && table == nullptr) return false;

  const int32_t start = GroupStart(model, t);
  const int32_t size = model.group_size[t - 1];
  const int32_t e = start + size;
  for (int32_t i = from; i > e + 1; --i) {
    a.Order(i) = a.Order(i - 1);
    a.Position(i) = a.Position(i - 1);
  }
  a.Order(e + 1) = m;
  // An empty group has no last marker to measure from (e is the end of the group before it):
  // the newcomer is the group's first marker, and a first marker sits at 0.
  if (InsertNeedsDistance(model, t)) {
    a.Position(e + 1) = a.Position(e) + table->Distance(a.Order(e), m);
  } else {
    a.Position(e + 1) = 0.0f;
  }
  model.group_size[t - 1] = size + 1;
  model.group[m - 1] = t;
  model.num_mapped += 1;
  if (place_mode == 4) {
    BestPlace(size + 1, size + 1, model.group_status[t - 1], model.order + start,
              model.position + start, table);
  }
  return true;
}

// Moves the entry at index `from` to index `to` (both 1-based), order and position alike, the
// entries in between sliding one place. An unplaced marker has no position: it gets 0.
void MoveEntry(const Indexed& a, int32_t from, int32_t to) {
  const int32_t m = a.Order(from);
  const int32_t step = from < to ? 1 : -1;
  for (int32_t i = from; i != to; i += step) {
    a.Order(i) = a.Order(i + step);
    a.Position(i) = a.Position(i + step);
  }
  a.Order(to) = m;
  a.Position(to) = 0.0f;
}

}  // namespace

bool RemovalNeedsDistance(const GroupModelArrays& model, int32_t g, int32_t p) {
  return model.group_status[g - 1] != kGroupGrouped && p > 1 && p < model.group_size[g - 1];
}

bool InsertNeedsDistance(const GroupModelArrays& model, int32_t t) {
  return model.group_status[t - 1] != kGroupGrouped && model.group_size[t - 1] > 0;
}

bool RemoveToUnlinked(GroupModelArrays& model, int32_t g, int32_t p, const PairTable* table) {
  const int32_t m = TakeOutOfGroup(model, g, p, model.num_mapped + model.num_unlinked, table);
  if (m == 0) return false;
  model.group[m - 1] = 0;
  model.num_unlinked += 1;
  return true;
}

bool RemoveToDeleted(GroupModelArrays& model, int32_t g, int32_t p, const PairTable* table) {
  const int32_t m = TakeOutOfGroup(model, g, p, model.num_markers, table);
  if (m == 0) return false;
  model.group[m - 1] = kDeletedGroup;
  model.num_deleted += 1;
  return true;
}

bool UnlinkedToDeleted(GroupModelArrays& model, int32_t p) {
  if (p < 1 || p > model.num_unlinked) return false;
  const Indexed a{model};
  const int32_t m = a.Order(model.num_mapped + p);
  if (!a.IsMarker(m)) return false;
  MoveEntry(a, model.num_mapped + p, model.num_markers);
  model.group[m - 1] = kDeletedGroup;
  model.num_unlinked -= 1;
  model.num_deleted += 1;
  return true;
}

bool DeletedToUnlinked(GroupModelArrays& model, int32_t p) {
  if (p < 1 || p > model.num_deleted) return false;
  const Indexed a{model};
  const int32_t first_deleted = model.num_mapped + model.num_unlinked + 1;
  const int32_t m = a.Order(first_deleted - 1 + p);
  if (!a.IsMarker(m)) return false;
  MoveEntry(a, first_deleted - 1 + p, first_deleted);
  model.group[m - 1] = 0;
  model.num_unlinked += 1;
  model.num_deleted -= 1;
  return true;
}

bool InsertFromUnlinked(GroupModelArrays& model, int32_t p, int32_t t, int32_t place_mode,
                        const PairTable* table) {
  if (p < 1 || p > model.num_unlinked) return false;
  if (!PutAtEndOfGroup(model, model.num_mapped + p, t, place_mode, table)) return false;
  model.num_unlinked -= 1;
  return true;
}

bool InsertFromDeleted(GroupModelArrays& model, int32_t p, int32_t t, int32_t place_mode,
                       const PairTable* table) {
  if (p < 1 || p > model.num_deleted) return false;
  const int32_t from = model.num_mapped + model.num_unlinked + p;
  if (!PutAtEndOfGroup(model, from, t, place_mode, table)) return false;
  model.num_deleted -= 1;
  return true;
}

bool MoveBetweenGroups(GroupModelArrays& model, int32_t s, int32_t p, int32_t t,
                       int32_t place_mode, const PairTable* table) {
  if (!IsGroupNumber(model, s) || !IsGroupNumber(model, t) || s == t) return false;
  if (p < 1 || p > model.group_size[s - 1]) return false;
  // Check both halves first, so that a missing store cannot strand the marker unlinked.
  if ((RemovalNeedsDistance(model, s, p) || InsertNeedsDistance(model, t)) && table == nullptr) {
    return false;
  }
  if (!RemoveToUnlinked(model, s, p, table)) return false;
  return InsertFromUnlinked(model, model.num_unlinked, t, place_mode, table);
}

}  // namespace gae
