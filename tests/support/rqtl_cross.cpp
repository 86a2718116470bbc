#include "support/rqtl_cross.h"

#include <cstdio>

#include "support/breeder.h"

namespace gae::testing {

BredCross BreedCross(int type, int chromosomes, int per_chromosome, int individuals, uint64_t seed) {
  BredCross cross;
  cross.type = type;
  std::vector<double> positions;
  for (int k = 0; k < per_chromosome; ++k) positions.push_back(12.0 * k);
  for (int c = 1; c <= chromosomes; ++c) {
    Breeder breeder = Breeder::AtPositions(positions, seed + static_cast<uint64_t>(c));
    std::vector<std::string> letters(positions.size());
    for (int i = 0; i < individuals; ++i) {
      const Plant plant = breeder.Biparental(type);
      for (std::size_t m = 0; m < positions.size(); ++m) letters[m] += BiparentalLetter(plant, static_cast<int>(m));
    }
    for (std::size_t m = 0; m < positions.size(); ++m) {
      std::string name = "C";
      name.append(std::to_string(c)).append("M").append(std::to_string(m + 1));
      cross.names.push_back(name);
      cross.chromosomes.push_back(std::to_string(c));
      cross.positions.push_back(positions[m]);
      cross.letters.push_back(letters[m]);
    }
  }
  for (int i = 0; i < individuals; ++i) cross.trait.push_back(10.0 + 0.25 * i);
  return cross;
}

std::string RqtlText(const BredCross& cross, char separator, bool rotated) {
  // The plain table first, row by row; the csvr layout is its transpose.
  std::vector<std::vector<std::string>> rows(3);
  rows[0] = {"id", "yield"};
  rows[1] = {"", ""};
  rows[2] = {"", ""};
  for (std::size_t m = 0; m < cross.names.size(); ++m) {
    char position[32];
    std::snprintf(position, sizeof position, "%.1f", cross.positions[m]);
    rows[0].push_back(cross.names[m]);
    rows[1].push_back(cross.chromosomes[m]);
    rows[2].push_back(position);
  }
  for (std::size_t i = 0; i < cross.trait.size(); ++i) {
    char value[32];
    std::snprintf(value, sizeof value, "%.2f", cross.trait[i]);
    std::string id = "ind";
    id.append(std::to_string(i + 1));
    std::vector<std::string> row{id, value};
    for (const std::string& letters : cross.letters) row.push_back(letters[i] == 'X' ? "-" : std::string(1, letters[i]));
    rows.push_back(row);
  }
  if (rotated) {
    std::vector<std::vector<std::string>> columns(rows[0].size(), std::vector<std::string>(rows.size()));
    for (std::size_t r = 0; r < rows.size(); ++r)
      for (std::size_t c = 0; c < rows[r].size(); ++c) columns[c][r] = rows[r][c];
    rows = columns;
  }
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t c = 0; c < row.size(); ++c) {
      if (c > 0) text += separator;
      text += row[c];
    }
    text += '\n';
  }
  return text;
}

}  // namespace gae::testing
