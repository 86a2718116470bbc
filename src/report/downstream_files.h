// Input files written from a finished bi-parental map for the next tools: EC.map, the
// corrected data for a second mapping run, and .sdl, .bip and .met for the QTL tools. Each is
// built as text; the caller writes it to stem + suffix. Every file follows the input grammar
// (remarks in column 1, one value per numeric line, list-directed rows), so the tool's own
// reader takes it back.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "input/chromosome_record.h"
#include "report/map_layout.h"

namespace gae {

// What the writers need of the map and its data.
struct LinkedMapRecord {
  int32_t population_type = 0;   // 1 to 20
  int32_t mapping_function = 1;  // 1 Kosambi, 2 Haldane, 3 Morgan
  int32_t space_type = 2;        // the marker space type of the input file, repeated in EC.map
  int32_t num_individuals = 0;
  // One entry for each chromosome of the map, empty ones included.
  std::vector<std::string> chromosome_names;  // 19 characters, blank padded
  std::vector<int32_t> chromosome_sizes;      // linked markers on the chromosome
  // The linked markers, chromosome after chromosome in map order.
  std::vector<std::string> marker_names;  // 35 characters, blank padded
  std::vector<float> positions;           // cM
};

// The record of a finished map's linked markers, in map order.
LinkedMapRecord LinkedRecord(const GenotypeLayout& map);
// The record's markers and positions chromosome by chromosome, as the error scan reads them.
std::vector<ChromosomeRecord> LinkedChromosomes(const LinkedMapRecord& record);

// Genotype matrices below are [marker * num_individuals + individual] over the linked markers
// of the record, one genotype letter (A, H, B, D, R, X) each.

// EC.map: header with the number of markers kept; one row for each linked marker whose flag in
// `monomorphic` is 0 (name, then the corrected letters, 10000 to a line); then the anchor rows,
// which give each kept marker its chromosome number as its anchor group.
std::string EcMapText(const LinkedMapRecord& map, std::string_view corrected_genotypes,
                      std::span<const uint8_t> monomorphic);

// EC.plm: EC.map of a pure-line population, with its remark blocks and each marker row led by
// its category field (`categories`, by linked marker: "ABCB") and four blanks.
std::string EcPlmText(const LinkedMapRecord& map, std::span<const std::string> categories,
                      std::string_view corrected_genotypes, std::span<const uint8_t> monomorphic);

// .plq: the QTL file of a pure-line population: the pure-line remark blocks, the header of the
// .bip frame without its indicator (0 traits), the map as in .sdl, and marker rows led by the
// category field; an empty phenotype section for the user to complete.
std::string PlqText(const LinkedMapRecord& map, std::span<const std::string> categories,
                    std::string_view input_genotypes);

// EC.cdm, the same for a clonal F1 or double cross: each row starts with the marker's category
// text (`categories`, by linked marker) and writes each letter as its two-letter type.
std::string EcCdmText(const LinkedMapRecord& map, std::span<const std::string> categories,
                      std::string_view corrected_genotypes, std::span<const uint8_t> monomorphic);

// .cdq: the map, the categories and the genotypes of every linked marker of a clonal F1 or
// double cross for the QTL tool, with 0 traits and an empty phenotype section.
std::string CdqText(const LinkedMapRecord& map, std::span<const std::string> categories,
                    std::string_view genotypes);

// The two-letter type of a stored clonal letter (A is AC, ... K is BB; anything else XX).
std::string ClonalTypeText(char letter);

// .sdl: the map (positions in cM) and the input genotypes of every linked marker.
std::string SdlText(const LinkedMapRecord& map, std::string_view input_genotypes);
// .bip: .sdl with the mapping indicator first, 0 traits, and an empty phenotype section for the
// user to complete.
std::string BipText(const LinkedMapRecord& map, std::string_view input_genotypes);
// .met: .bip without the indicator and with 0 environments in place of the traits.
std::string MetText(const LinkedMapRecord& map, std::string_view input_genotypes);

}  // namespace gae
