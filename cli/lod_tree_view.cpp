#include "lod_tree_view.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "map_check.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {


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

}  // namespace gaecli
