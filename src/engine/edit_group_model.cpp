#include "engine/edit_group_model.h"

namespace gae {

bool BlocksAreConsistent(const GroupModelArrays& model) {
  if (model.num_markers < 0 || model.num_groups < 0 || model.num_mapped < 0 ||
      model.num_unlinked < 0 || model.num_deleted < 0) {
    return false;
  }
  if (model.group_size == nullptr || model.group_status == nullptr || model.group == nullptr ||
      model.order == nullptr || model.position == nullptr) {
    return false;
  }
  // 64 bits: garbage sizes must not wrap around into a plausible sum.
  const int64_t blocks = int64_t{model.num_mapped} + model.num_unlinked + model.num_deleted;
  if (blocks != model.num_markers) return false;
  int64_t mapped = 0;
  for (int32_t g = 0; g < model.num_groups; ++g) {
    if (model.group_size[g] < 0) return false;
    mapped += model.group_size[g];
  }
  return mapped == model.num_mapped;
}

}  // namespace gae
