#include "twopoint/input_pair_file.h"

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "input/tool_codes.h"
#include "twopoint/cdm_pairwise_file.h"
#include "twopoint/map_pairwise_file.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/plm_pairwise_file.h"
#include "vocabulary/message_code.h"

namespace gae {

bool WriteDataPairFile(const std::string& lrd, int tool_code, const MapToolInput& data, PairEstimator estimator,
                       int threads, UniformStream& random) {
  if (tool_code == kClonalToolCode) {
    ClonalMarkers m;
    m.population_type = data.population_type;
    m.mapping_function = data.mapping_function;
    m.num_markers = data.num_markers;
    m.num_individuals = data.population_size;
    m.categories = data.markers.categories.data();
    m.types = data.markers.types.data();
    return CDMPairwiseFile(lrd, m, threads, random, estimator);
  }
  if (tool_code == kPureLineToolCode) {
    PureLineMarkers m;
    m.population_type = data.population_type;
    m.num_markers = data.num_markers;
    m.num_individuals = data.population_size;
    m.patterns = data.markers.categories.data();
    m.types = data.markers.types.data();
    return PLMPairwiseFile(lrd, m, threads, estimator);
  }
  BiparentalMarkers m;
  m.population_type = data.population_type;
  m.mapping_function = data.mapping_function;
  m.num_markers = data.num_markers;
  m.num_individuals = data.population_size;
  m.kinds = data.markers.categories.data();
  m.types = data.markers.types.data();
  return MAPPairwiseFile(lrd, m, threads, estimator);
}

bool WriteInputPairFile(const std::string& input_path, int tool_code, PairEstimator estimator,
                        int threads) {
  if (tool_code != kMapToolCode && tool_code != kClonalToolCode && tool_code != kPureLineToolCode) return false;
  MapToolInput data;
  {
    InputFile in;
    if (!in.Open(input_path)) return false;
    ReadMapToolInput(in, tool_code, data);
  }
  if (MessageCode() != 0) return false;
  UniformStream random;  // the front end's clonal pairs draw; the exact ones do not
  return WriteDataPairFile(PairStoreName(input_path), tool_code, data, estimator, threads, random);
}

}  // namespace gae
