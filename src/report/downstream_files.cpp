#include "report/downstream_files.h"

#include "vocabulary/fixed_format.h"
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

// What tells the files of one family of populations from another: their remark blocks, and
// the category field that leads each marker row of the founder-coded families.
struct FileStyle {
  const std::vector<std::string_view>& general;
  const std::vector<std::string_view>& marker_types;
  std::string_view population_remark = "!Mapping Population (see remarks above)";
  std::span<const std::string> categories{};  // by marker; none for bi-parental files
  std::string_view category_gap = "    ";      // after the A8 category field
  std::string_view name_gap = " ";            // between the name and the genotype cells
  // The clonal files write each stored letter as its two-letter type in a wider cell, and the
  // map of their QTL file in I3 and F10.3.
  int cell_width = 2;
  bool clonal_types = false;
  bool narrow_map = false;
};

// The cells of one marker's genotypes, `per_line` to a line.
std::string GenotypeCells(std::string_view genotypes, std::size_t marker, int32_t n, std::size_t per_line,
                          const FileStyle& style) {
  std::string text;
  for (int32_t i = 0; i < n; ++i) {
    if (i > 0 && static_cast<std::size_t>(i) % per_line == 0) text += "\n";
    const char letter = genotypes[marker * n + i];
    text += fmt::A(style.clonal_types ? ClonalTypeText(letter) : std::string(1, letter), style.cell_width);
  }
  return text + "\n";
}

const FileStyle& BiparentalStyle() {
  static const FileStyle style{BiparentalGeneralBlock(), BiparentalMarkerTypeBlock()};
  return style;
}

// The start of a marker row: the category (A8) and its gap when the family has one, the name.
std::string RowLead(const FileStyle& style, std::size_t m, std::string_view name) {
  std::string lead;
  if (m < style.categories.size())
    lead = fmt::A(fmt::PadRight(style.categories[m], 8), 8) + std::string(style.category_gap);
  return lead + Name35(name);
}

std::string HeaderLines(const LinkedMapRecord& map, const FileStyle& style) {
  return NumericLine(map.population_type, style.population_remark) +
         NumericLine(map.mapping_function, "!Mapping Function (1 for Kosambi; 2 for Haldane; 3 for Morgan)");
}

// kFounderCoded: the QTL file of a founder-coded family, the .bip frame without its indicator.
enum class QtlFile { kSdl, kBip, kMet, kFounderCoded };

std::string QtlText(const LinkedMapRecord& map, std::string_view genotypes, QtlFile kind,
                    const FileStyle& style) {
  std::string out = BlockText(style.general);
  if (kind == QtlFile::kBip) out += NumericLine(1, "!Indicator: 1 for mapping; 2 for simulation");
  out += HeaderLines(map, style);
  out += NumericLine(2, "!Marker Space Type (1 for intervals; 2 for positions)");
  out += NumericLine(1, "!Marker Space Unit(1 for centiMorgans; 2 for Morgan)");
  out += NumericLine(static_cast<long long>(map.chromosome_names.size()), "!Number of Chromosomes (or Linkage Group)");
  out += NumericLine(map.num_individuals, "!Population size of the mapping population");
  if (kind == QtlFile::kBip || kind == QtlFile::kFounderCoded) out += NumericLine(0, "!Number of traits");
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
           (style.narrow_map ? fmt::I(chromosome[m], 3) + fmt::F(map.positions[m], 10, 3)
                             : fmt::I(chromosome[m], 4) + fmt::F(map.positions[m], 12, 4)) + "\n";

  out += "\n";
  out += BlockText(style.marker_types);
  // A QTL tool reads a row as one list-directed read, so the row stays on one line.
  for (std::size_t m = 0; m < map.marker_names.size(); ++m)
    out += RowLead(style, m, map.marker_names[m]) + std::string(style.name_gap) +
           GenotypeCells(genotypes, m, map.num_individuals, static_cast<std::size_t>(-1), style);
  out += "\n";
  if (kind != QtlFile::kSdl) {
    out += BlockText(PhenotypeBlock());
    out += "\n";
  }
  return out;
}

