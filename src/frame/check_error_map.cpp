#include "frame/check_error_map.h"

#include <algorithm>

#include "frame/entry.h"
#include "frame/name_codes.h"
#include "input/file_entry.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "report/segregation.h"
#include "report/text_file.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/map_pairwise_file.h"

namespace gae {

namespace {

constexpr const char* kFailureName = "DLL CheckErrorMAP";
// The success line has always been spelled with three r; front ends look for it.
constexpr const char* kSuccessName = "DLL CheckErrrorMAP";

void CopyOut(const MapToolInput& data, const MapCheckArrays& out) {
  // The caller's extent governs the copy; the file's governs what there is to copy.
  const int n = std::min<int>(out.num_markers, data.num_markers);
  const int64_t lines = data.population_size;
  NamesToCodes(data.markers.names, 35, out.num_markers, out.name_codes);
  for (int i = 0; i < n; ++i) {
    out.anchor[i] = data.anchors[i];
    out.category[i] = data.markers.categories[i];
    const char* types = data.markers.types.data() + i * lines;
    const SegregationTest test =
        SegregationChiSquare(data.population_type, data.markers.categories[i], types, lines);
    out.size_a[i] = test.counts.n2;
    out.size_h[i] = test.counts.n1;
    out.size_b[i] = test.counts.n0;
    out.size_x[i] = test.counts.nx;
    if (test.tested) {
      out.chi_square[i] = test.chi_square;
      out.probability[i] = test.probability;
    }
  }
}

}  // namespace

bool WriteMapPairwiseFile(const std::string& path, const MapToolInput& data, int threads) {
  // An input named like its pairwise file (cross.LRD) would be replaced by it.
  if (SameFile(PairStoreName(path), path)) {
    ReportSkippedResults({PairStoreName(path)});
    return false;
  }
  BiparentalMarkers markers;
  markers.population_type = data.population_type;
  markers.mapping_function = data.mapping_function;
  markers.num_markers = data.num_markers;
  markers.num_individuals = data.population_size;
  markers.kinds = data.markers.categories.data();
  markers.types = data.markers.types.data();
  const PairStoreWritten written = MAPPairwiseFile(path, markers, threads);
  // One line for all such pairs: a data set can hold thousands of them.
  if (written.not_a_number > 0) {
    MessageCode() = 2806;
    PrintPairwiseMessage(0, 0, 0.0f, 0.0f, 0.0f, written.not_a_number);
    MessageCode() = 0;
  }
  return written.ok;
}

void CheckErrorMapEntry(int path_len, const char* path, const MapCheckArrays& out, int* status,
                        int threads) {
  RunFileEntry("MAP", kFailureName, path_len, path, status, [&](InputFile& in) {
    MapToolInput data;
    ReadMapToolInput(in, 104, data);
    in.Close();
    if (MessageCode() != 0) return;
    CopyOut(data, out);
    // A pairwise file that cannot be written (a full disk, a read-only folder) leaves the
    // stages that follow nothing to read: the check fails.
    if (!WriteMapPairwiseFile(EntryPath(path_len, path), data, threads)) MessageCode() = 1101;
  }, kSuccessName);
}

}  // namespace gae
