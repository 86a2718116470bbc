// `gaengine map FILE`: our own pipeline by default, or with --front-end the front end's default
// sequence of exports, as the desktop program runs it; a CMP file makes a consensus either way.
#pragma once

#include <string>

#include "frame/tool_profile.h"

namespace gaecli {

struct MapOptions {
  std::string file, tool, lod, order = "default";
  float max_rf = -1.0f;  // negative: not given
  bool plots = false, tsv = false, front_end = false;
  float min_lod = 3.0f;
  float error_rate = -1.0f;  // negative: estimated from the data
  bool no_bin = false;           // map every marker, however many
  float bin_tolerance = -1.0f;   // negative: only identical markers share a bin
  bool force = false;        // map even when the data fit another design or alleles look switched
  std::vector<std::string> switch_alleles;
};

// The tool of an input: --tool (MAP, CDM, PLM or CMP, any case), or without it the file's
// extension (.cdm, .plm, .cmp; any other MAP).
const gae::ToolProfile& InputTool(const std::string& file, const std::string& chosen);

// The names after the stem of the files a map run writes, the optional tables and pictures included.
std::vector<std::string> ResultSuffixes(const MapOptions& options);

// The front end's default sequence through the exports, with its summary. Returns the exit status.
int RunFrontEndMap(const MapOptions& options);
// The library's map pipeline, with a summary from its record. Returns the exit status.
int RunPipelineMap(const MapOptions& options);

}  // namespace gaecli
