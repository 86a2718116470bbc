#include "frame/tool_profile.h"

#include <cctype>

#include "input/tool_codes.h"

namespace gae {

namespace {

// The stage lines of a whole run ("DLL MAPGrouping", ...) are the same words for every tool;
// only the frame's own lines carry the tool's letters.
constexpr ToolProfile kProfiles[] = {
    {MapTool::kMAP, "MAP", kMapToolCode, kMapHeaderCode, true, 2, 4,
     {1, 1, 3.0f, 2, 2, 1, 5, 3, 1, 5}, {false},
     "DLL MAPFindNumMarkers", "DLL CheckErrorMAP", "DLL CheckErrrorMAP", "DLL MAPAllByDefault",
     "DLL MAP_ReadData", "DLL MAPOutput"},
    {MapTool::kCDM, "CDM", kClonalToolCode, kClonalToolCode, true, 7, 4,
     {1, 2, 0.3f, 2, 2, 1, 5, 3, 1, 5}, {false},
     "DLL CDMFindNumMarkers", "DLL CheckErrorCDM", "DLL CheckErrrorCDM", "DLL CDMAllByDefault",
     "DLL CDM_ReadData", "DLL CDMOutput"},
    {MapTool::kPLM, "PLM", kPureLineToolCode, kPureLineToolCode, true, 2, 4,
     {1, 2, 0.3f, 2, 2, 1, 10, 2, 1, 5}, {false},
     "DLL PLMFindNumMarkers", "DLL CheckErrorPLM", "DLL CheckErrrorPLM", "DLL PLMAllByDefault",
     "DLL PLM_ReadData", "DLL PLMOutput"},
    // A consensus run has no genotypes to time the reading of, and its store holds distances.
    {MapTool::kCMP, "CMP", kConsensusToolCode, 0, false, 2, 1,
     {1, 3, 3.0f, 2, 3, 1, 5, 3, 3, 5}, {true},
     "DLL CMPFindNumMarkers", "DLL CheckErrorCMP", "DLL CheckErrrorCMP", "DLL CMPAllByDefault",
     "DLL CMP_ReadData", "DLL CMPOutput"},
};

}  // namespace

const ToolProfile& ProfileOf(MapTool tool) {
  for (const ToolProfile& p : kProfiles)
    if (p.id == tool) return p;
  return kProfiles[0];  // unreachable: every enumerator has a row
}

const ToolProfile* ProfileOfStageCode(int tool_code) {
  for (const ToolProfile& p : kProfiles)
    if (p.tool_code == tool_code) return &p;
  return nullptr;
}

const ToolProfile* ProfileOfLetters(std::string_view letters) {
  auto same = [](std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t k = 0; k < a.size(); ++k)
      if (std::toupper(static_cast<unsigned char>(a[k])) != std::toupper(static_cast<unsigned char>(b[k])))
        return false;
    return true;
  };
  for (const ToolProfile& p : kProfiles)
    if (same(p.letters, letters)) return &p;
  return nullptr;
}

StageRules StageRulesOf(int tool_code) {
  const ToolProfile* p = ProfileOfStageCode(tool_code);
  return p != nullptr ? p->stage_rules : StageRules{};
}

std::string_view StageLogTool(int tool_code) {
  const ToolProfile* p = ProfileOfStageCode(tool_code);
  return p != nullptr ? p->letters : std::string_view();
}

}  // namespace gae
