#include "input/population_ratios.h"

namespace gae {

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
