// The settings that make a map reproducible: the seed of the random starts of ordering and how
// many starts each group gets. Both are said in the summary and in the run log, so that any
// run can be repeated with --seed.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace gaecli {

struct RunSettings {
  long long seed = 0;
  bool seed_given = false;
  int starts = 0;  // 0: the tool's default
  bool front_end = false;  // pairs by the desktop program's estimator instead of the exact one
};

RunSettings& Settings();

// --seed on the command and on every sub-command after it (integers only).
void RegisterSeedOption(CLI::App& app);
// --starts on a map sub-command (a consensus takes a fixed number).
void RegisterStartsOption(CLI::App& cmd);
// --front-end on a sub-command that computes a pair file.
void RegisterFrontEndOption(CLI::App& cmd);

// Once the command line is parsed: a seed is drawn when none was given, and the library's
// ordering is told it (it re-seeds its random stream from GAENGINE_SEED).
void FixSeed();

// The random starts of ordering: --starts, or the tool's default.
int StartsOr(int tool_default);

// The lines of the summary that say how the map was made: `default_lod` when the threshold is
// the tool's own; `pairs_computed` whether the pair file was computed in this run or reused.
void PrintRunSettings(const std::string& file, int tool_code, float threshold, bool default_lod,
                      int starts, bool pairs_computed);

// Whether the library computed a pair file in this run (it says so in its catalogue line).
bool PairFileComputed();

// "Kosambi", "Haldane" or "Morgan" for a mapping-function code; "?" for any other.
const char* MappingFunctionName(int code);

// The seed and random-starts lines of a summary; `fixed` when the tool does not let them be chosen.
void PrintRandomSettings(int starts, bool fixed);

// Appends the seed and starts to the tool's run log, beside the library's own lines.
void LogRunSettings(int tool_code, int starts);

}  // namespace gaecli
