#include "pipeline/pair_fingerprint.h"

#include <sys/stat.h>

#include <cinttypes>
#include <cstdio>
#include <fstream>

#include "vocabulary/message_code.h"
#include "input/consensus_input.h"
#include "input/map_tool_reader.h"
#include "input/tool_codes.h"
#include "report/text_file.h"

namespace gae {

namespace {

constexpr uint64_t kFnvOffset = 14695981039346656037ull;
constexpr uint64_t kFnvPrime = 1099511628211ull;

void Hash(uint64_t& h, const std::string& text) {
  for (const unsigned char c : text) {
    h ^= c;
    h *= kFnvPrime;
  }
}

// What identifies one state of the pairwise file: its size and modification time.
std::string FileStamp(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return {};
  return std::to_string(static_cast<long long>(info.st_size)) + " " +
         std::to_string(static_cast<long long>(info.st_mtim.tv_sec)) + "." +
         std::to_string(static_cast<long long>(info.st_mtim.tv_nsec));
}

std::string Hex(uint64_t h) {
  char text[17];
  std::snprintf(text, sizeof text, "%016" PRIx64, h);
  return text;
}

std::string ReadFirstLine(const std::string& path) {
  std::ifstream in(path);
  std::string line;
  std::getline(in, line);
  return line;
}

}  // namespace

std::string InputFingerprint(const std::string& input_path, int tool_code, PairEstimator estimator) {
  // The library's own reader: its rules for remarks, blanks and the genotype letters hold.
  InputFile in;
  if (!in.Open(input_path)) return {};
  MapToolInput data;
  ReadMapToolInput(in, tool_code, data);
  in.Close();
  if (MessageCode() != 0) return {};
  return GenotypeFingerprint(data, estimator);
}

std::string GenotypeFingerprint(const MapToolInput& data, PairEstimator estimator) {
  uint64_t h = kFnvOffset;
  for (const int32_t value : {data.population_type, data.mapping_function, data.num_markers, data.population_size})
    Hash(h, std::to_string(value) + "\n");
  for (int i = 0; i < data.num_markers; ++i)
    Hash(h, data.markers.names[i] + std::to_string(data.markers.categories[i]) + "\n");
  Hash(h, std::string(data.markers.types.begin(), data.markers.types.end()));
  return Hex(h) + " " + std::string(gae::PairEstimatorName(estimator));
}

std::string ConsensusFingerprint(const std::string& input_path) {
  InputFile in;
  if (!in.Open(input_path)) return {};
  ConsensusInput data;
  ReadConsensusInput(in, data);
  in.Close();
  if (MessageCode() != 0) return {};
  // The pair values are mean distances: each map's markers with their positions in cM, exact
  // to the bit, whatever space type or unit gave them.
  uint64_t h = kFnvOffset;
  for (const ChromosomeRecord& map : data.maps.chromosomes) {
    Hash(h, std::to_string(map.NumMarkers()) + "\n");
    for (int j = 0; j < map.NumMarkers(); ++j) {
      char position[32];
      std::snprintf(position, sizeof position, " %a\n", static_cast<double>(map.positions[j]));
      Hash(h, map.marker_names[j] + position);
    }
  }
  return Hex(h);
}

std::string FileBytesFingerprint(const std::string& input_path) {
  std::ifstream in(input_path, std::ios::binary);
  if (!in) return {};
  uint64_t h = kFnvOffset;
  char block[1 << 16];
  while (in.read(block, sizeof block) || in.gcount() > 0)
    Hash(h, std::string(block, static_cast<std::size_t>(in.gcount())));
  return Hex(h);
}

std::string PairFingerprint(std::string_view tool_letters, int record_length, const std::string& data) {
  if (data.empty()) return {};
  return std::string(tool_letters) + "/" + std::to_string(record_length) + "/" + data;
}

std::string FingerprintFileName(const std::string& lrd_path) { return lrd_path + ".source"; }

std::string ClearStalePairFile(const std::string& lrd_path, const std::string& fingerprint) {
  const std::string stamp = FileStamp(lrd_path);
  // An input that cannot be read fails its check before any pair is used.
  if (stamp.empty() || fingerprint.empty()) return {};
  const std::string kept = ReadFirstLine(FingerprintFileName(lrd_path));
  std::string reason;
  // The data's hash, then (for genotype files) the estimator's name, then the file's stamp.
  const std::string data = fingerprint.substr(0, fingerprint.find(' '));
  const std::string kept_data = kept.substr(0, kept.find(' '));
  if (kept.empty()) reason = "nothing records which data it was computed from";
  else if (kept_data != data) reason = "it was computed from other data";
  else if (kept.substr(0, fingerprint.size() + 1) != fingerprint + " ") {
    const std::string rest = kept.substr(kept_data.size() + 1);
    const std::string kept_estimator = rest.substr(0, rest.find(' '));
    const bool named = kept_estimator == gae::PairEstimatorName(gae::PairEstimator::kExact) ||
                       kept_estimator == gae::PairEstimatorName(gae::PairEstimator::kFrontEnd);
    reason = named ? "it holds the " + kept_estimator + " estimates, not the " + fingerprint.substr(data.size() + 1) + " ones"
                   : "nothing records which estimator computed it";
  }
  else if (kept.substr(fingerprint.size() + 1) != stamp) reason = "it has changed since it was computed";
  else return {};
  std::remove(lrd_path.c_str());
  std::remove(FingerprintFileName(lrd_path).c_str());
  return reason;
}

void RecordPairFileSource(const std::string& lrd_path, const std::string& fingerprint) {
  const std::string stamp = FileStamp(lrd_path);
  if (fingerprint.empty() || stamp.empty()) return;
  WriteTextFile(FingerprintFileName(lrd_path), fingerprint + " " + stamp + "\n");
}

}  // namespace gae
