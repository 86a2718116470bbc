#include "report/downstream_files.h"

#include "frame/fixed_format.h"
#include "report/chromosome_counter.h"
#include "report/remark_blocks.h"

namespace gae {

namespace {

constexpr std::size_t kCellsPerLine = 10000;

// A numeric header line: the value in I10, two blanks, the remark.
std::string NumericLine(long long value, std::string_view remark) {
  return fmt::I(value, 10) + "  " + std::string(remark) + "\n";
}

std::string Name35(std::string_view name) { return fmt::A(fmt::PadRight(name, 35), 35); }

// How a family of input files writes a marker row: the bi-parental files put the name first
// and one letter in each A2 cell; the clonal files put the category first and write each stored
// letter as its two-letter type.
struct RowStyle {
  std::span<const std::string> categories;  // by linked marker; empty for bi-parental files
  std::string_view separator;               // between the category and the name
  int cell_width = 2;
  bool clonal_types = false;

  std::string Prefix(std::size_t marker) const {
    if (categories.empty()) return "";
    return fmt::A(categories[marker], 8) + std::string(separator);
  }
  std::string Cell(char letter) const {
    return fmt::A(clonal_types ? ClonalTypeText(letter) : std::string(1, letter), cell_width);
  }
};

// The cells of one marker's genotypes, `per_line` to a line.
std::string GenotypeCells(std::string_view genotypes, std::size_t marker, int32_t n,
                          std::size_t per_line, const RowStyle& style) {
  std::string text;
  for (int32_t i = 0; i < n; ++i) {
    if (i > 0 && static_cast<std::size_t>(i) % per_line == 0) text += "\n";
    text += style.Cell(genotypes[marker * n + i]);
  }
  return text + "\n";
}

std::string HeaderLines(const LinkedMapRecord& map, bool clonal) {
  return NumericLine(map.population_type, clonal ? "!Mapping Population Type (see remarks above)"
                                                 : "!Mapping Population (see remarks above)") +
         NumericLine(map.mapping_function, "!Mapping Function (1 for Kosambi; 2 for Haldane; 3 for Morgan)");
}

enum class QtlFile { kSdl, kBip, kMet, kCdq };

std::string QtlText(const LinkedMapRecord& map, std::string_view genotypes, QtlFile kind,
                    std::span<const std::string> categories = {}) {
  const bool clonal = kind == QtlFile::kCdq;
  std::string out = BlockText(clonal ? ClonalGeneralBlock() : BiparentalGeneralBlock());
  if (kind == QtlFile::kBip) out += NumericLine(1, "!Indicator: 1 for mapping; 2 for simulation");
  out += HeaderLines(map, clonal);
  out += NumericLine(2, "!Marker Space Type (1 for intervals; 2 for positions)");
  out += NumericLine(1, "!Marker Space Unit(1 for centiMorgans; 2 for Morgan)");
  out += NumericLine(static_cast<long long>(map.chromosome_names.size()), "!Number of Chromosomes (or Linkage Group)");
  out += NumericLine(map.num_individuals, "!Population size of the mapping population");
  if (kind == QtlFile::kBip || clonal) out += NumericLine(0, "!Number of traits");
  if (kind == QtlFile::kMet) out += NumericLine(0, "!Number of environments");

  out += "\n";
  out += BlockText(ChromosomeBlock());
  for (std::size_t c = 0; c < map.chromosome_names.size(); ++c) {
    const int32_t size = c < map.chromosome_sizes.size() ? map.chromosome_sizes[c] : 0;
    out += fmt::A(fmt::PadRight(map.chromosome_names[c], 19), 19) + " " + fmt::I(size, 12) + "\n";
  }
  out += "!Linkage map (Marker name followed by position or the interval length)\n";
  const std::vector<int32_t> chromosome =
      LaggingChromosomeNumbers(map.chromosome_sizes, static_cast<int64_t>(map.marker_names.size()));
  for (std::size_t m = 0; m < map.marker_names.size(); ++m)
    out += Name35(map.marker_names[m]) + " " +
           (clonal ? fmt::I(chromosome[m], 3) + fmt::F(map.positions[m], 10, 3)
                   : fmt::I(chromosome[m], 4) + fmt::F(map.positions[m], 12, 4)) + "\n";

  out += "\n";
  out += BlockText(clonal ? ClonalMarkerTypeBlock() : BiparentalMarkerTypeBlock());
  const RowStyle style{categories, "     ", clonal ? 3 : 2, clonal};
  // A QTL tool reads a row as one list-directed read, so the row stays on one line.
  for (std::size_t m = 0; m < map.marker_names.size(); ++m)
    out += style.Prefix(m) + Name35(map.marker_names[m]) + (clonal ? "" : " ") +
           GenotypeCells(genotypes, m, map.num_individuals, static_cast<std::size_t>(-1), style);
  out += "\n";
  if (kind != QtlFile::kSdl) {
    out += BlockText(PhenotypeBlock());
    out += "\n";
  }
  return out;
}


std::string EcText(const LinkedMapRecord& map, std::string_view corrected_genotypes,
                   std::span<const uint8_t> monomorphic, const RowStyle& style) {
  const bool clonal = style.clonal_types;
  auto kept = [&](std::size_t m) { return m >= monomorphic.size() || monomorphic[m] == 0; };
  long long num_kept = 0;
  for (std::size_t m = 0; m < map.marker_names.size(); ++m) num_kept += kept(m);

  std::string out = BlockText(clonal ? ClonalGeneralBlock() : BiparentalGeneralBlock());
  out += HeaderLines(map, false);
  out += NumericLine(map.space_type, "!Marker Space Type (1 for intervals; 2 for positions)");
  out += NumericLine(num_kept, "!Number of Markers");
  out += NumericLine(map.num_individuals, "!Size of the mapping population");
  out += "\n";
  out += BlockText(clonal ? ClonalMarkerTypeBlock() : BiparentalMarkerTypeBlock());
  for (std::size_t m = 0; m < map.marker_names.size(); ++m)
    if (kept(m))
      out += style.Prefix(m) + Name35(map.marker_names[m]) + " " +
             GenotypeCells(corrected_genotypes, m, map.num_individuals, kCellsPerLine, style);

  // Each kept marker is anchored to the chromosome it was mapped on.
  out += "\n";
  out += BlockText(AnchorBlock());
  std::size_t m = 0;
  for (std::size_t c = 0; c < map.chromosome_sizes.size(); ++c)
    for (int32_t k = 0; k < map.chromosome_sizes[c] && m < map.marker_names.size(); ++k, ++m)
      if (kept(m)) out += Name35(map.marker_names[m]) + " " + fmt::I(static_cast<long long>(c + 1), 8) + "\n";
  out += "\n";
  return out;
}

}  // namespace

std::string EcMapText(const LinkedMapRecord& map, std::string_view corrected_genotypes,
                      std::span<const uint8_t> monomorphic) {
  return EcText(map, corrected_genotypes, monomorphic, RowStyle{});
}

std::string EcCdmText(const LinkedMapRecord& map, std::span<const std::string> categories,
                      std::string_view corrected_genotypes, std::span<const uint8_t> monomorphic) {
  return EcText(map, corrected_genotypes, monomorphic, RowStyle{categories, "    ", 4, true});
}

std::string CdqText(const LinkedMapRecord& map, std::span<const std::string> categories,
                    std::string_view genotypes) {
  return QtlText(map, genotypes, QtlFile::kCdq, categories);
}

std::string ClonalTypeText(char letter) {
  static constexpr const char* kTypes[] = {"AC", "AD", "BC", "BD", "XC", "XD",
                                           "AX", "BX", "AA", "AB", "BB"};
  if (letter >= 'A' && letter <= 'K') return kTypes[letter - 'A'];
  return "XX";
}

std::string SdlText(const LinkedMapRecord& map, std::string_view input_genotypes) {
  return QtlText(map, input_genotypes, QtlFile::kSdl);
}

std::string BipText(const LinkedMapRecord& map, std::string_view input_genotypes) {
  return QtlText(map, input_genotypes, QtlFile::kBip);
}

std::string MetText(const LinkedMapRecord& map, std::string_view input_genotypes) {
  return QtlText(map, input_genotypes, QtlFile::kMet);
}

}  // namespace gae
