#include "map_gates.h"

#include <cstdio>

#include "engine/auto_lod.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "input/raw_calls.h"
#include "input/tool_codes.h"
#include "library_output.h"
#include "prep/allele_switch.h"
#include "prep/design_check.h"
#include "prep/map_input_text.h"
#include "prep/pair_file_checks.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/pair_store_writer.h"
#include "vocabulary/message_code.h"
#include "report/text_file.h"

namespace gaecli {

namespace {


}  // namespace

std::string NameList(const std::vector<std::string>& names, std::size_t shown) {
  std::string text;
  for (std::size_t k = 0; k < names.size() && k < shown; ++k) text += (k ? " " : "") + names[k];
  if (names.size() > shown) text += " and " + std::to_string(names.size() - shown) + " more";
  return text;
}

int CheckBeforePairs(const std::string& file, int tool_code, bool force, std::vector<std::string>& notes) {
  gae::RawCalls calls;
  gae::LongRow row;
  gae::RawCallsRead read;
  {
    const LibraryOutput quiet(false);
    read = gae::ReadRawCalls(file, tool_code, calls, row);
  }
  if (read == gae::RawCallsRead::kLongRow) {
    std::fprintf(stderr,
                 "%s line %d, marker %s: %d genotypes, but the header says %d individuals; the reader would drop "
                 "the rest of the line or read it as the next marker\n  hint: make the population size (the "
                 "fifth value of the header) the number of individuals, or remove the extra genotypes\n",
                 file.c_str(), row.line, row.name.c_str(), row.items, calls.population_size);
    return 1;
  }
  if (read != gae::RawCallsRead::kRead || calls.letters.empty()) return 0;  // the library's check explains
  const gae::DesignVerdict verdict = gae::CheckDesign(calls.population_type, calls.letters);
  if (verdict.wrong_design && !force) {
    std::string types;
    for (std::size_t k = 0; k < verdict.better.size() && k < 3; ++k)
      types += (k ? " or " : "") + std::to_string(verdict.better[k]);
    std::fprintf(stderr,
                 "%s: %s: population type %s?\n  hint: the population type is the first value of the file; "
                 "import again with --pop %s, or map as declared with --force\n",
                 file.c_str(), gae::DesignMessage(verdict).c_str(), types.c_str(), types.c_str());
    return 1;
  }
  if (!verdict.distorted.empty() && !verdict.wrong_design) {
    std::vector<std::string> names;
    for (const int m : verdict.distorted) names.push_back(calls.names[static_cast<std::size_t>(m)]);
    notes.push_back("Distorted         " + std::to_string(names.size()) + " (reject the " +
                    gae::SegregationRatioText(calls.population_type) + " of " +
                    gae::TypeWithArticle(calls.population_type) + ", p < 0.001): " + NameList(names));
  }
  if (verdict.wrong_design)
    notes.push_back("Design            mapped as declared (--force): " + gae::DesignMessage(verdict));
  return 0;
}

int CheckPairFile(const std::string& file, int tool_code, const MarkerTable& markers, float threshold, bool force,
                  std::vector<std::string>& notes) {
  std::vector<std::string> names;
  for (int k = 0; k < markers.num_markers; ++k) names.push_back(markers.Name(k));
  const std::vector<int32_t> anchors(markers.anchor.begin(), markers.anchor.end());
  return CheckPairFile(file, tool_code, names, anchors, threshold, force, notes);
}

int CheckPairFile(const std::string& file, int tool_code, const std::vector<std::string>& marker_names,
                  const std::vector<int32_t>& anchors, float threshold, bool force, std::vector<std::string>& notes) {
  const int num_markers = static_cast<int>(marker_names.size());
  auto name = [&](int k) { return marker_names[static_cast<std::size_t>(k)]; };
  if (tool_code != gae::kMapToolCode) return 0;
  gae::PairStoreFile store;
  if (!store.Open(gae::PairStoreName(file), 2, 1)) return 0;
  const auto conflicts = gae::AnchorConflicts(store.Table(), anchors, threshold);
  if (!conflicts.empty()) {
    for (const gae::AnchorConflict& c : conflicts)
      std::fprintf(stderr,
                   "%s: marker %s is anchored to group %d, but links to group %d (%s with %s, %d markers above "
                   "the threshold; in group %d %d markers, %s at most)\n",
                   file.c_str(), name(c.marker - 1).c_str(), c.own, c.other, gae::LodText(c.lod_other).c_str(),
                   name(c.partner_other - 1).c_str(), c.links_other, c.own, c.links_own,
                   gae::LodText(c.lod_own).c_str());
    std::fprintf(stderr,
                 "  hint: anchors tie markers to groups whatever their pairs say; correct the marker's anchor in the "
                 "anchor section (0 frees it), or import without --anchors\n");
    return 1;
  }
  // Passes over the whole file: what lies behind a pass leaves memory.
  const std::vector<int> switched =
      gae::SwitchedAlleleMarkers(store.Table(), num_markers, threshold, [&store](int64_t records) { store.Passed(records); });
  if (switched.empty()) return 0;
  std::vector<std::string> names;
  std::string list;
  for (const int m : switched) {
    names.push_back(name(m - 1));
    list += (list.empty() ? "" : ",") + names.back();
  }
  const std::string words = "alleles look switched in " + NameList(names) +
                            " (recombination frequencies above 0.5 at LOD above the threshold with linked markers)";
  if (!force) {
    std::fprintf(stderr, "%s: %s\n  hint: --switch-alleles %s maps them the other way round; --force maps as they are\n",
                 file.c_str(), words.c_str(), list.c_str());
    return 1;
  }
  notes.push_back("Switched alleles  " + NameList(names) + " (mapped as they are: --force)");
  return 0;
}

std::string WriteSwitchedCopy(const std::string& file, const std::vector<std::string>& markers) {
  gae::MapToolInput input;
  {
    const LibraryOutput quiet(false);
    gae::InputFile in;
    if (in.Open(file)) gae::ReadMapToolInput(in, gae::kMapToolCode, input);
    if (!in.IsOpen() && gae::MessageCode() == 0) gae::MessageCode() = -1;
  }
  const int status = gae::MessageCode();
  gae::MessageCode() = 0;
  if (status != 0 || input.num_markers == 0) {
    std::fprintf(stderr, "%s: cannot be read as a MAP file to switch alleles in; run gaengine map on it first\n",
                 file.c_str());
    return "";
  }
  gae::MapInputRecord record;
  record.population_type = input.population_type;
  record.mapping_function = input.mapping_function;
  record.space_type = input.space_type;
  record.population_size = input.population_size;
  record.categories = input.markers.categories;
  record.anchors = input.anchors;
  const auto size = static_cast<std::size_t>(input.population_size);
  std::vector<std::string> left = markers;
  for (int32_t m = 0; m < input.num_markers; ++m) {
    std::string name = input.markers.names[static_cast<std::size_t>(m)];
    name.erase(name.find_last_not_of(' ') + 1);
    std::string letters(input.markers.types.begin() + static_cast<std::ptrdiff_t>(m * size),
                        input.markers.types.begin() + static_cast<std::ptrdiff_t>((m + 1) * size));
    if (std::erase(left, name) > 0) {
      gae::SwitchAlleles(input.population_type, letters);
      record.categories[static_cast<std::size_t>(m)] = gae::SwitchedCategory(record.categories[static_cast<std::size_t>(m)]);
    }
    record.names.push_back(name);
    record.letters.push_back(letters);
  }
  if (!left.empty()) {
    std::fprintf(stderr, "--switch-alleles: no marker named %s in %s\n", NameList(left).c_str(), file.c_str());
    return "";
  }
  const std::string out = file.substr(0, file.size() - 4) + "_sw.map";
  if (!gae::WriteTextFile(out, gae::MapInputText(record))) {
    std::fprintf(stderr, "%s: cannot be written\n", out.c_str());
    return "";
  }
  std::printf("Alleles switched in %s: mapping %s\n", NameList(markers).c_str(), out.c_str());
  return out;
}

}  // namespace gaecli
