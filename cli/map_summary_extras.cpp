#include "map_summary_extras.h"

#include <sys/stat.h>

#include <cstdio>

namespace gaecli {

namespace {

// The matrix files (.lod, .rec, .dis) hold the first markers of the map order, at most this many.
constexpr int kMatrixMarkers = 100;

bool Exists(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0;
}

std::string Trimmed(const std::string& text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

}  // namespace

int OneMarkerGroups(const gae::MapModel& m) {
  int count = 0;
  for (int g = 0; g < m.num_groups; ++g) count += m.group_size[static_cast<std::size_t>(g)] == 1;
  return count;
}

void PrintOneMarkerGroups(const gae::MapModel& m, const std::vector<std::string>& group_names,
                          const std::function<std::string(int)>& marker_at) {
  const int count = OneMarkerGroups(m);
  if (count == 0) return;
  std::printf("  One-marker groups %d (linked to no other marker at this threshold):", count);
  int start = 0, shown = 0;
  for (int g = 0; g < m.num_groups; ++g) {
    const int size = m.group_size[static_cast<std::size_t>(g)];
    if (size == 1 && shown++ < 10)
      std::printf(" %s (%s)", marker_at(start).c_str(), Trimmed(group_names[static_cast<std::size_t>(g)]).c_str());
    start += size;
  }
  std::printf("%s\n", shown > 10 ? " ..." : "");
}

void PrintFilesWritten(const std::string& stem, const std::vector<const char*>& suffixes, int num_mapped) {
  std::vector<std::string> listed(suffixes.begin(), suffixes.end());
  listed.insert(listed.end(), {".map.tsv", ".pairs.tsv"});
  std::vector<std::string> existing;
  for (const std::string& suffix : listed)
    if (Exists(stem + suffix)) existing.push_back(stem + suffix);
  PrintFileLists(existing, num_mapped);
}

void PrintFileLists(const std::vector<std::string>& files, int num_mapped) {
  std::string results, templates;
  for (const std::string& path : files)
    if (!path.ends_with(".bip") && !path.ends_with(".met")) {
      results += " " + path;
    } else if (!Exists(path.substr(0, path.size() - 4) + ".traits.tsv")) {  // phenotypes already filled in
      templates += " " + path;
    }
  std::printf("  Files written    %s\n", results.c_str());
  if (!templates.empty())
    std::printf("  Templates        %s (add the phenotypes before a QTL run)\n", templates.c_str());
  if (num_mapped > kMatrixMarkers)
    std::printf("  Matrix files      .lod .rec .dis hold the first %d of the %d mapped markers (in map order)\n",
                kMatrixMarkers, num_mapped);
}

}  // namespace gaecli
