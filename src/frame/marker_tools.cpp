#include "frame/marker_tools.h"

#include <algorithm>

#include "vocabulary/messages.h"
#include "frame/name_codes.h"
#include "frame/process_state.h"
#include "frame/file_entry.h"
#include "input/map_tool_reader.h"
#include "prep/snp_calls.h"
#include "prep/snp_reader.h"

namespace gae {

namespace {

constexpr int kDeletedWarning = 3129;
constexpr int kDecidedByParent = 3131;  // + PolymorphismSource

void CopyOut(const std::vector<std::string>& names, const std::vector<int32_t>& anchors,
             const std::vector<int32_t>& codes, const MarkerToolArrays& out) {
  // The caller's extent governs the copy; the file's governs what there is to copy.
  NamesToCodes(names, 35, out.num_markers, out.name_codes);
  const std::size_t n = std::min<std::size_t>(std::max(out.num_markers, 0), codes.size());
  for (std::size_t i = 0; i < n; ++i) {
    out.anchor[i] = i < anchors.size() ? anchors[i] : 0;
    out.code[i] = codes[i];
  }
}

}  // namespace

void ReportSnpConversion(const SnpConversion& conversion) {
  for (std::size_t i = 0; i < conversion.markers.size(); ++i) {
    const SnpMarkerResult& r = conversion.markers[i];
    const int marker = static_cast<int>(i + 1);
    if (r.failure != 0) {
      MessageCode() = r.failure;
      PrintMessage(r.failure, {marker, r.failure_index, SnpCallText(r.failure_call)});
      return;
    }
    if (r.code == 0) {
      MessageCode() = kDeletedWarning;
      PrintMessage(kDeletedWarning, {marker});
      MessageCode() = 0;
    }
    // The account of each marker goes to the log only: it is long and for later reading.
    const int line = kDecidedByParent + static_cast<int>(r.source);
    Process().log.Write(MessageLines(line, {marker}).front());
  }
}

void CheckErrorSnpEntry(int tool_code, int path_len, const char* path, const MarkerToolArrays& out,
                        int* status) {
  RunFileEntry("SNP", "DLL CheckErrorSNP", path_len, path, status, [&](InputFile& in) {
    SnpInput data;
    ReadSnpInput(in, tool_code, data);
    in.Close();
    if (MessageCode() != 0) return;
    const SnpConversion conversion = ConvertSnpInput(data);
    ReportSnpConversion(conversion);
    if (MessageCode() != 0) return;
    std::vector<int32_t> codes;
    for (const SnpMarkerResult& r : conversion.markers) codes.push_back(r.code);
    CopyOut(data.names, data.anchors, codes, out);
  });
}

void CheckErrorBinEntry(int tool_code, int path_len, const char* path, const MarkerToolArrays& out,
                        int* status) {
  RunFileEntry("BIN", "DLL CheckErrorBIN", path_len, path, status, [&](InputFile& in) {
    MapToolInput data;
    ReadMapToolInput(in, tool_code, data);
    in.Close();
    if (MessageCode() != 0) return;
    CopyOut(data.markers.names, data.anchors, data.markers.categories, out);
  });
}

}  // namespace gae
