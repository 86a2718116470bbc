#include "twopoint/map_pairwise_file.h"

#include <memory>
#include <set>
#include <vector>

#include "twopoint/exact_two_point.h"
#include "twopoint/genotype_planes.h"
#include "twopoint/pairwise_frame.h"
#include "twopoint/pooled_exact_pairs.h"
#include "twopoint/two_point.h"

namespace gae {

namespace {

// In these pair codes the engine knows only the layout with the markers exchanged, so the
// second marker's genotypes give the rows.
bool CountsExchanged(int pair_code) {
  return pair_code == 121 || pair_code == 101 || pair_code == 1012;
}

// Every pair code that two markers of the data can form.
std::vector<int> PairCodesOf(const BiparentalMarkers& markers) {
  const std::set<int32_t> kinds(markers.kinds, markers.kinds + markers.num_markers);
  std::vector<int> codes;
  for (const int32_t a : kinds)
    for (const int32_t b : kinds) codes.push_back(PairCode(a, b));
  return codes;
}

}  // namespace

bool MAPPairwiseFile(const std::string& lrd_name, const BiparentalMarkers& markers, int threads,
                     PairEstimator estimator) {
  PairwiseFrame frame;
  frame.record_length = kMapRecordLength;
  frame.num_markers = markers.num_markers;
  frame.threads = threads;
  const bool exact = estimator == PairEstimator::kExact;
  frame.prepare = [&markers, exact]() -> PairwiseFrame::Estimator {
    auto planes = std::make_shared<const GenotypePlanes>(markers.types, markers.num_markers,
                                                         markers.num_individuals);
    auto pooled = exact ? std::make_shared<const PooledExactPairs>(markers.population_type, markers.num_individuals,
                                                                   PairCodesOf(markers))
                        : nullptr;
    return [planes, pooled, &markers, exact](int64_t i, int64_t j, float* record) {
      const int code = PairCode(markers.kinds[i - 1], markers.kinds[j - 1]);
      float cells[9];
      if (CountsExchanged(code)) planes->Count(j, i, cells);
      else planes->Count(i, j, cells);
      float rec_freq = 0, lod = 0;
      if (exact) {
        const ExactTwoPoint e = pooled->Estimate(code, cells);
        rec_freq = e.rec_freq;
        lod = e.lod;
      } else {
        TwoPointGuarded(markers.population_type, code, cells, rec_freq, lod);
      }
      record[0] = -lod;
      record[1] = rec_freq;
    };
  };
  return RunPairwiseFrame(lrd_name, frame);
}

}  // namespace gae
