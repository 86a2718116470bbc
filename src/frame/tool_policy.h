// The policy of a map tool: the three seams in which the four map tools differ. Everything else
// (the log, the sizes, the order of the steps, the stages and their defaults, the frame lines,
// the checks on the caller's arrays) is the one driver of map_tool_driver.h, fed by the tool's
// profile (tool_profile.h).
//
// Adding a tool (map_tool_policy.h/.cpp is the worked example for MAP):
//  1. Write `class XxxPolicy : public MapToolPolicy` in src/frame/xxx_tool_policy.{h,cpp}. Its
//     constructor passes ProfileOf(MapTool::kXXX) and, for CheckError, the caller's arrays.
//  2. Read: read the whole input into the policy's own members with the tool's reader. The
//     caller's CheckError arrays are filled in FillCheckArrays, after a read that succeeded.
//  3. WritePairs: fill the .LRD file through the tool's pair-file writer in twopoint/.
//  4. WriteResults: build the tool's reports from the data read and the finished map, with a
//     writer of report/, and write each through the ResultFiles given (`files.Write(".sum",
//     text)`): it names them and never lets one replace the input file.
//  5. Each export in src/frame/exports_xxx.cpp is one line over the generic bodies, for example
//     `gae::AllByDefaultBody(gae::XxxPolicy(), PathLen, Path, Status, gae::PairStoreThreads());`
//     and the export is declared in include/gaengine.h and cmake/gaengine.version.
// The policy never opens a log, prints a frame line or touches the process state: the driver
// does, and hands the policy what it needs as arguments.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "frame/tool_profile.h"
#include "input/list_reader.h"
#include "report/map_layout.h"
#include "report/text_file.h"
#include "twopoint/pair_table.h"

namespace gae {

class UniformStream;

// A finished map as the caller holds it: the output exports receive it, and a whole run lends
// its working state. Marker and group numbers are 1-based.
struct FinishedMap {
  int num_markers = 0;
  const int* anchor = nullptr;            // by marker (a consensus map: the maps holding it)
  int num_mapped = 0;                     // markers on a chromosome
  int num_unlinked = 0;
  int num_groups = 0;                     // chromosomes
  const int* group_name_codes = nullptr;  // 19 character codes per chromosome
  const int* group_size = nullptr;        // markers on each chromosome
  const int* order = nullptr;             // all markers: linked in map order, unlinked, deleted
  const float* position = nullptr;        // cM, one per linked marker
};

// The output switches of an export, in its argument order, each on when 1. A whole run sets
// every switch of its tool to 1.
struct OutputSwitches {
  static constexpr int kMax = 4;
  int value[kMax] = {0, 0, 0, 0};
  int count = 0;  // how many the tool has: 4 for MAP (.lod, .rec, .dis, input files), 1 for CMP
  bool On(int k) const { return k < count && value[k] == 1; }
  static OutputSwitches AllOn(int count);
};

// Copies the caller's finished map into the part of a report layout that every tool's writer
// shares; the marker names and the mapping function are the policy's to add.
void FillFinishedLayout(const FinishedMap& map, FinishedMapLayout& out);

class MapToolPolicy {
 public:
  explicit MapToolPolicy(const ToolProfile& profile) : profile_(profile) {}
  virtual ~MapToolPolicy() = default;
  MapToolPolicy(const MapToolPolicy&) = delete;
  MapToolPolicy& operator=(const MapToolPolicy&) = delete;

  const ToolProfile& Profile() const { return profile_; }

  // Seam 1: reads the whole input file from `in` into the policy. Leaves `MessageCode` 0, or
  // the first failure's code with its line printed.
  virtual void Read(InputFile& in) = 0;
  // After a successful read: the marker count of the file, and per marker what a whole run
  // copies into the working anchors (the file's anchors; a consensus map: the maps holding it).
  virtual int32_t NumMarkers() const = 0;
  virtual std::span<const int32_t> WorkingAnchors() const = 0;
  // CheckError only: fills the caller's per-marker arrays from the data read.
  virtual void FillCheckArrays() = 0;

  // Seam 2: writes the pairwise file `lrd_name` unless a complete one lies there. `threads`
  // estimates pairs on that many cores; an estimator that draws (the clonal AB=CD pairs) takes
  // its numbers from `random`, in record order. False only when the file cannot be written.
  virtual bool WritePairs(const std::string& lrd_name, int threads, UniformStream& random) = 0;
  // The mapping function with which the stages turn stored frequencies into distances.
  virtual int32_t StoreMappingFunction() const = 0;

  // Seam 3: writes the tool's result files through `files`, for a map already checked to
  // describe the markers read. The data read may be consumed: this is its last use.
  virtual void WriteResults(ResultFiles& files, const FinishedMap& map,
                            const OutputSwitches& switches, const PairTable& pairs,
                            UniformStream& random) = 0;

 private:
  const ToolProfile& profile_;
};

}  // namespace gae
