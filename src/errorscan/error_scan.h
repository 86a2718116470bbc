// The genotyping-error scan of a finished map: every genotype that disagrees with both its
// neighbours is put to a random test against its chance given the flanking markers, and is set
// to missing (X) when it fails.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "errorscan/population_states.h"
#include "errorscan/three_locus_probabilities.h"
#include "vocabulary/uniform_stream.h"
#include "input/chromosome_record.h"

namespace gae {

// The test of one middle genotype between its left and right flanks (letters of the filled
// working matrix). Nothing happens when the middle equals either flank. Otherwise p is the
// table's entry for the triple (ThreeLocusTable; 1.0 when the design, type or a letter has no
// table entry) and one uniform number u is drawn: if u > p the middle becomes X and the result
// is true. A genotype of chance p is thus flagged with chance 1 - p; u == p keeps it.
bool CheckTriple(const PopulationModel& model, float left_position, float middle_position,
                 float right_position, char left, char& middle, char right, UniformStream& random);

// The scan of the linked markers of a map (layout of ImputeGenotypes: [marker *
// num_individuals + individual], map order, chromosome after chromosome). `genotypes` is the
// caller's copy, changed in place: the cells that fail become X. Returns how many cells of it
// went from another letter to X.
//
// A working copy is first completed (clonal categories 4 and 5 rewritten, then
// ImputeGenotypes). Then for each individual and chromosome, markers 2 to n-1 in map order are
// tested against the nearest marker to their left that is not X in the working copy (flagged
// markers are passed over; none: not tested) and the marker to their right. Chromosomes of one
// or two markers, and the end markers of every chromosome, are never tested.
int64_t ErrorScan(const PopulationModel& model, int32_t num_individuals,
                  std::span<const ChromosomeRecord> chromosomes,
                  std::span<const int32_t> marker_classes, std::span<char> genotypes,
                  UniformStream& random);

// One flag for each marker of the corrected matrix: 1 when it has lost its polymorphism, that
// is when the count of X plus the count of any single one of `letters` covers every individual.
// Letters outside `letters` (D and R of a bi-parental matrix) count for no class, so they keep
// a marker polymorphic.
std::vector<uint8_t> MonomorphicMarkers(std::string_view genotypes, int32_t num_individuals,
                                        std::string_view letters = "AHB");

}  // namespace gae
