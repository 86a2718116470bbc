// What the three tools that read a genotype file (MAP, CDM, PLM) share as policies: one reader
// with the tool's rules, the marker count and anchors of the file, and the mapping function the
// file asks for. Each tool adds its check arrays, its pair estimator and its reports.
#pragma once

#include <cstdint>

#include "frame/tool_policy.h"
#include "input/map_tool_reader.h"

namespace gae {

class GenotypeToolPolicy : public MapToolPolicy {
 public:
  void Read(InputFile& in) override { ReadMapToolInput(in, Profile().tool_code, data_); }
  int32_t NumMarkers() const override { return data_.num_markers; }
  std::span<const int32_t> WorkingAnchors() const override { return data_.anchors; }
  int32_t StoreMappingFunction() const override { return data_.mapping_function; }

 protected:
  using MapToolPolicy::MapToolPolicy;
  MapToolInput data_;
};

}  // namespace gae
