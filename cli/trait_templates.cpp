#include "trait_templates.h"

#include <fstream>
#include <sstream>

#include "commands.h"
#include "gaengine.h"
#include "library_output.h"
#include "input/raw_calls.h"
#include "input/tool_codes.h"
#include "prep/trait_table.h"
#include "report/phenotype_rows.h"
#include "vocabulary/path_stem.h"
#include "report/text_file.h"

namespace gaecli {

namespace {

std::string Read(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

bool Write(const std::string& path, const std::string& text) { return gae::WriteTextFile(path, text); }

// Writes `filled` over `path` and keeps it if `validator` takes it; else puts `frame` back.
bool FillOne(const std::string& path, const std::string& frame, const std::string& filled,
             void (*validator)(int, const char*, int*)) {
  if (!Write(path, filled)) return false;
  int status = 0;
  {
    const LibraryOutput quiet(false);
    const PathArg arg(path);
    validator(arg.Len(), arg.Data(), &status);
  }
  if (status == 0) return true;
  Write(path, frame);
  return false;
}

}  // namespace

std::string FillQtlFiles(const std::string& input_file) {
  const std::optional<gae::TraitTable> table = gae::ReadTraitTableBeside(input_file);
  if (!table || table->traits.empty()) return "";
  gae::RawCalls calls;
  gae::LongRow ignored;
  {
    const LibraryOutput quiet(false);
    gae::ReadRawCalls(input_file, gae::kMapToolCode, calls, ignored);
  }
  // A table of other individuals than the input's would fill the rows wrongly.
  if (static_cast<int>(table->ids.size()) != calls.population_size) return "";
  const std::string stem = gae::PathStem(input_file);
  std::string line;
  const std::string bip = Read(stem + ".bip"), met = Read(stem + ".met");
  if (!bip.empty() &&
      FillOne(stem + ".bip", bip, gae::WithPhenotypeRows(bip, "!Number of traits", table->traits, table->values),
              CheckErrorBIP))
    line += stem + ".bip (" + std::to_string(table->traits.size()) + " traits)";
  if (!met.empty() &&
      FillOne(stem + ".met", met,
              gae::WithPhenotypeRows(met, "!Number of environments", {table->traits[0]}, {table->values[0]}),
              CheckErrorMET))
    line += (line.empty() ? "" : ", ") + stem + ".met (" + table->traits[0] + " as its one environment)";
  if (line.empty()) return "";
  return "QTL files         " + line + ", from " + gae::TraitTablePath(input_file);
}

}  // namespace gaecli
