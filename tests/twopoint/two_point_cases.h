// Population types and pair codes for the two-point tests, and expected tables.
#pragma once

#include <string>
#include <vector>

#include "twopoint/two_point_model.h"

namespace gae::testing {

struct TypeCode {
  int type;
  int code;
};

inline bool MultiCodeType(int type) { return type == 7 || type == 8 || (type >= 13 && type <= 16); }

// Every population type with every pair code it allows: dominant and recessive markers exist
// only where selfing shows all three genotypes (types 7, 8, 13 to 16); the others see code 11.
inline std::vector<TypeCode> AllTypeCodes() {
  std::vector<TypeCode> out;
  for (int type = 1; type <= 20; ++type) {
    if (!MultiCodeType(type)) {
      out.push_back({type, 11});
      continue;
    }
    for (int code : {11, 112, 121, 110, 101, 1212, 1210, 1012, 1010}) out.push_back({type, code});
  }
  return out;
}

inline std::string Name(const TypeCode& tc) {
  return "type " + std::to_string(tc.type) + " code " + std::to_string(tc.code);
}

// The class probabilities at r in double precision, all nine cells (zero outside the code).
inline void Probabilities(const TypeCode& tc, double r, double p[9]) {
  for (int k = 0; k < 9; ++k) p[k] = 0.0;
  const float no_cells[9] = {};
  TwoPointModel<double>(tc.type, tc.code, no_cells, r, p, nullptr, nullptr);
}

// The table a population of n individuals shows on average at r, in the canonical layout.
inline void ExpectedTable(const TypeCode& tc, double r, double n, float cells[9]) {
  double p[9];
  Probabilities(tc, r, p);
  for (int k = 0; k < 9; ++k) cells[k] = static_cast<float>(p[k] * n);
}

}  // namespace gae::testing
