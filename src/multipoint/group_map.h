// The multipoint map of one linkage group: the likelihood of all its markers at once along an
// order, with a genotyping-error rate, gives the order, the interval frequencies, the
// distances, the markers that link to nothing and the calls that look like errors. Pure: the
// data come in as arrays, nothing global is touched, so groups may be mapped on threads.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace gae {

struct GroupCalls;

struct MultipointOptions {
  std::optional<double> error_rate;  // fixed genotyping-error rate; estimated when absent
  int32_t mapping_function = 1;      // 1 Kosambi, 2 Haldane, 3 Morgan
  int max_em_iterations = 200;
  double tolerance = 1e-6;           // EM stops when a round gains less than this share of |ln L|
  bool polish_order = true;
  int reach = 4;                     // places a marker may move either way in one polishing move
  int window = 3;                    // neighbouring markers permuted together while polishing
  int polish_em_rounds = 1;          // EM rounds fitting the intervals of one move
  double relocate_lod = 3.0;         // markers worth less where they stand are tried in every gap
  double min_link_lod = 2.0;         // a marker whose place in the chain is worth less leaves it
  double suspect_posterior = 0.3;    // a call whose class has less posterior chance is suspect
  double start_error_rate = 0.01;
};

struct SuspectCall {
  int32_t marker;      // index into the group's markers, 0-based
  int32_t individual;  // 0-based
  double posterior;    // posterior probability of the observed call's class
};

struct MultipointGroupMap {
  std::vector<int32_t> order;         // the markers kept, in map order
  std::vector<double> interval_rf;    // between neighbours of `order`
  std::vector<double> positions_cm;   // from the first marker
  std::vector<int32_t> dropped;       // markers that link to nothing in the group
  double error_rate = 0;
  double log10_likelihood = 0;
  std::vector<SuspectCall> suspects;
  int em_iterations = 0;
  int polish_moves = 0;
  // False when the arguments do not fit together (an unknown population type, a types array of
  // the wrong size, an order naming a marker twice or one the group does not have); the map is
  // then empty.
  bool ok = true;
};

// `types`: the reader's one-letter codes, marker-major (types[m * num_individuals + i]) for the
// group's markers; `categories` per marker (1 codominant, 12 dominant, 10 recessive);
// `start_order`: 0-based indices into the group's markers (markers it leaves out are not mapped).
MultipointGroupMap MapGroupMultipoint(int32_t population_type, int32_t num_individuals,
                                      const std::vector<char>& types, const std::vector<int32_t>& categories,
                                      const std::vector<int32_t>& start_order, const MultipointOptions& options);

// The same from calls already read, in any design the chain knows (bi-parental or founders);
// `start_order` must name each of the calls' markers at most once.
MultipointGroupMap MapGroupCalls(const GroupCalls& calls, const std::vector<int32_t>& start_order,
                                 const MultipointOptions& options);

// Whether an order names markers 0..num_markers-1 at most once each.
bool ValidStartOrder(std::size_t num_markers, const std::vector<int32_t>& start_order);

}  // namespace gae
