// Whole default runs of `gaengine map` on bred data sets: the linkage groups are the
// chromosomes, for pure lines of every type and for lines and doubled haploids with scoring
// errors, where chance pairs between chromosomes once merged them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/bred_data_sets.h"
#include "support/command_run.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::ReadText;

class GroupingTargets : public testing::InTempDir {};

// The chromosomes (C01 of C01M001) that each group of <stem>.map.tsv holds.
std::map<std::string, std::set<std::string>> ChromosomesByGroup(const std::string& tsv) {
  std::map<std::string, std::set<std::string>> out;
  std::istringstream in(tsv);
  std::string line;
  std::getline(in, line);  // header
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    std::string group, marker;
    std::getline(fields, group, '\t');
    std::getline(fields, marker, '\t');
    out[group].insert(marker.substr(0, 3));
  }
  return out;
}

void ExpectGroupsAreChromosomes(const std::string& file, int chromosomes) {
  const testing::CommandRun r = testing::Gaengine("--seed 3 map --tsv " + file);
  ASSERT_EQ(r.exit_code, 0) << r.out;
  const std::string stem = file.substr(0, file.size() - 4);
  const auto groups = ChromosomesByGroup(ReadText(stem + ".map.tsv"));
  EXPECT_EQ(static_cast<int>(groups.size()), chromosomes) << r.out;
  std::set<std::string> seen;
  for (const auto& [group, held] : groups) {
    EXPECT_EQ(held.size(), 1u) << "group " << group << " spans chromosomes\n" << r.out;
    seen.insert(held.begin(), held.end());
  }
  EXPECT_EQ(static_cast<int>(seen.size()), chromosomes) << r.out;
}

TEST_F(GroupingTargets, PureLinesOfEveryTypeGroupByChromosome) {
  // Founder patterns from fully informative to bi-allelic, as a SNP panel gives them.
  const std::vector<int32_t> four = {1234, 1212, 1233, 1134, 1221, 1232, 1222, 1231};
  const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111118, 12211221,
                                      12222222, 12312312, 11335577, 12345671, 12121121};
  for (int type = 1; type <= 4; ++type) {
    for (int lines : {150, 300}) {
      SCOPED_TRACE("type " + std::to_string(type) + ", " + std::to_string(lines) + " lines");
      const testing::PureLineData data =
          testing::SimulatePureLineData(type, 3, 30, 3.0, lines, type <= 2 ? four : eight, 0.03, 11 + type + lines);
      const std::string file = "pl" + std::to_string(type) + "_" + std::to_string(lines) + ".plm";
      testing::WriteText(file, testing::PlmInputFile(data));
      ExpectGroupsAreChromosomes(file, 3);
    }
  }
}

TEST_F(GroupingTargets, LinesAndDoubledHaploidsWithScoringErrorsGroupByChromosome) {
  for (int type : {3, 4}) {
    SCOPED_TRACE("type " + std::to_string(type));
    const testing::BiparentalData data = testing::SimulateBiparentalData(type, 4, 30, 3.0, 200, 0.01, 0.02, 5 + type);
    const std::string file = "lines" + std::to_string(type) + ".map";
    testing::WriteText(file, testing::BiparentalInputFile(data));
    ExpectGroupsAreChromosomes(file, 4);
  }
}

}  // namespace
}  // namespace gae
