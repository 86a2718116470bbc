// Two-point estimation for bi-parental populations: from the 3 x 3 table of genotype classes of
// a marker pair to its recombination frequency, LOD score (base 10, against r = 1/2) and
// standard error, by maximum likelihood for each of the 20 population types.
//
// Population types: 1 P1BC1F1, 2 P2BC1F1, 3 F1DH, 4 RIL, 5 P1BC1RIL, 6 P2BC1RIL, 7 F2, 8 F3,
// 9 P1BC2F1, 10 P2BC2F1, 11 P1BC2RIL, 12 P2BC2RIL, 13 P1BC1F2, 14 P2BC1F2, 15 P1BC2F2,
// 16 P2BC2F2, 17 P1BC1DH, 18 P2BC1DH, 19 P1BC2DH, 20 P2BC2DH.
//
// Marker kinds: 1 co-dominant, 12 dominant (P1 and F1 look alike), 10 recessive (F1 and P2 look
// alike). Only types 7, 8 and 13 to 16 can hold dominant or recessive markers; every other type
// sees co-dominant pairs (code 11) only, and its estimator ignores the pair code.
//
// Cells: nine 32-bit counts, row by row (cell = 3 (row - 1) + column); the row comes from the
// first marker (A 1; H, D, R 2; B 3), the column from the second. The estimators know the
// layouts of codes 11, 112, 110, 1212, 1210 and 1010: for 121, 101 and 1012 the caller hands the
// table with the markers exchanged (or transposed), and they then behave as 112, 110 and 1210.
//
// Everything is computed in 32-bit floats. All routines are pure and re-entrant: the pair store
// runs pairs on several threads at once.
#pragma once

namespace gae {

// Pair code of two marker kinds, their decimal forms side by side (1 and 12 give 112). A kind
// other than 1, 12 or 10, first or second, gives 2020, a code that no estimator knows.
inline constexpr int kUnknownPairCode = 2020;
int PairCode(int first_kind, int second_kind);

// Counts the individuals of each genotype class of a pair into `cells` (zeroed first). An
// individual whose letter at either marker is not one of A, H, B, D, R is left out, so the
// sum of the cells is the number typed at both markers.
void PairCounts(int num_individuals, const char* first, const char* second, float cells[9]);

// An estimate that is not a number says nothing about linkage: a degenerate table (in an F2,
// a marker heterozygous in every individual typed at both markers, beside one whose
// heterozygotes equal its homozygotes) leaves the likelihood flat or undefined, and a NaN
// frequency would still carry a large LOD that chains unrelated groups. Such a pair takes the
// values of an unlinked one, 0.5 and LOD 0. True when the values were replaced.
bool UnlinkedWhenNotANumber(float& rec_freq, float& lod);

// The estimate the pair store keeps: an empty table (sum not above 0) gives 0.5 and 0; a
// negative LOD becomes 0. An estimate that is not a number is left as it is for the store's
// writer, which keeps the pair as unlinked and counts it.
void TwoPointGuarded(int population_type, int pair_code, const float cells[9], float& rec_freq,
                     float& lod);

// Both phases: the table as it stands and with the alleles of one marker exchanged. When the
// exchanged table gives a smaller frequency r', the result is 1 - r' with that table's LOD and
// standard error. A frequency above 1/2 thus means the markers travel in the exchanged phase.
// An unknown population type, or a pair code that type 7, 8 or 13 to 16 does not know, gives
// no estimate: a frequency of NaN, LOD 0 and standard error 0.
void TwoPointEstimate(int population_type, int pair_code, const float cells[9], float& rec_freq,
                      float& lod, float& std_err);

// The table with the alleles of one marker exchanged (`exchanged`) and the pair code it is
// read with; 0 for a type that is not a population type, which has no second phase.
int TwoPointExchangedPhase(int population_type, int pair_code, const float cells[9],
                           float exchanged[9]);

// One phase: the closed form of the type and code where the likelihood equation has one, else
// the guarded Newton iteration; then the score at the estimate. Closed forms are not clamped
// (a RIL table can give more than 1).
void TwoPointOnePhase(int population_type, int pair_code, const float cells[9], float& rec_freq,
                      float& lod, float& std_err);

// Start value of the iteration, from the cells and their sum n. A value not above 0 becomes
// 0.0001 and one of 1 or more 0.9999; NaN passes. A code with no start formula starts at
// 0.0001, and where both candidates of a two-candidate formula are NaN the start is 0.00001.
float TwoPointStart(int population_type, int pair_code, const float cells[9], float n);

// Guarded Newton iteration on ln L for the iterated types (7 F2, 8 F3, 13 to 16), 101 rounds at
// most. Results below 0.0001 or above 0.9999 come back as exactly 0 or 1; NaN runs out the
// rounds and comes back as NaN.
float TwoPointNewton(int population_type, int pair_code, const float cells[9], float n);

// LOD of `rec_freq` against 1/2 (may be negative) and the standard error sqrt(-1/h), 0 when
// -1/h is not positive or NaN.
void TwoPointScore(int population_type, int pair_code, const float cells[9], float rec_freq,
                   float& lod, float& std_err);
// The same, the standard error left out when `std_err` is null (the pair store keeps none).
void TwoPointScore(int population_type, int pair_code, const float cells[9], float rec_freq,
                   float& lod, float* std_err);

// Sum of N(i) log10 P(i) over the cells with P(i) above 0, in cell order: a class that cannot
// occur is dropped whatever its count.
float TwoPointLogLik(const float cells[9], const float probs[9]);

}  // namespace gae
