#include "errorscan/population_states.h"

namespace gae {

std::string_view StateLetters(int32_t design, int32_t type) {
  switch (design) {
    case kBiparentalDesign:
      switch (type) {
        // Backcrosses: P1 x F1 shows A or H, P2 x F1 shows H or B.
        case 1: case 9: return "AH";
        case 2: case 10: return "HB";
        case 3: case 4: case 5: case 6: case 11: case 12:
        case 17: case 18: case 19: case 20: return "AB";
        case 7: case 8: case 13: case 14: case 15: case 16: return "AHB";
        default: return {};
      }
    case kClonalDesign: return (type == 1 || type == 2) ? "ABCD" : std::string_view{};
    case kFourWayDesign: return (type == 1 || type == 2) ? "ABCD" : std::string_view{};
    case kEightWayDesign: return (type == 3 || type == 4) ? "ABCDEFGH" : std::string_view{};
    default: return {};
  }
}

std::string_view MarginalLetters(int32_t design, int32_t type) {
  if (design == kBiparentalDesign && !StateLetters(design, type).empty()) return "AHB";
  return StateLetters(design, type);
}

int32_t StateOf(std::string_view states, char letter) {
  const std::size_t at = states.find(letter);
  return at == std::string_view::npos ? -1 : static_cast<int32_t>(at);
}

int32_t FlankPairIndex(int32_t design, int32_t num_states, int32_t left, int32_t right) {
  if (design == kClonalDesign) {
    // A clonal state is (first parent's allele, second parent's allele) = 2 a + c. The pair
    // index joins the first parent's two alleles (major) with the second parent's (minor).
    const int32_t first = 2 * (left / 2) + right / 2;
    const int32_t second = 2 * (left % 2) + right % 2;
    return 4 * first + second;
  }
  return left * num_states + right;
}

bool IndexTriple(int32_t design, int32_t type, char left, char middle, char right,
                 TripleIndex& index) {
  const std::string_view states = StateLetters(design, type);
  const int32_t l = StateOf(states, left);
  const int32_t m = StateOf(states, middle);
  const int32_t r = StateOf(states, right);
  if (l < 0 || m < 0 || r < 0) return false;
  const int32_t n = static_cast<int32_t>(states.size());
  index.pair = FlankPairIndex(design, n, l, r);
  index.middle = m;
  return true;
}

}  // namespace gae
