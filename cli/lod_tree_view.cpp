#include "lod_tree_view.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "map_check.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

namespace {

// "6" or "6.5": thresholds in the words of a summary.
std::string Number(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
  return text;
}

}  // namespace

bool ProjectLodTree(const std::string& project, int num_markers, float low, float high, float step,
                    std::vector<gae::LodTreeRow>& rows, float max_rf) {
  const std::string lrd = gae::PairStoreName(project);
  const int fd = ::open(lrd.c_str(), O_RDONLY);
  if (fd < 0) return false;
  struct stat info {};
  const bool sized = ::fstat(fd, &info) == 0 && info.st_size > 0;
  void* mapping = sized ? ::mmap(nullptr, static_cast<size_t>(info.st_size), PROT_READ, MAP_PRIVATE, fd, 0) : MAP_FAILED;
  ::close(fd);
  if (mapping == MAP_FAILED) return num_markers < 2 && (rows = {}, true);
  // A MAP pairwise file: two words a pair, minus the LOD then the frequency.
  const gae::PairTable table{static_cast<const float*>(mapping), static_cast<int64_t>(info.st_size / 8), 2, 1};
  const std::vector<float> thresholds = gae::LodTreeThresholds(low, high, step);
  if (max_rf < gae::kNoFrequencyCap) rows = gae::LodTree(gae::CappedPairs(table, num_markers, max_rf).Table(), num_markers, thresholds);
  else rows = gae::LodTree(table, num_markers, thresholds);
  ::munmap(mapping, static_cast<size_t>(info.st_size));
  return true;
}

int FewMarkers(int num_markers) { return std::max(3, num_markers / 100); }

AutoLod ChooseLod(const std::vector<gae::LodTreeRow>& rows, int num_markers) {
  AutoLod choice;
  const gae::LodPlateau plateau = gae::LongestPlateau(rows, FewMarkers(num_markers));
  if (plateau.first < 0) return choice;
  choice.found = true;
  choice.threshold = rows[static_cast<size_t>(plateau.first)].threshold;
  choice.run_to = rows[static_cast<size_t>(plateau.last)].threshold;
  choice.groups = plateau.groups;
  char text[64];
  std::snprintf(text, sizeof text, "LOD %.1f", static_cast<double>(choice.threshold));
  choice.reason = std::string(text) + ": the groups stay the same from " + Number(choice.threshold) + " to " +
                  Number(choice.run_to) + " (" + std::to_string(choice.groups) + (choice.groups == 1 ? " group" : " groups") + " of at least " +
                  std::to_string(FewMarkers(num_markers)) + " markers)";
  return choice;
}

}  // namespace gaecli
