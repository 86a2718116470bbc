#include "twopoint/cmp_pairwise_file.h"

#include "vocabulary/message_code.h"
#include "vocabulary/messages.h"
#include "vocabulary/pair_index.h"
#include "twopoint/consensus_distances.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

bool CMPPairwiseFile(const std::string& lrd_name, const std::vector<ChromosomeRecord>& maps,
                     const DistinctMarkers& table) {
  const int64_t m = table.Count();
  if (PairStoreIsComplete(lrd_name, m, kCmpRecordLength)) return true;

  const std::vector<float> mean = ConsensusMeanDistances(maps, table);
  MessageCode() = 2804;
  PrintPairwiseMessage(0, 0, 0, 0, 0);

  PairStoreJob job;
  job.lrd_name = lrd_name;
  job.num_markers = m;
  job.record_length = kCmpRecordLength;
  job.threads = 1;  // the values are already there: writing is all that is left
  job.estimate = [&mean](int64_t i, int64_t j, float* record) {
    ConsensusPairRecord(mean[GroupPairIndex(i, j) - 1], record);
  };
  const bool written = WritePairStore(job);

  MessageCode() = 2805;
  PrintPairwiseMessage(0, 0, 0, 0, 0);
  MessageCode() = 0;
  return written;
}

}  // namespace gae
