#include "twopoint/input_pair_file.h"

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "twopoint/cdm_pairwise_file.h"
#include "twopoint/map_pairwise_file.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/plm_pairwise_file.h"
#include "vocabulary/message_code.h"

namespace gae {

bool WriteInputPairFile(const std::string& input_path, int tool_code, PairEstimator estimator,
                        int threads) {
  if (tool_code != 104 && tool_code != 20 && tool_code != 30) return false;
  MapToolInput data;
  {
    InputFile in;
    if (!in.Open(input_path)) return false;
    ReadMapToolInput(in, tool_code, data);
  }
  if (MessageCode() != 0) return false;
  const std::string lrd = PairStoreName(input_path);
  if (tool_code == 104) {
    BiparentalMarkers m;
    m.population_type = data.population_type;
    m.mapping_function = data.mapping_function;
    m.num_markers = data.num_markers;
    m.num_individuals = data.population_size;
    m.kinds = data.markers.categories.data();
    m.types = data.markers.types.data();
    return MAPPairwiseFile(lrd, m, threads, estimator);
  }
  if (tool_code == 20) {
    ClonalMarkers m;
    m.population_type = data.population_type;
    m.mapping_function = data.mapping_function;
    m.num_markers = data.num_markers;
    m.num_individuals = data.population_size;
    m.categories = data.markers.categories.data();
    m.types = data.markers.types.data();
    UniformStream random;  // the front end's clonal pairs draw; the exact ones do not
    return CDMPairwiseFile(lrd, m, threads, random, estimator);
  }
  PureLineMarkers m;
  m.population_type = data.population_type;
  m.num_markers = data.num_markers;
  m.num_individuals = data.population_size;
  m.patterns = data.markers.categories.data();
  m.types = data.markers.types.data();
  return PLMPairwiseFile(lrd, m, threads, estimator);
}

}  // namespace gae
