#include "tsv_export.h"

#include <cmath>
#include <cstdio>

#include "report/text_file.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

namespace {

std::string Fixed(float value, int decimals) {
  char text[48];
  std::snprintf(text, sizeof text, "%.*f", decimals, static_cast<double>(value));
  return text;
}

}  // namespace

std::string MapTsvText(const std::vector<MapTsvRow>& rows) {
  std::string text = "group\tmarker\tposition_cM\tinterval_cM\n";
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const bool first = k == 0 || rows[k - 1].group != rows[k].group;
    const float interval = first ? 0.0f : rows[k].position - rows[k - 1].position;
    text += rows[k].group + "\t" + rows[k].marker + "\t" + Fixed(rows[k].position, 4) + "\t" + Fixed(interval, 4) + "\n";
  }
  return text;
}

bool WritePairsTsv(const std::string& lrd, int record_length, const std::vector<std::string>& names, float min_lod,
                   const std::string& out, long long& written) {
  gae::PairStoreFile store;
  if (!store.Open(lrd, record_length, 1)) return false;
  gae::FileReplacement file(out);
  std::string chunk = "marker1\tmarker2\trec_freq\tlod\n";
  const gae::PairTable& table = store.Table();
  const auto n = static_cast<int64_t>(names.size());
  written = 0;
  char numbers[64];
  for (int64_t i = 2; i <= n; ++i)
    for (int64_t j = 1; j < i; ++j) {
      const float lod = -table.First(i, j), rec = table.Second(i, j);
      if (std::isnan(lod) || lod < min_lod) continue;
      std::snprintf(numbers, sizeof numbers, "\t%.4f\t%.3f\n", static_cast<double>(rec), static_cast<double>(lod));
      chunk += names[static_cast<std::size_t>(j - 1)] + "\t" + names[static_cast<std::size_t>(i - 1)] + numbers;
      ++written;
      // Pieces of a megabyte: a table of millions of pairs is never held whole.
      if (chunk.size() < (1u << 20)) continue;
      if (!file.Append(chunk)) return false;
      chunk.clear();
    }
  return file.Append(chunk) && file.Commit();
}

bool WriteMapTables(const std::string& file, int record_length, const gae::MapModel& m,
                    const std::vector<std::string>& group_names, const std::function<std::string(int)>& marker_name,
                    float min_lod) {
  std::vector<MapTsvRow> rows;
  std::size_t k = 0;
  for (int g = 0; g < m.num_groups; ++g) {
    std::string group = group_names[static_cast<std::size_t>(g)];
    group.erase(group.find_last_not_of(' ') + 1);
    for (int i = 0; i < m.group_size[static_cast<std::size_t>(g)]; ++i, ++k)
      rows.push_back({group, marker_name(m.order[k]), m.position[k]});
  }
  const std::string stem = gae::ResultStem(file);
  const std::string map_out = stem + ".map.tsv", pairs_out = stem + ".pairs.tsv";
  if (!gae::WriteTextFile(map_out, MapTsvText(rows))) {
    std::fprintf(stderr, "%s: cannot be written\n", map_out.c_str());
    return false;
  }
  std::vector<std::string> names;
  for (int i = 1; i <= m.num_markers; ++i) names.push_back(marker_name(i));
  long long written = 0;
  if (!WritePairsTsv(gae::PairStoreName(file), record_length, names, min_lod, pairs_out, written)) {
    std::fprintf(stderr, "%s: cannot be written from %s\n", pairs_out.c_str(), gae::PairStoreName(file).c_str());
    return false;
  }
  return true;
}

}  // namespace gaecli
