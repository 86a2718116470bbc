#include "vocabulary/population.h"

#include <cctype>
#include <iterator>
#include <string>

namespace gae {

bool BackcrossToP1(int population_type) { return population_type == 1 || population_type == 9; }
bool BackcrossToP2(int population_type) { return population_type == 2 || population_type == 10; }

bool SelfedGeneration(int population_type) {
  return population_type == 7 || population_type == 8 ||
         (population_type >= 13 && population_type <= 16);
}

int PureLineFounders(int population_type) {
  if (population_type == 1 || population_type == 2) return 4;
  if (population_type == 3 || population_type == 4) return 8;
  return 0;
}

std::string_view PopulationName(int32_t design, int population_type) {
  static constexpr std::string_view kBiparental[] = {
      "P1BC1F1", "P2BC1F1", "F1DH",    "RIL or F1RIL", "P1BC1RIL", "P2BC1RIL", "F2",
      "F3",      "P1BC2F1", "P2BC2F1", "P1BC2RIL",     "P2BC2RIL", "P1BC1F2",  "P2BC1F2",
      "P1BC2F2", "P2BC2F2", "P1BC1DH", "P2BC1DH",      "P1BC2DH",  "P2BC2DH"};
  static constexpr std::string_view kClonal[] = {"Clonal F1", "Double Cross"};
  static constexpr std::string_view kPureLines[] = {"4PDH", "4PRIL", "8PDH", "8PRIL"};
  const auto pick = [population_type](const auto& names) -> std::string_view {
    const int count = static_cast<int>(std::size(names));
    return population_type >= 1 && population_type <= count ? names[population_type - 1]
                                                            : std::string_view();
  };
  switch (design) {
    case kBiparentalDesign: return pick(kBiparental);
    case kClonalDesign: return pick(kClonal);
    case kFourWayDesign: case kEightWayDesign: return pick(kPureLines);
    default: return {};
  }
}

namespace {

bool SameLetters(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

}  // namespace

int PopulationTypeNamed(int32_t design, std::string_view text) {
  for (int type = 1;; ++type) {
    const std::string_view name = PopulationName(design, type);
    if (name.empty()) return 0;
    if (text == std::to_string(type)) return type;
    for (std::size_t at = 0;;) {
      const std::size_t next = name.find(" or ", at);
      if (SameLetters(text, name.substr(at, next == std::string_view::npos ? next : next - at))) return type;
      if (next == std::string_view::npos) break;
      at = next + 4;
    }
    if (SameLetters(text, name)) return type;
  }
}

ClassRatios ExpectedRatios(int population_type) {
  switch (population_type) {
    case 1: return {0.5f, 0.5f, 0.0f};
    case 2: return {0.0f, 0.5f, 0.5f};
    case 3: case 4: return {0.5f, 0.0f, 0.5f};
    case 5: case 17: return {0.75f, 0.0f, 0.25f};
    case 6: case 18: return {0.25f, 0.0f, 0.75f};
    case 7: return {0.25f, 0.5f, 0.25f};
    case 8: return {0.375f, 0.25f, 0.375f};
    case 9: return {0.75f, 0.25f, 0.0f};
    case 10: return {0.0f, 0.25f, 0.75f};
    case 11: case 19: return {0.875f, 0.0f, 0.125f};
    case 12: case 20: return {0.125f, 0.0f, 0.875f};
    case 13: return {0.625f, 0.25f, 0.125f};
    case 14: return {0.125f, 0.25f, 0.625f};
    case 15: return {0.8125f, 0.125f, 0.0625f};
    case 16: return {0.0625f, 0.125f, 0.8125f};
    default: return {0.0f, 0.0f, 0.0f};
  }
}

}  // namespace gae
