#include "import_rqtl.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <sstream>

#include "vocabulary/population.h"

namespace gaecli {

namespace {

struct Cell {
  std::string text;
  int line = 0;
};
using Table = std::vector<std::vector<Cell>>;

std::string Trim(std::string cell) {
  const std::size_t first = cell.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  cell = cell.substr(first, cell.find_last_not_of(" \t\r") - first + 1);
  if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"') cell = cell.substr(1, cell.size() - 2);
  return cell;
}

// The separator of the file: the one of comma, semicolon and tab that the first line has most
// of, outside quotes.
char DetectSeparator(const std::string& line) {
  int comma = 0, semicolon = 0, tab = 0;
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    comma += c == ',';
    semicolon += c == ';';
    tab += c == '\t';
  }
  if (semicolon > comma && semicolon >= tab) return ';';
  if (tab > comma && tab > semicolon) return '\t';
  return ',';
}

std::vector<std::string> Split(const std::string& line, char separator) {
  std::vector<std::string> cells(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (c == separator && !quoted) cells.emplace_back();
    else cells.back() += c;
  }
  for (std::string& cell : cells) cell = Trim(cell);
  return cells;
}

std::string Quoted(const std::vector<std::string>& codes) {
  std::string text;
  for (const std::string& code : codes) {
    if (!text.empty()) text += ' ';
    text.append(code.find(' ') == std::string::npos ? code : "\"" + code + "\"");
  }
  return text;
}

bool Blank(const std::vector<Cell>& row) {
  return std::all_of(row.begin(), row.end(), [](const Cell& c) { return c.text.empty(); });
}

// Rows of cells, all of one width; rows and columns with nothing in them dropped (a
// spreadsheet's trailing line or column of separators).
Table ReadTable(const std::string& text, char& separator) {
  Table rows;
  std::istringstream in(text);
  std::string line;
  bool first = true;
  for (int number = 1; std::getline(in, line); ++number) {
    if (number == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);  // a spreadsheet's byte-order mark
    if (Trim(line).empty()) continue;
    if (first) separator = DetectSeparator(line), first = false;
    std::vector<Cell> row;
    for (std::string& cell : Split(line, separator)) row.push_back({std::move(cell), number});
    if (!Blank(row)) rows.push_back(std::move(row));
  }
  std::size_t width = 0;
  for (const auto& row : rows) width = std::max(width, row.size());
  for (auto& row : rows) row.resize(width, Cell{"", row.empty() ? 0 : row.front().line});
  for (std::size_t c = width; c-- > 0;) {
    const bool empty = std::all_of(rows.begin(), rows.end(), [c](const auto& row) { return row[c].text.empty(); });
    if (empty)
      for (auto& row : rows) row.erase(row.begin() + static_cast<std::ptrdiff_t>(c));
  }
  return rows;
}

Table Transposed(const Table& rows) {
  Table columns(rows.empty() ? 0 : rows.front().size(), std::vector<Cell>(rows.size()));
  for (std::size_t r = 0; r < rows.size(); ++r)
    for (std::size_t c = 0; c < rows[r].size(); ++c) columns[c][r] = rows[r][c];
  return columns;
}

bool IsNumber(const std::string& cell) {
  if (cell.empty()) return true;
  double value = 0;
  const auto read = std::from_chars(cell.data(), cell.data() + cell.size(), value);
  return read.ec == std::errc() && read.ptr == cell.data() + cell.size();
}

std::string NoBlanks(const std::string& name, std::vector<std::string>& renamed) {
  std::string out = name;
  std::replace_if(out.begin(), out.end(), [](char c) { return std::isspace(static_cast<unsigned char>(c)); }, '_');
  if (out != name) renamed.push_back("'" + name + "' -> " + out);
  return out;
}

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// The distinct genotype codes of the marker cells, for a user to choose --genotypes from.
std::string CodesSeen(const Table& rows, const std::vector<std::size_t>& markers, std::size_t first_row) {
  std::vector<std::string> seen;
  for (std::size_t r = first_row; r < rows.size(); ++r)
    for (const std::size_t c : markers) {
      const std::string& code = rows[r][c].text;
      if (code.empty() || code == "-" || code == "NA" || std::find(seen.begin(), seen.end(), code) != seen.end()) continue;
      if (seen.size() == 8) return Quoted(seen) + " ...";
      seen.push_back(code);
    }
  return Quoted(seen);
}

// The table in the plain layout, whichever layout the file has. The rotated layout starts with
// a phenotype row: a name, then blanks where a marker row has its chromosome (and position),
// then values. The plain layout's first row is all names.
Table PlainTable(const std::string& text, char& separator, bool& rotated) {
  Table rows = ReadTable(text, separator);
  rotated = rows.size() >= 2 && rows[0].size() >= 2 && rows[0][1].text.empty() && !rows[1][0].text.empty();
  return rotated ? Transposed(rows) : rows;
}

}  // namespace

