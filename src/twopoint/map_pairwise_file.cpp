#include "twopoint/map_pairwise_file.h"

#include "frame/cpu_clock.h"
#include "frame/message_code.h"
#include "frame/messages.h"
#include "twopoint/genotype_planes.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/two_point.h"

namespace gae {

namespace {

// In these pair codes the engine knows only the layout with the markers exchanged, so the
// second marker's genotypes give the rows.
bool CountsExchanged(int pair_code) {
  return pair_code == 121 || pair_code == 101 || pair_code == 1012;
}

// A frequency above the 32-bit 0.9 is suspicious: the pair is written all the same.
constexpr float kHighFrequency = 0.9f;

}  // namespace

bool MAPPairwiseFile(const std::string& lrd_name, const BiparentalMarkers& markers, int threads) {
  if (PairStoreIsComplete(lrd_name, markers.num_markers, kMapRecordLength)) return true;

  MessageCode() = 2801;
  PrintPairwiseMessage(0, 0, 0, 0, 0);
  const float t1 = CpuSeconds();

  const GenotypePlanes planes(markers.types, markers.num_markers, markers.num_individuals);
  PairStoreJob job;
  job.lrd_name = lrd_name;
  job.num_markers = markers.num_markers;
  job.record_length = kMapRecordLength;
  job.threads = threads;
  job.estimate = [&](int64_t i, int64_t j, float* record) {
    const int code = PairCode(markers.kinds[i - 1], markers.kinds[j - 1]);
    float cells[9];
    if (CountsExchanged(code)) planes.Count(j, i, cells);
    else planes.Count(i, j, cells);
    float rec_freq = 0, lod = 0;
    TwoPointGuarded(markers.population_type, code, cells, rec_freq, lod);
    record[0] = -lod;
    record[1] = rec_freq;
  };
  job.inspect = [](int64_t i, int64_t j, const float* record) {
    if (record[1] > kHighFrequency) {
      MessageCode() = 2802;
      PrintPairwiseMessage(static_cast<int>(i), static_cast<int>(j), record[1], -record[0], 0);
    }
  };
  const bool written = WritePairStore(job);

  const float t2 = CpuSeconds();
  MessageCode() = 2803;
  PrintPairwiseMessage(0, 0, 0, 0, (t2 - t1) / 60.0f);
  MessageCode() = 0;
  return written;
}

}  // namespace gae
