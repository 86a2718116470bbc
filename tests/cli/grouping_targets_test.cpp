// Whole default runs of `gaengine map` on bred data: the linkage groups are the chromosomes,
// for pure lines of every type and for lines and doubled haploids with scoring errors, where
// chance pairs between chromosomes once merged them.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>

#include "support/bred_data_sets.h"
#include "support/command_run.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

class GroupingTargets : public testing::InTempDir {};

// Each group of <stem>.map.tsv holds one chromosome (C01 of C01M001), and each chromosome one group.
void ExpectGroupsAreChromosomes(const std::string& file, const std::string& text, int chromosomes) {
  testing::WriteText(file, text);
  const testing::CommandRun r = testing::Gaengine("--seed 3 map --tsv " + file);
  ASSERT_EQ(r.exit_code, 0) << r.out;
  std::map<std::string, std::set<std::string>> held;
  std::istringstream tsv(testing::ReadText(file.substr(0, file.size() - 4) + ".map.tsv"));
  std::string group, marker, rest;
  std::getline(tsv, rest);  // header
  while (std::getline(tsv, group, '\t') && std::getline(tsv, marker, '\t') && std::getline(tsv, rest))
    held[group].insert(marker.substr(0, 3));
  std::set<std::string> seen;
  for (const auto& [g, chromosomes_held] : held) {
    EXPECT_EQ(chromosomes_held.size(), 1u) << file << " group " << g << "\n" << r.out;
    seen.insert(chromosomes_held.begin(), chromosomes_held.end());
  }
  EXPECT_EQ(static_cast<int>(held.size()), chromosomes) << file << "\n" << r.out;
  EXPECT_EQ(static_cast<int>(seen.size()), chromosomes) << file;
}

TEST_F(GroupingTargets, BredPopulationsGroupByChromosome) {
  // Founder patterns from fully informative to bi-allelic, as a SNP panel gives them.
  const std::vector<int32_t> four = {1234, 1212, 1233, 1134, 1221, 1232, 1222, 1231};
  const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111118, 12211221,
                                      12222222, 12312312, 11335577, 12345671, 12121121};
  for (int type = 1; type <= 4; ++type)
    for (int lines : {150, 300})
      ExpectGroupsAreChromosomes("pl" + std::to_string(type * 1000 + lines) + ".plm",
                                 testing::PlmInputFile(testing::SimulatePureLineData(
                                     type, 3, 30, 3.0, lines, type <= 2 ? four : eight, 0.03, 11 + type + lines)),
                                 3);
  for (int type : {3, 4})  // doubled haploids and lines, 1% of the scores wrong
    ExpectGroupsAreChromosomes("lines" + std::to_string(type) + ".map",
                               testing::BiparentalInputFile(
                                   testing::SimulateBiparentalData(type, 4, 30, 3.0, 200, 0.01, 0.02, 5 + type)),
                               4);
}

}  // namespace
}  // namespace gae
