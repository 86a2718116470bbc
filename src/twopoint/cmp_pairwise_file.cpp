#include "twopoint/cmp_pairwise_file.h"

#include "frame/messages.h"
#include "frame/pair_index.h"
#include "frame/process_state.h"
#include "frame/run_log.h"
#include "twopoint/consensus_distances.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

bool CMPPairwiseFile(const std::string& project_path, const std::vector<ChromosomeRecord>& maps,
                     const DistinctMarkers& table) {
  constexpr int kMorgan = 3;
  LogSession log("CMP");
  PairStoreSettings& settings = Process().pair_store;
  settings.lrd_name = PairStoreName(project_path);
  settings.record_length = 2;
  settings.mapping_function = kMorgan;
  const int64_t m = table.Count();
  if (PairStoreIsComplete(settings.lrd_name, m, 2)) return true;

  const std::vector<float> mean = ConsensusMeanDistances(maps, table);
  MessageCode() = 2804;
  PrintPairwiseMessage(0, 0, 0, 0, 0);

  PairStoreJob job;
  job.lrd_name = settings.lrd_name;
  job.num_markers = m;
  job.record_length = 2;
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
