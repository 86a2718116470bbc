// The CDM tool through its C exports: a whole run of a bred clonal F1 with the files it writes
// read back by the tools that take them (the reader's refusals are in the validators' corpus).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "vocabulary/fixed_format.h"
#include "vocabulary/pair_index.h"
#include "gaengine.h"
#include "support/bred_data_sets.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::CallOnPath;
using testing::CheckCdmFile;
using testing::ReadLines;
using testing::ReadText;
using testing::WriteText;

using CdmRun = testing::InTempDir;

// A whole run of a simulated clonal F1 listed out of map order: the check's counts are those
// bred, the .hap rows follow the map, and each parent's letters change where its bred phases do.
// The frame of the run (its log, stops, rereads) is the frame test's CDM row.
TEST_F(CdmRun, ASimulatedClonalF1ThroughHapParentalMapsAndCorrectedData) {
  std::vector<testing::SimulatedClonalMarker> markers;
  const int categories[] = {1, 1, 2, 1, 3, 1, 1, 2, 1, 3, 1, 1};
  const int first[] = {0, 1, 0, 1, 1, 0, 0, 0, 1, 0, 0, 1};
  const int second[] = {0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 0, 1};
  for (int k = 0; k < 12; ++k)
    markers.push_back({std::string("S").append(std::to_string(k + 10)), 4.0 * k, categories[k], first[k], second[k]});
  const auto types = testing::SimulateClonalChromosome(markers, 300, 0.02, 99);
  const std::vector<int> listing = {5, 0, 11, 3, 8, 1, 10, 6, 2, 9, 4, 7};
  WriteText("sim.cdm", testing::CdmInputFile(1, markers, types, listing));
  ASSERT_EQ(CallOnPath(CDMAllByDefault, "sim.cdm"), 0);
  for (const char* suffix : {".sum", ".sumf", ".summ", ".mtp", ".lod", ".lodf", ".lodm", ".rec", ".recf",
                             ".recm", ".dis", ".disf", ".dism", ".err"})
    EXPECT_TRUE(testing::FileExists(std::string("sim") + suffix)) << suffix;
  EXPECT_EQ(ReadText("sim.LRD").size(), 28u * PairCount(12));

  // Rows in map order: the name, then the letters of the homologues A and C.
  std::vector<std::string> names;
  std::vector<char> a, c;
  const std::vector<std::string> hap = ReadLines("sim.hap");
  for (size_t k = 1; k < hap.size(); ++k) {
    names.push_back(fmt::Trim(hap[k].substr(33, 35)));
    a.push_back(hap[k][68 + 12 + 11]);
    c.push_back(hap[k][68 + 36 + 11]);
  }
  ASSERT_EQ(names.size(), 12u);
  auto bred = [&](const std::string& name) { return markers[std::stoi(name.substr(1)) - 10]; };
  // Between consecutive markers that segregate in a parent, the letters change exactly where
  // the bred phases change.
  for (const bool first_parent : {true, false}) {
    int before = -1;
    for (int k = 0; k < 12; ++k) {
      const testing::SimulatedClonalMarker m = bred(names[k]);
      if (m.category == (first_parent ? 2 : 3)) continue;
      if (before >= 0) {
        const testing::SimulatedClonalMarker b = bred(names[before]);
        const bool bred_same = first_parent ? m.first_phase == b.first_phase : m.second_phase == b.second_phase;
        const bool hap_same = first_parent ? a[k] == a[before] : c[k] == c[before];
        EXPECT_EQ(bred_same, hap_same) << names[before] << " " << names[k];
      }
      before = k;
    }
  }
  // Each parent's map leaves out the two markers that do not segregate in it (A=B, C=D).
  for (const char* suffix : {".sumf", ".summ"}) {
    const std::string sum = ReadText(std::string("sim") + suffix);
    const size_t whole = sum.find("         WholeGenome");
    ASSERT_NE(whole, std::string::npos) << suffix;
    EXPECT_EQ(std::stoi(sum.substr(whole + 40, 20)), 10) << suffix;
  }
  // The corrected data are read again by the check, changed only to missing; the QTL file by
  // its validator.
  const testing::CdmCheck read = CheckCdmFile("sim.cdm"), corrected = CheckCdmFile("simEC.cdm");
  ASSERT_EQ(read.status, 0);
  const char* kTypes[] = {"AC", "AD", "BC", "BD", "XC", "XD", "AX", "BX", "AA", "AB", "BB", "XX"};
  for (int i = 0; i < 12; ++i) {  // the check counts the types as bred
    EXPECT_EQ(read.category[i], markers[listing[i]].category);
    const std::vector<std::string>& bred_types = types[listing[i]];
    for (int t = 0; t < 12; ++t) EXPECT_EQ(read.sizes[t][i], std::count(bred_types.begin(), bred_types.end(), kTypes[t]));
  }
  ASSERT_EQ(corrected.status, 0);
  ASSERT_EQ(corrected.n, 12);
  for (int k = 0; k < 12; ++k) {  // the corrected file lists the markers in map order
    int i = 0;
    while (i < 12 && read.Name(i) != corrected.Name(k)) ++i;
    ASSERT_LT(i, 12) << corrected.Name(k);
    EXPECT_EQ(corrected.category[k], read.category[i]);
    EXPECT_GE(corrected.sizes[11][k], read.sizes[11][i]);
    for (int t = 0; t < 11; ++t) EXPECT_LE(corrected.sizes[t][k], read.sizes[t][i]);
  }
  EXPECT_EQ(CallOnPath(CheckErrorCDQ, "sim.cdq"), 0);

  // The QTL file holds the genotypes as bred, each marker in the phase .hap gives it: its row
  // is the bred row with A and B, or C and D, or both exchanged. The scan's flags (there are
  // some) go to the corrected data set only.
  const auto qtl = testing::MarkerRowCells("sim.cdq", 300);
  ASSERT_EQ(qtl.size(), 12u);
  auto exchange = [](std::string type, bool ab, bool cd) {
    for (char& c : type) {
      if (ab && (c == 'A' || c == 'B')) c = c == 'A' ? 'B' : 'A';
      else if (cd && (c == 'C' || c == 'D')) c = c == 'C' ? 'D' : 'C';
    }
    return type;
  };
  int flagged = 0;
  for (int i = 0; i < 12; ++i) {
    const auto row = qtl.find(markers[listing[i]].name);
    ASSERT_NE(row, qtl.end()) << markers[listing[i]].name;
    bool in_one_phase = false;
    for (int way = 0; way < 4; ++way) {
      std::vector<std::string> phased;
      for (const std::string& t : types[listing[i]]) phased.push_back(exchange(t, way & 1, way & 2));
      in_one_phase = in_one_phase || phased == row->second;
    }
    EXPECT_TRUE(in_one_phase) << row->first;
    for (int k = 0; k < 12; ++k)
      if (corrected.Name(k) == read.Name(i)) flagged += corrected.sizes[11][k] - read.sizes[11][i];
  }
  EXPECT_GT(flagged, 0);
}

}  // namespace
}  // namespace gae
