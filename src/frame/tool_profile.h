// The four map tools (MAP, CDM, PLM, CMP) run one sequence: sizes, allocate, read, pairs, group,
// order, ripple, name, write, free. What differs between them is data, kept here as one profile
// per tool, and three seams of behaviour (read, write the pairs, write the results), which are
// the tool's policy (tool_policy.h).
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/stage_rules.h"

namespace gae {

enum class MapTool { kMAP, kCDM, kPLM, kCMP };

// The options a whole run passes to the three stages. They are settled per tool: the ordering
// and rippling steps of MAP, CDM and PLM deliberately use different criteria, recombination
// frequency for ordering and LOD for rippling. The threshold is a LOD score for ByWhat 1 and a
// recombination frequency for ByWhat 2.
struct StageDefaults {
  int grouping_method, grouping_by;
  float threshold;
  int ordering_method, ordering_by, ordering_option, ordering_param1, ordering_param2;
  int rippling_by, window_size;
};

struct ToolProfile {
  MapTool id;
  std::string_view letters;  // the log file (letters + ".log") and the "DLL ..." names
  int tool_code;             // read rules and the stage exports' ToolCode: 104, 20, 30, 105
  // The rules of the marker-count read: the MAP header (10), CDM (20) or PLM (30). 0 means the
  // sizes are not in the header alone: the consensus tool reads its whole map section.
  int header_code;
  bool timed_read;           // the read gets its own CPU-time line
  int record_length;         // words per pair record in the .LRD file
  int output_switches;       // switches of the output export, all 1 in a whole run
  StageDefaults defaults;
  StageRules stage_rules;
  // The names the frame prints with its 1101, 1102 and 1103 lines.
  std::string_view find_num_markers_name;  // "DLL MAPFindNumMarkers"
  std::string_view check_failure_name;     // "DLL CheckErrorMAP"
  std::string_view check_success_name;     // "DLL CheckErrrorMAP": three r, what front ends match
  std::string_view all_by_default_name;    // "DLL MAPAllByDefault"
  std::string_view read_data_name;         // "DLL MAP_ReadData"
  std::string_view output_name;            // "DLL MAPOutput"
};

const ToolProfile& ProfileOf(MapTool tool);
// The profile of a stage export's ToolCode (104 MAP, 105 CMP, 20 CDM, 30 PLM), or null.
const ToolProfile* ProfileOfStageCode(int tool_code);

// The profile of a tool named by its letters in any case ("cdm", "CDM"), as a file's extension
// names the tool that reads it; null for other letters.
const ToolProfile* ProfileOfLetters(std::string_view letters);

// What the stages are told about a stage export's ToolCode; any unknown code has the rules of
// the genotype-based tools.
StageRules StageRulesOf(int tool_code);
// The three letters of a stage export's log; empty (no log) for any other code.
std::string_view StageLogTool(int tool_code);

}  // namespace gae