std::string CorrectedDataText(const LinkedMapRecord& map, std::string_view corrected_genotypes,
                              std::span<const uint8_t> monomorphic, const FileStyle& style) {
  auto kept = [&](std::size_t m) { return m >= monomorphic.size() || monomorphic[m] == 0; };
  long long num_kept = 0;
  for (std::size_t m = 0; m < map.marker_names.size(); ++m) num_kept += kept(m);

  std::string out = BlockText(style.general);
  out += HeaderLines(map, style);
  out += NumericLine(map.space_type, "!Marker Space Type (1 for intervals; 2 for positions)");
  out += NumericLine(num_kept, "!Number of Markers");
  out += NumericLine(map.num_individuals, "!Size of the mapping population");
  out += "\n";
  out += BlockText(style.marker_types);
  for (std::size_t m = 0; m < map.marker_names.size(); ++m)
    if (kept(m))
      out += RowLead(style, m, map.marker_names[m]) + " " +
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

LinkedMapRecord LinkedRecord(const GenotypeLayout& map) {
  LinkedMapRecord record;
  record.population_type = map.population_type;
  record.mapping_function = map.mapping_function;
  record.space_type = map.space_type;
  record.num_individuals = map.num_individuals;
  record.chromosome_names = map.chromosome_names;
  record.chromosome_sizes = map.chromosome_sizes;
  for (int32_t k = 0; k < map.num_mapped; ++k)
    record.marker_names.push_back(map.marker_names[map.order[k] - 1]);
  record.positions = map.position;
  return record;
}

std::vector<ChromosomeRecord> LinkedChromosomes(const LinkedMapRecord& record) {
  std::vector<ChromosomeRecord> chromosomes(record.chromosome_sizes.size());
  std::size_t k = 0;
  for (std::size_t c = 0; c < chromosomes.size(); ++c) {
    for (int32_t n = 0; n < record.chromosome_sizes[c]; ++n, ++k) {
      chromosomes[c].marker_names.push_back(record.marker_names[k]);
      chromosomes[c].positions.push_back(record.positions[k]);
    }
  }
  return chromosomes;
}

std::string EcMapText(const LinkedMapRecord& map, std::string_view corrected_genotypes,
                      std::span<const uint8_t> monomorphic) {
  return CorrectedDataText(map, corrected_genotypes, monomorphic, BiparentalStyle());
}

std::string EcPlmText(const LinkedMapRecord& map, std::span<const std::string> categories,
                      std::string_view corrected_genotypes, std::span<const uint8_t> monomorphic) {
  const FileStyle style{PureLineGeneralBlock(), PureLineMarkerTypeBlock(),
                        "!Mapping Population (see remarks above)", categories};
  return CorrectedDataText(map, corrected_genotypes, monomorphic, style);
}

std::string PlqText(const LinkedMapRecord& map, std::span<const std::string> categories,
                    std::string_view input_genotypes) {
  // One blank more between the category and the name than in EC.plm, none after the name.
  const FileStyle style{PureLineGeneralBlock(), PureLineMarkerTypeBlock(),
                        "!Mapping Population Type (see remarks above)", categories, "     ", ""};
  return QtlText(map, input_genotypes, QtlFile::kFounderCoded, style);
}

std::string EcCdmText(const LinkedMapRecord& map, std::span<const std::string> categories,
                      std::string_view corrected_genotypes, std::span<const uint8_t> monomorphic) {
  FileStyle style{ClonalGeneralBlock(), ClonalMarkerTypeBlock(), "!Mapping Population (see remarks above)",
                  categories};
  style.cell_width = 4;
  style.clonal_types = true;
  return CorrectedDataText(map, corrected_genotypes, monomorphic, style);
}

std::string CdqText(const LinkedMapRecord& map, std::span<const std::string> categories,
                    std::string_view genotypes) {
  FileStyle style{ClonalGeneralBlock(), ClonalMarkerTypeBlock(), "!Mapping Population Type (see remarks above)",
                  categories, "     ", ""};
  style.cell_width = 3;
  style.clonal_types = true;
  style.narrow_map = true;
  return QtlText(map, genotypes, QtlFile::kFounderCoded, style);
}

std::string ClonalTypeText(char letter) {
  static constexpr const char* kTypes[] = {"AC", "AD", "BC", "BD", "XC", "XD",
                                           "AX", "BX", "AA", "AB", "BB"};
  if (letter >= 'A' && letter <= 'K') return kTypes[letter - 'A'];
  return "XX";
}

std::string SdlText(const LinkedMapRecord& map, std::string_view input_genotypes) {
  return QtlText(map, input_genotypes, QtlFile::kSdl, BiparentalStyle());
}

std::string BipText(const LinkedMapRecord& map, std::string_view input_genotypes) {
  return QtlText(map, input_genotypes, QtlFile::kBip, BiparentalStyle());
}

std::string MetText(const LinkedMapRecord& map, std::string_view input_genotypes) {
  return QtlText(map, input_genotypes, QtlFile::kMet, BiparentalStyle());
}

}  // namespace gae
