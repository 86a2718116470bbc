// What the three tools that read a genotype file (MAP, CDM, PLM) share as policies: one reader
// with the tool's rules, the marker count and anchors of the file, and the mapping function the
// file asks for. Each tool adds its check arrays, its pair estimator and its reports.
#pragma once

#include <cstdint>

#include "frame/tool_policy.h"
#include "input/map_tool_reader.h"
#include "report/map_layout.h"

namespace gae {

class GenotypeToolPolicy : public MapToolPolicy {
 public:
  void Read(InputFile& in) override { ReadMapToolInput(in, Profile().tool_code, data_); }
  int32_t NumMarkers() const override { return data_.num_markers; }
  std::span<const int32_t> WorkingAnchors() const override { return data_.anchors; }
  int32_t StoreMappingFunction() const override { return data_.mapping_function; }

 protected:
  using MapToolPolicy::MapToolPolicy;

  // Copies the names, anchors and categories read into the check arrays of a caller that holds
  // `extent` markers, and returns how many markers the tool's own counts then fill: the
  // caller's extent governs the copy, the file's what there is to copy.
  int CopyMarkerIdentity(int extent, int* name_codes, int* anchor, int* category) const;
  // The genotypes read of marker i (0-based), one letter per individual.
  const char* TypesOf(int i) const { return data_.markers.types.data() + int64_t{i} * data_.population_size; }
  // Moves the population and the genotypes read into a tool's report layout beside the
  // caller's finished map; the categories stay for the tool to place.
  void MoveIntoLayout(const FinishedMap& map, GenotypeLayout& out);
  // The bi-parental and pure-line layout: the categories read become the marker classes.
  MapLayout TakeMapLayout(const FinishedMap& map);

  MapToolInput data_;
};

}  // namespace gae
