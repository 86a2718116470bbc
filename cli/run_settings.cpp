#include "run_settings.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <CLI/CLI.hpp>

#include "engine/order_group.h"
#include "vocabulary/message_catalogue.h"
#include "frame/tool_profile.h"
#include "input/header_fields.h"
#include "input/list_reader.h"
#include "vocabulary/message_code.h"
#include "vocabulary/population.h"
#include "library_output.h"

namespace gaecli {

namespace {

CLI::Option* seed_option = nullptr;

int MappingFunctionOf(const std::string& file, int tool_code) {
  const LibraryOutput quiet(false);
  gae::InputFile in;
  int32_t type = 0, function = 0;
  if (in.Open(file) && gae::ReadHeaderField(in, gae::HeaderField::kPopulationType, tool_code, type))
    gae::ReadHeaderField(in, gae::HeaderField::kMappingFunction, tool_code, function);
  gae::MessageCode() = 0;
  return function;
}

std::string LogName(int tool_code) {
  const gae::ToolProfile* tool = gae::ProfileOfStageCode(tool_code);
  return std::string(tool != nullptr ? tool->letters : "MAP") + ".log";
}

// "5 for MAP and CDM, 10 for PLM", from the tools' own defaults.
std::string StartsDefaults() {
  std::string text;
  int last = -1;
  for (const gae::MapTool id : {gae::MapTool::kMAP, gae::MapTool::kCDM, gae::MapTool::kPLM}) {
    const gae::ToolProfile& tool = gae::ProfileOf(id);
    const int starts = tool.defaults.ordering_param1;
    if (starts == last) {
      text += " and ";
    } else {
      if (last >= 0) text += ", ";
      text += std::to_string(starts) + " for ";
    }
    text += tool.letters;
    last = starts;
  }
  return text;
}

}  // namespace

const char* MappingFunctionName(int code) {
  switch (code) {
    case 1: return "Kosambi";
    case 2: return "Haldane";
    case 3: return "Morgan";
    default: return "?";
  }
}

RunSettings& Settings() {
  static RunSettings settings;
  return settings;
}

void RegisterSeedOption(CLI::App& app) {
  seed_option = app.add_option("--seed", Settings().seed,
                 "Seed of the random starts of ordering, a positive integer: the same seed repeats a run "
                 "(without it a seed is drawn and reported)")
      ->check(CLI::Range(1LL, 2147483646LL));
}

void RegisterFrontEndOption(CLI::App& cmd) {
  cmd.add_flag("--front-end", Settings().front_end,
               "Estimate the pairs as the desktop program does (its iterations and LOD scores) instead of by the "
               "exact maximum of each pair's likelihood");
}

void RegisterStartsOption(CLI::App& cmd) {
  cmd.add_option("--starts", Settings().starts,
                 "Random starts of ordering per group (default " + StartsDefaults() + "); they run in parallel, and more of them "
                 "make a better order likelier on long groups. Not for a consensus, whose ordering always "
                 "takes " + std::to_string(gae::kConsensusStarts))
      ->check(CLI::Range(1, 10000));
}

void FixSeed() {
  RunSettings& s = Settings();
  s.seed_given = seed_option != nullptr && seed_option->count() > 0;
  // A seed already in the environment counts as given, as the library would take it.
  if (const char* fixed = std::getenv("GAENGINE_SEED"); !s.seed_given && fixed != nullptr) {
    char* end = nullptr;
    const long long value = std::strtoll(fixed, &end, 10);
    if (*fixed != '\0' && *end == '\0' && value > 0) s.seed = value, s.seed_given = true;
  }
  if (!s.seed_given) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    s.seed = 1 + std::chrono::duration_cast<std::chrono::microseconds>(now).count() % 999999;
  }
  ::setenv("GAENGINE_SEED", std::to_string(s.seed).c_str(), 1);
}

int StartsOr(int tool_default) { return Settings().starts > 0 ? Settings().starts : tool_default; }

bool PairFileComputed() {
  // The library's line at the end of a computation, up to its first value.
  std::string done;
  for (const gae::CatalogueEntry& e : gae::Catalogue())
    if (e.code == 2803) done = e.text;
  done = done.substr(0, done.find("{}"));
  return !done.empty() && LibraryTranscript().find(done) != std::string::npos;
}

void PrintRunSettings(const std::string& file, int tool_code, float threshold, bool default_lod,
                      int starts, bool pairs_computed) {
  std::printf("  Mapping function  %s\n", MappingFunctionName(MappingFunctionOf(file, tool_code)));
  std::printf("  LOD threshold     %.1f%s\n", static_cast<double>(threshold), default_lod ? " (automatic)" : "");
  PrintRandomSettings(starts, false);
  std::printf("  Pair file         %s, %s estimates\n", pairs_computed ? "computed in this run" : "reused from an earlier run",
              Settings().front_end ? "the desktop program's" : "exact");
}

void PrintRandomSettings(int starts, bool fixed) {
  const RunSettings& s = Settings();
  std::printf("  Seed              %lld%s\n", s.seed,
              s.seed_given ? " (given)" : " (drawn: --seed repeats this run)");
  std::printf("  Random starts     %d per group%s\n", starts, fixed ? " (fixed)" : "");
}

void LogRunSettings(int tool_code, int starts) {
  if (std::FILE* log = std::fopen(LogName(tool_code).c_str(), "a")) {
    std::fprintf(log, "gaengine: seed %lld%s, %d random starts per group\n", Settings().seed,
                 Settings().seed_given ? " (given)" : " (drawn)", starts);
    std::fclose(log);
  }
}

}  // namespace gaecli
