#include "import_rqtl.h"

#include <algorithm>
#include <sstream>

namespace gaecli {

namespace {

std::string Trim(std::string cell) {
  const std::size_t first = cell.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  cell = cell.substr(first, cell.find_last_not_of(" \t\r") - first + 1);
  if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"') cell = cell.substr(1, cell.size() - 2);
  return cell;
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::stringstream in(line);
  std::string cell;
  while (std::getline(in, cell, ',')) cells.push_back(Trim(cell));
  if (!line.empty() && line.back() == ',') cells.emplace_back();
  return cells;
}

bool IsNumber(const std::string& cell) {
  if (cell.empty()) return true;
  std::istringstream in(cell);
  double value = 0;
  return (in >> value) && in.eof();
}

}  // namespace

bool ParseRqtlCsv(const std::string& text, const std::string& file, const RqtlCodes& codes, RqtlCross& out,
                  std::string& error) {
  out = RqtlCross{};
  std::vector<std::vector<std::string>> rows;
  std::vector<int> line_of;
  std::istringstream in(text);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (number == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);  // a spreadsheet's byte-order mark
    if (Trim(line).empty()) continue;
    rows.push_back(Cells(line));
    line_of.push_back(number);
  }
  if (rows.size() < 3) {
    error = file + ": an R/qtl csv file has a row of names, a row of chromosomes and a row per individual";
    return false;
  }
  const std::vector<std::string>& names = rows[0];
  std::vector<std::size_t> markers;
  for (std::size_t c = 0; c < names.size(); ++c)
    if (c < rows[1].size() && !rows[1][c].empty()) markers.push_back(c);
  if (markers.empty()) {
    error = file + " line " + std::to_string(line_of[1]) + ": no column has a chromosome, so there are no markers";
    return false;
  }
  // The map row, when there is one, is blank in the phenotype columns and numeric in the others.
  bool map_row = true;
  for (std::size_t c = 0; c < rows[2].size(); ++c) {
    const bool marker = std::find(markers.begin(), markers.end(), c) != markers.end();
    if (marker ? !IsNumber(rows[2][c]) : !rows[2][c].empty()) map_row = false;
  }
  out.has_map = map_row;
  for (const std::size_t c : markers) {
    out.names.push_back(names[c]);
    out.chromosomes.push_back(rows[1][c]);
    out.letters.emplace_back();
  }
  const std::string letters = "AHBDR";
  for (std::size_t r = map_row ? 3 : 2; r < rows.size(); ++r) {
    ++out.individuals;
    for (std::size_t m = 0; m < markers.size(); ++m) {
      const std::string cell = markers[m] < rows[r].size() ? rows[r][markers[m]] : "";
      char letter = 'X';
      if (cell != "-" && cell != "NA" && !cell.empty()) {
        const auto code = std::find(codes.begin(), codes.end(), cell);
        if (code == codes.end()) {
          error = file + " line " + std::to_string(line_of[r]) + ", marker " + out.names[m] + ", individual " +
                  std::to_string(out.individuals) + ": '" + cell + "' is none of the genotype codes " + codes[0] +
                  " " + codes[1] + " " + codes[2] + " " + codes[3] + " " + codes[4] +
                  " nor a missing value (-, NA); give the file's codes with --genotypes";
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

}  // namespace gaecli