std::optional<RqtlCodes> InferRqtlCodes(const std::string& text) {
  char separator = ',';
  bool rotated = false;
  const Table rows = PlainTable(text, separator, rotated);
  if (rows.size() < 3) return std::nullopt;
  std::vector<std::size_t> markers;
  for (std::size_t c = 0; c < rows[0].size(); ++c)
    if (!rows[1][c].text.empty()) markers.push_back(c);
  std::vector<std::string> codes;
  for (std::size_t r = 2; r < rows.size(); ++r)
    for (const std::size_t c : markers) {
      const std::string& code = rows[r][c].text;
      if (code.empty() || code == "-" || code == "NA" || IsNumber(code)) continue;
      if (std::find(codes.begin(), codes.end(), code) == codes.end()) codes.push_back(code);
      if (codes.size() > 5) return std::nullopt;
    }
  // R/qtl writes the heterozygote as allele 1 then allele 2, the homozygotes doubled and the
  // partial scores as "not" and a homozygote: one heterozygote of two letters tells all.
  std::string het;
  for (const std::string& code : codes)
    if (code.size() == 2 && code[0] != code[1]) {
      if (!het.empty()) return std::nullopt;
      het = code;
    }
  if (het.empty()) return std::nullopt;
  const std::string aa(2, het[0]), bb(2, het[1]);
  const RqtlCodes inferred{aa, het, bb, "not " + bb, "not " + aa};
  for (const std::string& code : codes)
    if (std::find(inferred.begin(), inferred.end(), code) == inferred.end()) return std::nullopt;
  return inferred;
}

