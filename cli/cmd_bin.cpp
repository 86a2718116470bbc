// gaengine bin FILE -o OUT: the input file with redundant markers removed, and beside it a
// table of the bins. The library's check validates the file (BIN.log); the binning runs here.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "run_guard.h"
#include "commands.h"
#include "library_output.h"
#include "user_errors.h"
#include "vocabulary/fixed_format.h"
#include "vocabulary/run_log.h"
#include "gaengine.h"
#include "input/map_tool_reader.h"
#include "prep/bin_parameters.h"
#include "prep/binning.h"
#include "prep/distortion.h"
#include "prep/map_input_text.h"
#include "report/text_file.h"

namespace gaecli {

namespace {

struct BinSettings {
  std::string file, out;
  int tool_code = kBiparentalRowsCode;
  float missing_rate = -1.0f, distortion_p = -1.0f;  // below 0: the file's, or none
  int method = 0;                                    // 0: the file's, or 1
};

std::string Stem(const std::string& path) {
  const std::size_t dot = path.find_last_of('.');
  const std::size_t slash = path.find_last_of('/');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return path;
  return path.substr(0, dot);
}

std::string Name(const std::string& padded) { return gae::fmt::TrimRight(padded); }

std::string BinTable(const BinSettings& s, const gae::MapToolInput& data,
                     const gae::BinningResult& result, const gae::BinningOptions& options) {
  std::string text = "!Bins of " + s.file + ": " + std::to_string(data.num_markers) + " markers, " +
                     std::to_string(result.bins.size()) + " bins, method " +
                     std::to_string(options.method) + "\n";
  text += "     Bin Representative                      Members\n";
  for (std::size_t b = 0; b < result.bins.size(); ++b) {
    const auto& members = result.bins[b].members;
    text += gae::fmt::I(static_cast<long long>(b + 1), 8) + " " +
            gae::fmt::PadRight(Name(data.markers.names[members.front()]), 35);
    for (int32_t m : members) {
      text += ' ';
      text += Name(data.markers.names[m]);
    }
    text += "\n";
  }
  auto list = [&](const std::string& what, const std::vector<int32_t>& dropped) {
    text += "!Dropped, " + what + ": " + std::to_string(dropped.size()) + "\n";
    for (int32_t m : dropped) text += Name(data.markers.names[m]) + "\n";
  };
  list("missing rate above " + gae::fmt::Trim(gae::fmt::F(options.max_missing_rate, 8, 3)),
       result.dropped_missing);
  list("segregation distortion p below " + gae::fmt::Trim(gae::fmt::F(options.min_distortion_p, 8, 4)),
       result.dropped_distortion);
  return text;
}

int RunBin(const BinSettings& s) {
  const PathArg path(s.file);
  int num_markers = 0, status = 0;
  std::optional<LibraryOutput> quiet(std::in_place);
  BINFindNumMarkers(s.tool_code, path.Len(), path.Data(), &num_markers, &status);
  if (status == 0 && !DeclaredSizeFits(s.file, num_markers, "markers")) return 1;
  if (status == 0) {
    std::vector<int> names(static_cast<std::size_t>(num_markers) * 35), anchors(num_markers),
        categories(num_markers);
    CheckErrorBIN(s.tool_code, path.Len(), path.Data(), num_markers, names.data(), anchors.data(),
                  categories.data(), &status);
  }
  quiet.reset();
  if (status != 0) {
    ExplainRefusal(s.file, s.tool_code, status);
    return 1;
  }

  gae::MapToolInput data;
  gae::BinParameters parameters;
  {
    gae::LogSession log("BIN");
    gae::InputFile in;
    if (!in.Open(s.file)) return 1;
    gae::ReadMapToolInput(in, s.tool_code, data);
    const gae::BinParameterRead read = gae::ReadBinParameters(in, parameters);
    if (read == gae::BinParameterRead::kFailed) {
      std::fprintf(stderr, "%s: bad binning parameters (see BIN.log)\n", s.file.c_str());
      return 1;
    }
    if (read == gae::BinParameterRead::kAbsent) parameters = gae::BinParameters{};
  }
  gae::BinningOptions options;
  options.max_missing_rate = s.missing_rate >= 0.0f ? s.missing_rate : parameters.missing_rate;
  options.min_distortion_p = s.distortion_p >= 0.0f ? s.distortion_p : parameters.distortion_p;
  options.method = s.method != 0 ? s.method : parameters.method;
  options.missing_agrees = parameters.missing_agrees != 0;

  // Markers of different categories, and with the file's say-so of different anchor groups,
  // never share a bin.
  std::vector<int32_t> classes(data.markers.categories);
  if (parameters.use_anchors != 0)
    for (std::size_t m = 0; m < classes.size(); ++m)
      classes[m] = classes[m] * 1000 + data.anchors[m] % 1000;
  gae::BinningData binning{data.num_markers, data.population_size, data.markers.types.data(), classes};
  const std::vector<float> p = gae::SegregationPValues(
      s.tool_code, data.population_type, data.markers.categories, data.markers.types.data(),
      data.population_size);
  const gae::BinningResult result = gae::BinMarkers(binning, p, options);

  gae::MapInputRecord record;
  record.tool_code = s.tool_code;
  record.population_type = data.population_type;
  record.mapping_function = data.mapping_function;
  record.space_type = data.space_type;
  record.population_size = data.population_size;
  for (const gae::MarkerBin& bin : result.bins) {
    const int32_t m = bin.members.front();
    record.names.push_back(data.markers.names[m]);
    record.categories.push_back(data.markers.categories[m]);
    record.letters.push_back(bin.letters);
    record.anchors.push_back(data.anchors[m]);
  }
  const std::string out = s.out.empty() ? Stem(s.file) + "_binned" + s.file.substr(Stem(s.file).size()) : s.out;
  const std::string table = Stem(out) + ".bins";
  for (const auto& [path, text] : {std::pair{out, gae::MapInputText(record)}, std::pair{table, BinTable(s, data, result, options)}}) {
    if (gae::WriteTextFile(path, text)) continue;
    std::fprintf(stderr, "%s: cannot be written\n", path.c_str());
    return 1;
  }
  std::printf("%s: %d markers, %zu bins; dropped %zu for missing data, %zu for distortion\n",
              s.file.c_str(), data.num_markers, result.bins.size(), result.dropped_missing.size(),
              result.dropped_distortion.size());
  std::printf("written: %s and %s\n", out.c_str(), table.c_str());
  return 0;
}

// The thresholds lie strictly between 0 and their bound.
CLI::Validator OpenRange(float high) {
  return CLI::Validator(
      [high](std::string& text) -> std::string {
        float value = 0.0f;
        if (!CLI::detail::lexical_cast(text, value) || !(value > 0.0f && value < high))
          return "must lie strictly between 0 and " + gae::fmt::Trim(gae::fmt::F(high, 6, 2));
        return {};
      },
      "(0, " + gae::fmt::Trim(gae::fmt::F(high, 6, 2)) + ")");
}

}  // namespace

void RegisterBinCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("bin", "Remove redundant markers and write the bins");
  static BinSettings s;
  cmd->add_option("file", s.file, "Binning input file")->required();
  cmd->add_option("-o,--output", s.out, "Input file to write (default: FILE_binned)");
  cmd->add_option("--tool-code", s.tool_code,
                  "Population rules: " + DesignCodesHelp())
      ->capture_default_str();
  cmd->add_option("--missing-rate", s.missing_rate,
                  "Drop markers missing on more than this share of lines, in (0, 0.10) "
                  "(default: the file's parameter section, else 0.05)")
      ->check(OpenRange(0.10f));
  cmd->add_option("--distortion-p", s.distortion_p,
                  "Drop markers whose segregation test gives a p-value below this, in (0, 0.1) "
                  "(default: the file's, else 0.01)")
      ->check(OpenRange(0.1f));
  cmd->add_option("--method", s.method,
                  "1 keep the marker with the fewest missing calls, 2 a consensus of the bin "
                  "(default: the file's, else 1)")
      ->check(CLI::Range(1, 2));
  cmd->callback([&exit_code] { exit_code = RunBin(s); });
}

}  // namespace gaecli
