#include "twopoint/cdm_pairwise_file.h"

#include <bit>
#include <memory>
#include <utility>

#include "twopoint/clonal_planes.h"
#include "twopoint/clonal_two_point.h"
#include "twopoint/exact_clonal.h"
#include "twopoint/pairwise_frame.h"

namespace gae {

namespace {

// While the pairs are estimated on several threads, the phase word of a clonal AB=CD pair
// holds the draw it still owes; the pass in record order makes the draw and writes the phase.
constexpr int32_t kDrawDiscard = -1;
constexpr int32_t kDrawApply = -2;

void ToRecord(const ClonalPairOutcome& o, float* record) {
  const ClonalPairResult& r = o.result;
  record[0] = -r.lod_c;
  record[1] = r.rec_c;
  record[2] = r.lod_a;
  record[3] = r.lod_b;
  record[4] = r.rec_a;
  record[5] = r.rec_b;
  int32_t phase = r.phase;
  if (o.draw == ClonalDraw::kDiscard) phase = kDrawDiscard;
  if (o.draw == ClonalDraw::kApply) phase = kDrawApply;
  record[6] = std::bit_cast<float>(phase);
}

void SettleRecord(float* record, UniformStream& random) {
  const int32_t word = std::bit_cast<int32_t>(record[6]);
  if (word != kDrawDiscard && word != kDrawApply) return;
  ClonalPairOutcome o;
  o.result.rec_c = record[1];
  o.result.rec_a = record[4];
  o.result.rec_b = record[5];
  o.result.phase = ClonalPhase(o.result.rec_a, o.result.rec_b);
  o.draw = word == kDrawApply ? ClonalDraw::kApply : ClonalDraw::kDiscard;
  SettleClonalDraw(o, random.Next());
  record[4] = o.result.rec_a;
  record[5] = o.result.rec_b;
  record[6] = std::bit_cast<float>(o.result.phase);
}

}  // namespace

bool CDMPairwiseFile(const std::string& lrd_name, const ClonalMarkers& markers, int threads,
                     UniformStream& random, PairEstimator estimator) {
  PairwiseFrame frame;
  frame.record_length = kClonalRecordLength;
  frame.num_markers = markers.num_markers;
  frame.threads = threads;
  const bool exact = estimator == PairEstimator::kExact;
  frame.prepare = [&markers, exact]() -> PairwiseFrame::Estimator {
    auto planes = std::make_shared<const ClonalPlanes>(markers.types, markers.num_markers,
                                                       markers.num_individuals);
    const bool clonal = markers.population_type == 1;
    return [planes, clonal, exact, &markers](int64_t i, int64_t j, float* record) {
      // The estimators know the pairs with the lower category first.
      int64_t first = i, second = j;
      if (markers.categories[j - 1] < markers.categories[i - 1]) std::swap(first, second);
      float cells[16];
      planes->Count(first, second, cells);
      const int c1 = markers.categories[first - 1], c2 = markers.categories[second - 1];
      if (exact) ToRecord(ClonalPairOutcome{ExactClonalPair(clonal, c1, c2, cells), ClonalDraw::kNone}, record);
      else ToRecord(CDMPairDeferred(clonal, c1, c2, cells), record);
    };
  };
  frame.in_order = [&random](int64_t, int64_t, float* record) { SettleRecord(record, random); };
  return RunPairwiseFrame(lrd_name, frame);
}

}  // namespace gae