bool ParseRqtlCsv(const std::string& text, const std::string& file, const RqtlCodes& codes, RqtlCross& out,
                  std::string& error) {
  out = RqtlCross{};
  Table rows = PlainTable(text, out.separator, out.rotated);
  if (rows.size() < 3) {
    error = file + ": an R/qtl csv file has a row of names, a row of chromosomes and a row per individual";
    return false;
  }
  const std::vector<Cell>& names = rows[0];
  std::vector<std::size_t> markers, phenotypes;
  for (std::size_t c = 0; c < names.size(); ++c) (rows[1][c].text.empty() ? phenotypes : markers).push_back(c);
  if (markers.empty()) {
    error = file + " line " + std::to_string(rows[1][0].line) + ": no " + (out.rotated ? "row" : "column") +
            " has a chromosome, so there are no markers";
    return false;
  }
  // The map row, when there is one, is blank in the phenotype columns and numeric in the others.
  bool map_row = true;
  for (std::size_t c = 0; c < rows[2].size(); ++c) {
    const bool marker = std::find(markers.begin(), markers.end(), c) != markers.end();
    if (marker ? !IsNumber(rows[2][c].text) : !rows[2][c].text.empty()) map_row = false;
  }
  out.has_map = map_row;
  for (const std::size_t c : markers) {
    out.names.push_back(NoBlanks(names[c].text, out.renamed));
    out.chromosomes.push_back(rows[1][c].text);
    std::optional<double> position;
    if (map_row && !rows[2][c].text.empty()) position = std::stod(rows[2][c].text);
    out.positions.push_back(position);
    out.letters.emplace_back();
  }
  std::size_t id_column = names.size();
  for (const std::size_t c : phenotypes) {
    if (Lower(names[c].text) == "id" && id_column == names.size()) {
      id_column = c;
      continue;
    }
    out.trait_names.push_back(NoBlanks(names[c].text, out.renamed));
    out.traits.emplace_back();
  }
  const std::string letters = "AHBDR";
  for (std::size_t r = map_row ? 3 : 2; r < rows.size(); ++r) {
    ++out.individuals;
    out.ids.push_back(id_column < names.size() && !rows[r][id_column].text.empty() ? rows[r][id_column].text
                                                                                  : std::to_string(out.individuals));
    std::size_t t = 0;
    for (const std::size_t c : phenotypes)
      if (c != id_column) out.traits[t++].push_back(rows[r][c].text);
    for (std::size_t m = 0; m < markers.size(); ++m) {
      const Cell& cell = rows[r][markers[m]];
      char letter = 'X';
      if (cell.text != "-" && cell.text != "NA" && !cell.text.empty()) {
        const auto code = std::find(codes.begin(), codes.end(), cell.text);
        if (code == codes.end()) {
          error = file + " line " + std::to_string(cell.line) + ", marker " + out.names[m] + ", individual " +
                  std::to_string(out.individuals) + ": '" + cell.text + "' is none of the genotype codes " + codes[0] +
                  " " + codes[1] + " " + codes[2] + " " + codes[3] + " " + codes[4] +
                  " nor a missing value (-, NA); give the file's codes with --genotypes in the order AA AB BB "
                  "\"not BB\" \"not AA\" (the file holds " + CodesSeen(rows, markers, map_row ? 3 : 2) + ")";
          return false;
        }
        letter = letters[static_cast<std::size_t>(code - codes.begin())];
      }
      out.letters[m] += letter;
    }
  }
  return true;
}

std::vector<int> RqtlAnchors(const RqtlCross& cross, bool by_chromosome) {
  std::vector<int> anchors(cross.names.size(), 0);
  if (!by_chromosome) return anchors;
  std::vector<std::string> seen;
  for (std::size_t m = 0; m < cross.names.size(); ++m) {
    auto at = std::find(seen.begin(), seen.end(), cross.chromosomes[m]);
    if (at == seen.end()) at = seen.insert(seen.end(), cross.chromosomes[m]);
    anchors[m] = static_cast<int>(at - seen.begin()) + 1;
  }
  return anchors;
}

int RqtlPopulationType(const std::string& text, std::string& error) {
  // R/qtl's cross types that have a population type here; its backcross is to the first
  // parent (genotypes AA and AB).
  static const std::vector<std::pair<std::string, int>> kRqtl = {{"bc", 1}, {"f2", 7}, {"dh", 3}, {"riself", 4}};
  const std::string lower = Lower(text);
  for (const auto& [name, type] : kRqtl)
    if (lower == name) return type;
  std::string names;
  for (int type = 1; type <= 20; ++type) {
    const std::string name(gae::PopulationName(gae::kBiparentalDesign, type));
    if (text == std::to_string(type) || lower == Lower(name)) return type;
    for (std::size_t at = 0; at != std::string::npos;) {  // "RIL or F1RIL": either word
      const std::size_t next = name.find(" or ", at);
      if (lower == Lower(name.substr(at, next == std::string::npos ? next : next - at))) return type;
      at = next == std::string::npos ? next : next + 4;
    }
    names += (type > 1 ? ", " : "") + std::to_string(type) + " " + name.substr(0, name.find(" or "));
  }
  error = "--pop: '" + text + "' is no population type here";
  if (lower == "risib" || lower == "ri4self" || lower == "ri8self" || lower == "ri4sib" || lower == "ri8sib" ||
      lower == "4way" || lower == "bcsft")
    error += " (R/qtl's " + lower + " has no bi-parental type here that maps it right)";
  error += ".\n  The types are " + names + ";\n  R/qtl's names bc (1), f2 (7), dh (3) and riself (4) work too";
  return 0;
}

}  // namespace gaecli
