#include "lod_tree_view.h"

#include "engine/linkage_rule.h"

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
  // Every genotype tool's record starts with minus the LOD and the frequency; its length is
  // what the file's size gives for the pairs of these markers (2 words, 7 for clonal pairs).
  const int64_t pairs = static_cast<int64_t>(num_markers) * (num_markers - 1) / 2;
  const int32_t words = pairs > 0 ? static_cast<int32_t>(info.st_size / (4 * pairs)) : 2;
  const gae::PairTable table{static_cast<const float*>(mapping), pairs, words > 0 ? words : 2, 1};
  rows = gae::LinkageTree(table, num_markers, max_rf, low, high, step);
  ::munmap(mapping, static_cast<size_t>(info.st_size));
  return true;
}

}  // namespace gaecli
