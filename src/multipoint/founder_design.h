// The chain of pure lines bred from four or eight inbred founders: a line is homozygous, so its
// state at a locus is the one founder whose chromosome it carries there. Four-way lines come
// from the funnel (1 x 2) x (3 x 4), eight-way lines from two such funnels crossed; the lines
// are then doubled haploids of the last cross or inbred from it by selfing.
//
// The transition over an interval of frequency r is the funnel's two-locus table divided by
// the one-locus chance 1 / F: a founder is kept with the chance that no meiosis of the funnel
// broke the interval, its sister founder of the first cross is reached through a crossover in
// the last meiosis only, and the rest through the earlier ones. Selfing to fixation expands the
// map as for two-way lines (one crossover in an inbred line stands for 2r / (1 + 2r)).
//
// Selfing leaves the founder segments of four-way inbred lines clustered: a line that leaves
// one chromosome of the four-way plant for a short stretch of the other comes back to the
// founder it left. Their chain keeps both chromosomes' founders, so such a stretch costs two
// moves between chromosomes, not two changes of founder that the chain would rather call wrong.
#pragma once

#include <cstdint>

#include "multipoint/hmm_design.h"

namespace gae {

// Types 1 four-way doubled haploids, 2 four-way inbred lines, 3 and 4 the same of eight
// founders; any other type gives a design of no states.
HmmDesign MakeFounderDesign(int32_t pure_line_type);

int FounderCount(int32_t pure_line_type);

// The founder (0-based) a line carries in hidden state `s`.
int FounderOfState(const HmmDesign& design, int s);

// Row s at s * kMaxChainStates, as TransitionMatrix.
void FounderTransitions(const HmmDesign& design, double r, double* matrix);

}  // namespace gae
