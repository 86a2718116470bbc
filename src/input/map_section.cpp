#include "input/map_section.h"

#include <cmath>
#include <string_view>

#include "vocabulary/fixed_format.h"
#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/repeated_names.h"
#include "input/tool_codes.h"

namespace gae {

namespace {

constexpr std::size_t kChromosomeWidth = 19;
constexpr std::size_t kMarkerWidth = 35;

bool Fail(int code, int chrom, int count, int marker, int chrom2 = 0, int marker2 = 0,
          std::string_view name = {}) {
  MessageCode() = code;
  PrintChromosomeMessage(chrom, count, marker, chrom2, marker2, name);
  return false;
}

// Block 1: names and sizes. Rows follow one another with no remarks between them.
bool ReadChromosomeList(InputFile& in, int32_t num_chs, MapSection& out,
                        std::vector<int32_t>& sizes) {
  in.SkipRemarks();
  for (int32_t i = 1; i <= num_chs; ++i) {
    std::string name;
    int32_t size = 0;
    {
      ListRead read(in);
      if (!read.Text(name, kChromosomeWidth) || !read.Int(size)) return Fail(2101, i, 0, 0);
    }
    if (size < 1) return Fail(2102, i, size, 0);
    out.chromosome_names.push_back(std::move(name));
    sizes.push_back(size);
  }
  return true;
}

// Block 2 for chromosome i. The row's chromosome may be given by number or by name.
bool ReadChromosomeRows(InputFile& in, int32_t i, int32_t size, int32_t space_type,
                        int32_t space_unit, const std::string& chrom_name,
                        ChromosomeRecord& record) {
  const bool intervals = space_type == 1;
  const int read_code = intervals ? 2105 : 2103;
  const int id_code = intervals ? 2106 : 2104;
  const std::string number_form = fmt::PadRight(fmt::LeftAdjust(fmt::I(i, 19)), kChromosomeWidth);
  for (int32_t j = 1; j <= size; ++j) {
    std::string name, id;
    float value = 0.0f;
    {
      ListRead read(in);
      if (!read.Text(name, kMarkerWidth) || !read.Text(id, kChromosomeWidth) || !read.Real(value))
        return Fail(read_code, i, 0, j);
    }
    if (id != number_form && id != chrom_name) return Fail(id_code, i, 0, j);
    // An interval is the distance from the previous marker; the first one is the first
    // marker's own position.
    if (intervals && !record.positions.empty()) value = record.positions.back() + value;
    record.marker_names.push_back(std::move(name));
    record.positions.push_back(value);
  }
  if (space_unit == 2) {
    for (float& p : record.positions) p *= 100.0f;
  }
  return true;
}

// A name may stand once in the whole map: 2108 when it was on an earlier chromosome, 2109
// when it was earlier on the same one.
bool CheckDuplicateNames(const MapSection& map) {
  std::vector<std::string_view> names;
  struct Place {
    int32_t chrom, marker;
  };
  std::vector<Place> places;
  for (std::size_t c = 0; c < map.chromosomes.size(); ++c) {
    const auto& record = map.chromosomes[c];
    for (std::size_t j = 0; j < record.marker_names.size(); ++j) {
      names.push_back(record.marker_names[j]);
      places.push_back({static_cast<int32_t>(c + 1), static_cast<int32_t>(j + 1)});
    }
  }
  const auto repeat = FirstRepeatedName(names);
  if (!repeat) return true;
  const Place later = places[repeat->later];
  const Place earlier = places[repeat->earlier];
  const int code = earlier.chrom < later.chrom ? 2108 : 2109;
  return Fail(code, later.chrom, 0, later.marker, earlier.chrom, earlier.marker,
              names[repeat->later]);
}

// Positions must not fall along a chromosome; equal positions are fine.
bool CheckOrder(const MapSection& map) {
  for (std::size_t c = 0; c < map.chromosomes.size(); ++c) {
    const std::vector<float>& p = map.chromosomes[c].positions;
    for (std::size_t j = 0; j + 1 < p.size(); ++j) {
      if (p[j + 1] < p[j]) return Fail(2107, static_cast<int>(c + 1), 0, static_cast<int>(j + 1));
    }
  }
  return true;
}

// A consensus is built from the maps' distances: a position that is not a finite number (NaN,
// Inf, or a sum of intervals grown past the largest real) would stand as a gap of 1000 cM.
bool CheckFinite(const MapSection& map, int32_t space_type) {
  for (std::size_t c = 0; c < map.chromosomes.size(); ++c) {
    const std::vector<float>& p = map.chromosomes[c].positions;
    for (std::size_t j = 0; j < p.size(); ++j)
      if (!std::isfinite(p[j])) return Fail(space_type == 1 ? 2105 : 2103, static_cast<int>(c + 1), 0, static_cast<int>(j + 1));
  }
  return true;
}

}  // namespace

bool ReadMapSection(InputFile& in, int tool_code, int32_t num_chs, int32_t space_type,
                    int32_t space_unit, MapSection& out) {
  MessageCode() = 0;
  out = MapSection{};
  std::vector<int32_t> sizes;
  if (!ReadChromosomeList(in, num_chs, out, sizes)) return false;

  // Every row is read before any cross-row check, so a row that cannot be read is reported
  // before a name or order problem further up.
  in.SkipRemarks();
  for (std::size_t c = 0; c < sizes.size(); ++c) {
    out.chromosomes.emplace_back();
    if (!ReadChromosomeRows(in, static_cast<int32_t>(c + 1), sizes[c], space_type, space_unit,
                            out.chromosome_names[c], out.chromosomes.back()))
      return false;
  }
  if (tool_code == kConsensusToolCode && !CheckFinite(out, space_type)) return false;
  if (tool_code != kConsensusToolCode && !CheckDuplicateNames(out)) return false;
  if (!CheckOrder(out)) return false;

  int64_t total = 0;
  for (const ChromosomeRecord& record : out.chromosomes) total += record.NumMarkers();
  out.total_markers = static_cast<int32_t>(total);

  if (tool_code == kConsensusToolCode) {
    out.distinct = BuildDistinctMarkers(out.chromosomes);
    if (!SomeMarkerOnEveryMap(out.distinct, num_chs)) {
      // The catalogue pairs this check with a text about permutation tests; the pairing is
      // part of the program's output and stays.
      MessageCode() = 2032;
      PrintHeaderMessage(0);
      return false;
    }
  }
  return true;
}

}  // namespace gae
