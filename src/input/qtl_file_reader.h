// The input files of the QTL tools, read and checked field by field and section by section.
//
//   Tool  Header fields in file order                                 Sections
//   BIP   Indicator PopType MapFn SpaceType SpaceUnit NumChs PopSize NumTraits
//                                                  map, markers, name check, phenotypes
//   SDL   PopType MapFn SpaceType SpaceUnit NumChs PopSize       map, markers, name check
//   MET   PopType MapFn SpaceType SpaceUnit NumChs PopSize NumEnvs
//                                                  map, markers, name check, one row per environment
//   NAM   PopType MapFn SpaceType SpaceUnit NumChs NumFamilies NumTraits
//                                                  families, map, markers, name check, phenotypes
//   PLQ   as CDQ, pure-line rules (tool code 30)
//   CDQ   PopType MapFn SpaceType SpaceUnit NumChs PopSize NumTraits
//                                                  map, markers, name check, phenotypes
//   CSL   Indicator NumMarkers PopSize NumTraits NumEnvs NumReps
//                                                  markers, phenotype rows
//
// The QTL tools themselves read further sections after these (the BIP trait-check section and
// the CSL parameter section); their rules belong to those tools, so the check stops after the
// sections above and a file that passed them is good.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "input/family_rows.h"
#include "input/header_fields.h"
#include "input/list_reader.h"
#include "input/map_section.h"
#include "input/marker_section.h"
#include "input/phenotype_section.h"

namespace gae {

enum class QtlTool { kBIP, kSDL, kMET, kNAM, kPLQ, kCDQ, kCSL };

struct QtlFileData {
  std::array<int32_t, 12> header{};  // indexed by HeaderField; 0 for fields the tool lacks
  std::vector<Family> families;
  MapSection map;
  MarkerSection markers;
  PhenotypeTable phenotypes;

  int32_t Header(HeaderField field) const { return header[static_cast<int>(field)]; }
};

// The tool code its rules go by (107 BIP, 106 SDL, 108 MET, 110 NAM, 30 PLQ, 20 CDQ, 109 CSL)
// and its three letters.
int ToolCodeOf(QtlTool tool);
std::string_view ToolName(QtlTool tool);

// Reads the whole file; returns with `MessageCode` 0 or the first failure, its line printed.
void ReadQtlFile(InputFile& in, QtlTool tool, QtlFileData& out, bool& missing_word_seen);

}  // namespace gae
