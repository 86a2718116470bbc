// Filling every gap of a genotype matrix by random draws from the flanking markers, so that
// the error scan always finds complete flanks.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "errorscan/population_states.h"
#include "errorscan/table_cache.h"
#include "vocabulary/uniform_stream.h"
#include "input/chromosome_record.h"

namespace gae {

// Positions (cM) of the markers of all chromosomes, one after another in map order.
std::vector<float> MapPositions(std::span<const ChromosomeRecord> chromosomes);

// Replaces every genotype that is not informative (IsInformative) by a state drawn at random.
//
// `genotypes` holds the linked markers in map order, chromosome after chromosome as
// `chromosomes` lists them, one letter for each individual: [marker * num_individuals +
// individual]. `marker_classes` has one category for each of these markers.
//
// For each individual and each chromosome, with its markers 1 to n in map order:
//  - marker 1 is drawn from the two-locus table conditioned on the first informative marker to
//    its right, or from the one-marker table if there is none;
//  - each later marker m is drawn from the three-locus table between marker m-1 (already
//    filled) and the next informative marker to its right, or from the two-locus table
//    conditioned on marker m-1 alone if there is none.
// A partial observation (D, R; clonal E to K; a founder letter shared by several founders)
// keeps only the states it allows in every one of these draws. Should the table give all of
// them no chance, the allowed states are drawn with equal chances, so that the draw never
// contradicts what was seen. One uniform number is drawn for each replaced genotype.
//
// A design or type without tables leaves the matrix as it is.
void ImputeGenotypes(const PopulationModel& model, int32_t num_individuals,
                     std::span<const ChromosomeRecord> chromosomes,
                     std::span<const int32_t> marker_classes, std::span<char> genotypes,
                     UniformStream& random);

// The same, with the tables kept in `cache` (built over MapPositions(chromosomes)).
void ImputeGenotypes(const PopulationModel& model, int32_t num_individuals,
                     std::span<const ChromosomeRecord> chromosomes,
                     std::span<const int32_t> marker_classes, std::span<char> genotypes,
                     UniformStream& random, TableCache& cache);

}  // namespace gae
