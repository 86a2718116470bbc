#include "run_guard.h"
#include "user_errors.h"

#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <utility>

#include <CLI/CLI.hpp>

#include "vocabulary/message_catalogue.h"
#include "vocabulary/message_code.h"
#include "vocabulary/population.h"
#include "genotype_codes.h"
#include "input/header_fields.h"
#include "input/list_reader.h"
#include "input/marker_section.h"
#include "input/tool_codes.h"
#include "library_output.h"
#include "refusal_extras.h"

namespace gaecli {

namespace {

using Values = std::vector<std::pair<std::string, std::string>>;

std::string Quote(const std::string& text) { return "'" + text + "'"; }

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// The catalogue's first line of `code`, or empty.
std::string CatalogueText(int code) {
  for (const gae::CatalogueEntry& e : gae::Catalogue())
    if (e.code == code) {
      const std::string text = e.text;
      return text.substr(0, text.find('\n'));
    }
  return "";
}

// Each value of a catalogue line with the key its text gives it ("MarkerID" in "MarkerID={}").
Values KeyedValues(int code, const std::string& line) {
  const std::string text = CatalogueText(code);
  if (text.empty()) return {};
  std::vector<std::string> pieces;
  for (std::size_t at = 0;;) {
    const std::size_t hole = text.find("{}", at);
    pieces.push_back(text.substr(at, hole == std::string::npos ? std::string::npos : hole - at));
    if (hole == std::string::npos) break;
    at = hole + 2;
  }
  const std::size_t start = line.find(pieces[0]);
  if (start == std::string::npos) return {};
  Values values;
  std::size_t at = start + pieces[0].size();
  for (std::size_t k = 1; k < pieces.size(); ++k) {
    const std::size_t end = pieces[k].empty() ? line.size() : line.find(pieces[k], at);
    if (end == std::string::npos) return {};
    std::string value = line.substr(at, end - at);
    value.erase(value.find_last_not_of(' ') + 1);
    const std::string& before = pieces[k - 1];
    std::string key = before.substr(0, before.size() - (before.ends_with('=') ? 1 : 0));
    key = key.substr(key.find_last_of(" !;(") == std::string::npos ? 0 : key.find_last_of(" !;(") + 1);
    values.emplace_back(key, value);
    at = end + pieces[k].size();
  }
  return values;
}

std::string ValueOf(const Values& values, const std::string& key) {
  for (const auto& [k, v] : values)
    if (k == key) return v;
  return "";
}

int IntOf(const Values& values, const std::string& key) {
  try {
    return std::stoi(ValueOf(values, key));
  } catch (const std::exception&) {
    return 0;
  }
}

// The last line the library printed for `code`: the one with its error prefix, or else (a
// code without the prefix) the last line of the catalogue's shape.
std::string LastErrorLine(int code) {
  const std::string& text = LibraryTranscript();
  char prefix[16];
  std::snprintf(prefix, sizeof prefix, "--Error%4d: ", code);
  if (const std::size_t at = text.rfind(prefix); at != std::string::npos)
    return text.substr(at, text.find('\n', at) - at);
  const std::string words = CatalogueText(code);
  std::size_t end = text.size();
  while (end > 0 && !words.empty()) {
    const std::size_t begin = text.rfind('\n', end - 1) == std::string::npos ? 0 : text.rfind('\n', end - 1) + 1;
    const std::string line = text.substr(begin, end - begin);
    if (!KeyedValues(code, line).empty() || (words.find("{}") == std::string::npos && line.find(words) != std::string::npos))
      return "--Error" + std::string(prefix + 7) + line;
    end = begin > 0 ? begin - 1 : 0;
  }
  return "";
}

bool StartsWithByteOrderMark(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  char head[3] = {};
  return in.read(head, 3) && head[0] == '\xEF' && head[1] == '\xBB' && head[2] == '\xBF';
}

// One marker row as the library's reader walks it, with the line numbers of what is asked.
struct RowText {
  int population_type = 0, population_size = 0, num_markers = 0;
  int name_line = 0;
  std::string name;                 // as it stands in the file, however long
  std::string category;             // the category field of clonal and pure-line files
  std::vector<std::string> items;   // the genotype items
  int item_line = 0, previous_item_line = 0;  // of item `individual` and the one before it
};

bool ReadRowText(const std::string& file, int tool_code, int marker, int individual, RowText& row) {
  const LibraryOutput quiet(false);  // a header read that fails prints its line: the run has said it
  gae::InputFile in;
  if (!in.Open(file)) return false;
  int32_t values[5] = {};
  const gae::HeaderField fields[] = {gae::HeaderField::kPopulationType, gae::HeaderField::kMappingFunction,
                                     gae::HeaderField::kSpaceType, gae::HeaderField::kNumMarkers,
                                     gae::HeaderField::kPopulationSize};
  for (int f = 0; f < 5; ++f)
    if (!gae::ReadHeaderField(in, fields[f], tool_code, values[f])) {
      gae::MessageCode() = 0;
      return false;
    }
  row.population_type = values[0];
  row.num_markers = values[3];
  row.population_size = values[4];
  in.SkipRemarks();
  std::string_view item;
  for (int m = 1; m <= marker; ++m) {
    if (gae::HasCategoryField(tool_code)) {
      if (!in.NextItem(item)) return false;
      if (m == marker) row.category = std::string(item);
    }
    if (!in.NextItem(item)) return false;
    if (m == marker) row.name = std::string(item), row.name_line = in.LineNumber();
    for (int l = 1; l <= row.population_size; ++l) {
      if (!in.NextItem(item)) break;
      if (m != marker) continue;
      row.items.emplace_back(item);
      if (l == individual - 1) row.previous_item_line = in.LineNumber();
      if (l == individual) row.item_line = in.LineNumber();
    }
    in.EndRead();
  }
  return true;
}

std::string WithArticle(const std::string& name) {
  const bool vowel_sound = !name.empty() && std::string("AEFHILMNORSX8").find(name[0]) != std::string::npos;
  return (vowel_sound ? "an " : "a ") + name;
}

std::string PopulationOf(int tool_code, int type) {
  const int design = tool_code == gae::kClonalToolCode     ? gae::kClonalDesign
                     : tool_code == gae::kPureLineToolCode ? gae::kFourWayDesign
                                                           : gae::kBiparentalDesign;
  const std::string name(gae::PopulationName(design, type));
  return name.empty() ? "population type " + std::to_string(type) : WithArticle(name);
}

struct Explanation {
  std::string message;
  std::vector<std::string> hints;
};

// A genotype the marker cannot take: where it stands, and the codes that it can. Where the
// library's line does not say which individual (a clonal type outside the marker's category,
// any pure-line refusal), the first item the decoder would not take is the one.
void ExplainGenotype(const std::string& file, int tool_code, const Values& v, Explanation& e) {
  const int marker = IntOf(v, "MarkerID");
  int individual = IntOf(v, "LineID");
  RowText row;
  if (!ReadRowText(file, tool_code, marker, individual, row)) return;
  const MarkerKind kind{tool_code, row.population_type, row.category};
  GenotypeCodes codes(kind);
  const std::vector<std::string> shown = codes.Shown();
  if (individual == 0 && !shown.empty()) {
    for (std::size_t l = 0; l < row.items.size() && individual == 0; ++l)
      if (!codes.Takes(row.items[l])) individual = static_cast<int>(l + 1);
    if (individual == 0 || !ReadRowText(file, tool_code, marker, individual, row)) return;
  }
  if (individual < 1 || individual > static_cast<int>(row.items.size())) return;
  const std::string item = row.items[static_cast<std::size_t>(individual - 1)];
  std::string list;
  for (const std::string& code : shown) list += (list.empty() ? "" : " ") + code;
  std::string kind_words = PopulationOf(tool_code, row.population_type);
  if (gae::HasCategoryField(tool_code)) kind_words += " marker of type " + row.category;
  e.message = file + " line " + std::to_string(row.item_line) + ", marker " + row.name + ", individual " +
              std::to_string(individual) + ": " + Quote(item) + " is not a genotype code of " + kind_words +
              (list.empty() ? "" : " (" + list + ")");
  if (item != Upper(item) && codes.Takes(Upper(item)))
    e.hints.push_back("genotype codes are upper-case letters: write " + Quote(Upper(item)) + ", not " + Quote(item));
  // A row one genotype short takes the next row's marker name as its last genotype.
  const bool last = individual == row.population_size;
  if (last && row.item_line > row.name_line && row.item_line > row.previous_item_line)
    e.hints.push_back("the row of marker " + row.name + " (line " + std::to_string(row.name_line) +
                      ") seems one genotype short: the file says " + std::to_string(row.population_size) +
                      " individuals, and the reader went on to line " + std::to_string(row.item_line) +
                      " for the last one");
}

void ExplainSameName(const std::string& file, int tool_code, const Values& v, Explanation& e) {
  RowText later, earlier;
  if (!ReadRowText(file, tool_code, IntOf(v, "MarkerID1"), 0, later) ||
      !ReadRowText(file, tool_code, IntOf(v, "MarkerID2"), 0, earlier))
    return;
  e.message = file + " lines " + std::to_string(earlier.name_line) + " and " + std::to_string(later.name_line) +
              ": two markers have the same name " + Quote(ValueOf(v, "MarkerName"));
  if (earlier.name != later.name)
    e.hints.push_back("marker names are cut to " + std::to_string(gae::kMarkerNameWidth) + " characters: " +
                      Quote(earlier.name) + " and " + Quote(later.name) + " differ only after that; shorten them");
}

}  // namespace

std::vector<std::string> CatalogueValues(int code, const std::string& line) {
  std::vector<std::string> out;
  for (auto& kv : KeyedValues(code, line)) out.push_back(kv.second);
  return out;
}

std::string InputNameProblem(const std::string& path) {
  const std::size_t n = path.size();
  const bool extension = n >= 4 && path[n - 4] == '.' && std::isalpha(static_cast<unsigned char>(path[n - 3])) &&
                         std::isalpha(static_cast<unsigned char>(path[n - 2])) &&
                         std::isalpha(static_cast<unsigned char>(path[n - 1]));
  if (!extension)
    return Quote(path) + " does not end in a dot and a three-letter extension (such as .map): the result files "
           "are named by the input name less its last four characters, so give the file an extension";
  if (n == 4 || path[n - 5] == '/')
    return Quote(path) + " has no name before its extension: the result files would be hidden files such as .sum";
  return "";
}

std::string FolderProblem(const std::string& file) {
  const std::size_t slash = file.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : file.substr(0, slash);
  if (::access(folder.c_str(), W_OK) != 0)
    return "cannot write in the folder " + Quote(folder) + ": the result files are written beside the input file";
  if (::access(".", W_OK) != 0) return "cannot write in the working folder, where the run logs (such as MAP.log) go";
  return "";
}

void AddInputNameChecks(CLI::App& app) {
  for (CLI::App* cmd : app.get_subcommands({})) {
    if (cmd->get_name() == "import") continue;  // its input is another program's file
    for (CLI::Option* option : cmd->get_options())
      if (option->get_name() == "file")
        option->check(CLI::Validator(InputNameProblem, "FILE.ext"));
  }
}

void ExplainRefusal(const std::string& file, int tool_code, int status) {
  if (status == kRefusedByCommand) return;  // already said
  const std::string line = LastErrorLine(status);
  const Values v = KeyedValues(status, line);
  Explanation e;
  const bool map_tool = tool_code == gae::kMapToolCode || gae::HasCategoryField(tool_code);
  if (map_tool && !ValueOf(v, "MarkerID").empty()) ExplainGenotype(file, tool_code, v, e);
  if (map_tool && (status == 2201 || status == 2210)) {
    RowText row;
    const int marker = IntOf(v, "MarkerID");
    if (ReadRowText(file, tool_code, 0, 0, row))
      e.message = file + ": the file ends before the row of marker " + std::to_string(marker) +
                  " has its name and " + std::to_string(row.population_size) + " genotypes (the header says " +
                  std::to_string(row.num_markers) + " markers of " + std::to_string(row.population_size) +
                  " individuals)";
  }
  if (map_tool && status == 2230) ExplainSameName(file, tool_code, v, e);
  if (status == 2108 || status == 2109) {
    const std::string name = ValueOf(v, "MarkerName");
    if (name.size() >= gae::kMarkerNameWidth)
      e.hints.push_back("names are cut to " + std::to_string(gae::kMarkerNameWidth) + " characters: two names that agree that far count as one");
  }
  if (map_tool && status == 2209) e.message = BadMarkerMessage(file, tool_code, IntOf(v, "MarkerID"));
  if (status >= 2001 && status <= 2019)
    if (const std::string look = FileLooksLike(file); !look.empty()) e.message = file + ": " + look;
  if (e.message.empty() && ::access(file.c_str(), R_OK) != 0) e.message = file + ": no such file, or it cannot be read";
  if (e.message.empty()) {
    const std::size_t text = line.find(": ");
    e.message = file + ": " + (text == std::string::npos ? "refused with code " + std::to_string(status) : line.substr(text + 2));
  }
  if (StartsWithByteOrderMark(file))
    e.hints.push_back("the file begins with a UTF-8 byte-order mark (spreadsheets write one): save it as plain "
                      "text, or remove its first three bytes");
  if (const std::string folder = FolderProblem(file); !folder.empty()) e.hints.push_back(folder);
  std::fprintf(stderr, "%s\n", e.message.c_str());
  for (const std::string& hint : e.hints) std::fprintf(stderr, "  hint: %s\n", hint.c_str());
}

}  // namespace gaecli
