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

  // The index of the pattern of marker m (1-based) among the distinct ones.
  int32_t PatternOf(int64_t m) const { return marker_pattern_[m - 1]; }
  // The table of patterns a and b (indices); `scratch` holds it when it is not kept.
  const PureLinePairClasses& Of(int32_t a, int32_t b, PureLinePairClasses& scratch) const {
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
  if (estimator == PairEstimator::kExact) {
    // The exact maximum takes each pair alone, from log-chance rows tabled once per composition.
    frame.prepare = [&markers]() -> PairwiseFrame::Estimator {
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
      auto grid = std::make_shared<PureLineLogGrid>(type);
      tables->AddTo(*grid);
      return [planes, tables, type, grid](int64_t i, int64_t j, float* record) {
        PureLinePairClasses scratch;
        const PureLinePairClasses& classes = tables->Of(tables->PatternOf(i), tables->PatternOf(j), scratch);
        uint8_t heads[kMaxFounders * kMaxFounders];
        for (int c = 0; c < classes.num_classes; ++c) heads[c] = classes.classes[c].head;
        float counts[kMaxFounders * kMaxFounders];
        planes->CountCells(i, j, heads, classes.num_classes, counts);
        const PureLineEstimate e = ExactPureLinePair(type, classes, counts, grid.get());
        record[0] = -e.lod;
        record[1] = e.rec_freq;
      };
    };
    return RunPairwiseFrame(lrd_name, frame);
  }
  frame.prepare_rows = [&markers]() -> PairwiseFrame::RowEstimator {
    const int founders = PureLineFounders(markers.population_type);
    if (founders == 0) {
      return [](int64_t, int64_t, int64_t count, float* records) {
        for (int64_t k = 0; k < count; ++k) {
          records[kPlmRecordLength * k] = 0.0f;
          records[kPlmRecordLength * k + 1] = 0.5f;
        }
      };
    }
    auto planes = std::make_shared<const FounderPlanes>(markers.types, markers.num_markers,
                                                        markers.num_individuals, founders);
    auto tables = std::make_shared<const PatternPairTables>(markers, founders);
    const int type = markers.population_type;
    // The pairs of a row whose second markers share a pattern share their class table: they
    // are estimated together.
    return [planes, tables, type](int64_t i, int64_t j, int64_t count, float* records) {
      std::vector<int64_t> order(static_cast<std::size_t>(count));
      for (int64_t k = 0; k < count; ++k) order[k] = k;
      std::stable_sort(order.begin(), order.end(), [&](int64_t x, int64_t y) {
        return tables->PatternOf(j + x) < tables->PatternOf(j + y);
      });
      const int32_t row_pattern = tables->PatternOf(i);
      PureLinePairClasses scratch;
      std::vector<float> counts;
      std::vector<const float*> count_of;
      std::vector<PureLineEstimate> estimates;
      for (std::size_t start = 0; start < order.size();) {
        const int32_t pattern = tables->PatternOf(j + order[start]);
        std::size_t end = start;
        while (end < order.size() && tables->PatternOf(j + order[end]) == pattern) ++end;
        const PureLinePairClasses& classes = tables->Of(row_pattern, pattern, scratch);
        uint8_t heads[kMaxFounders * kMaxFounders];
        for (int c = 0; c < classes.num_classes; ++c) heads[c] = classes.classes[c].head;
        const std::size_t group = end - start, stride = kMaxFounders * kMaxFounders;
        counts.assign(group * stride, 0.0f);
        count_of.resize(group);
        estimates.resize(group);
        for (std::size_t g = 0; g < group; ++g) {
          planes->CountCells(i, j + order[start + g], heads, classes.num_classes, counts.data() + g * stride);
          count_of[g] = counts.data() + g * stride;
        }
        EstimatePureLinePairs(type, classes, count_of.data(), static_cast<int>(group), estimates.data());
        for (std::size_t g = 0; g < group; ++g) {
          float* record = records + kPlmRecordLength * order[start + g];
          record[0] = -estimates[g].lod;
          record[1] = estimates[g].rec_freq;
        }
        start = end;
      }
    };
  };
  return RunPairwiseFrame(lrd_name, frame);
}

}  // namespace gae
