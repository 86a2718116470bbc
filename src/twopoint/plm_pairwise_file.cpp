#include "twopoint/plm_pairwise_file.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "twopoint/exact_pure_line.h"
#include "twopoint/founder_planes.h"
#include "twopoint/pairwise_frame.h"
#include "twopoint/pure_line.h"

namespace gae {

namespace {

// The class tables of the data set's pattern pairs. A data set has few founder patterns (at
// most 14 among four founders; SNPs among eight give at most 127), so every pair of them is
// built once up front. A set with very many patterns builds each pair's table as it goes.
class PatternPairTables {
 public:
  PatternPairTables(const PureLineMarkers& markers, int founders) : founders_(founders) {
    marker_pattern_.reserve(markers.num_markers);
    for (int64_t m = 0; m < markers.num_markers; ++m) {
      const int32_t pattern = markers.patterns[m];
      auto it = std::find(patterns_.begin(), patterns_.end(), pattern);
      marker_pattern_.push_back(static_cast<int32_t>(it - patterns_.begin()));
      if (it == patterns_.end()) patterns_.push_back(pattern);
    }
    const std::size_t n = patterns_.size();
    if (n * n > kMaxTables) return;
    tables_.reserve(n * n);
    for (int32_t a : patterns_)
      for (int32_t b : patterns_) tables_.push_back(BuildPairClasses(founders_, a, b));
  }

  // The table of markers i and j (1-based); `scratch` holds it when it is not kept.
  const PureLinePairClasses& Of(int64_t i, int64_t j, PureLinePairClasses& scratch) const {
    const std::size_t a = marker_pattern_[i - 1], b = marker_pattern_[j - 1];
    if (!tables_.empty()) return tables_[a * patterns_.size() + b];
    scratch = BuildPairClasses(founders_, patterns_[a], patterns_[b]);
    return scratch;
  }

  // The log-chance rows of every kept table's compositions, for the exact estimator.
  void AddTo(PureLineLogGrid& grid) const {
    for (const PureLinePairClasses& t : tables_) grid.Add(t);
  }

 private:
  static constexpr std::size_t kMaxTables = 1 << 16;
  int founders_;
  std::vector<int32_t> patterns_;        // distinct patterns in order of first use
  std::vector<int32_t> marker_pattern_;  // index into patterns_ by marker
  std::vector<PureLinePairClasses> tables_;
};

}  // namespace

bool PLMPairwiseFile(const std::string& lrd_name, const PureLineMarkers& markers, int threads,
                     PairEstimator estimator) {
  PairwiseFrame frame;
  frame.record_length = kPlmRecordLength;
  frame.num_markers = markers.num_markers;
  frame.threads = threads;
  const bool exact = estimator == PairEstimator::kExact;
  frame.prepare = [&markers, exact]() -> PairwiseFrame::Estimator {
    const int founders = PureLineFounders(markers.population_type);
    if (founders == 0) {
      return [](int64_t, int64_t, float* record) {
        record[0] = 0.0f;
        record[1] = 0.5f;
      };
    }
    auto planes = std::make_shared<const FounderPlanes>(markers.types, markers.num_markers,
                                                        markers.num_individuals, founders);
    auto tables = std::make_shared<const PatternPairTables>(markers, founders);
    const int type = markers.population_type;
    std::shared_ptr<PureLineLogGrid> grid;
    if (exact) {
      grid = std::make_shared<PureLineLogGrid>(type);
      tables->AddTo(*grid);
    }
    return [planes, tables, type, grid](int64_t i, int64_t j, float* record) {
      PureLinePairClasses scratch;
      const PureLinePairClasses& classes = tables->Of(i, j, scratch);
      uint8_t heads[kMaxFounders * kMaxFounders];
      for (int c = 0; c < classes.num_classes; ++c) heads[c] = classes.classes[c].head;
      float counts[kMaxFounders * kMaxFounders];
      planes->CountCells(i, j, heads, classes.num_classes, counts);
      const PureLineEstimate e = grid != nullptr ? ExactPureLinePair(type, classes, counts, grid.get())
                                                 : EstimatePureLinePair(type, classes, counts);
      record[0] = -e.lod;
      record[1] = e.rec_freq;
    };
  };
  return RunPairwiseFrame(lrd_name, frame);
}

}  // namespace gae
