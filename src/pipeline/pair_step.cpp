#include <cstdint>

#include "pipeline/pair_fingerprint.h"
#include "pipeline/pipeline_steps.h"
#include "report/text_file.h"
#include "twopoint/cdm_pairwise_file.h"
#include "twopoint/input_pair_file.h"
#include "twopoint/map_pairwise_file.h"
#include "twopoint/plm_pairwise_file.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

namespace {

bool WritePairs(const MapPipelineSettings& settings, const MapToolInput& data, const std::string& lrd,
                UniformStream& random) {
  return WriteDataPairFile(lrd, settings.tool_code, data, settings.estimator, settings.threads, random);
}

}  // namespace

int32_t PairRecordLength(int32_t tool_code) {
  if (tool_code == kClonalToolCode) return kClonalRecordLength;
  return tool_code == kPureLineToolCode ? kPlmRecordLength : kMapRecordLength;
}

bool EnsurePairFile(const MapPipelineSettings& settings, const MapToolInput& data, UniformStream& random,
                    MapPipelineRecord& record) {
  const std::string lrd = PairStoreName(settings.input_path);
  record.pair_file = lrd;
  // An input named like its pairwise file (cross.LRD) would be replaced by it.
  if (SameFile(lrd, settings.input_path)) {
    record.failure = -1;
    record.failure_text = "the input file is named like its pairwise file " + lrd;
    return false;
  }
  // The fingerprint names the tool and its record length as well as the data: an x.map and an
  // x.plm in one folder share x.LRD, and one tool must never read the other's pairs.
  const char* tool = settings.tool_code == kClonalToolCode ? "CDM" : settings.tool_code == kPureLineToolCode ? "PLM" : "MAP";
  const std::string fingerprint = PairFingerprint(tool, PairRecordLength(settings.tool_code),
                                                  GenotypeFingerprint(data, settings.estimator));
  record.pairs_recomputed_because = ClearStalePairFile(lrd, fingerprint);
  const int32_t words = PairRecordLength(settings.tool_code);
  record.pairs_computed = !PairStoreIsComplete(lrd, data.num_markers, words);
  if (record.pairs_computed && settings.pairs_starting) {
    const int64_t n = data.num_markers;
    settings.pairs_starting(lrd, int64_t{4} * words * (n * (n - 1) / 2));
  }
  if (!WritePairs(settings, data, lrd, random)) {
    record.failure = -1;
    record.failure_text = "cannot write the pairwise file " + lrd;
    return false;
  }
  RecordPairFileSource(lrd, fingerprint);
  if (record.pairs_computed) record.files_written.push_back(lrd);
  return true;
}

}  // namespace gae
