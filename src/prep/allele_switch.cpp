#include "prep/allele_switch.h"

#include "vocabulary/population.h"

namespace gae {

void SwitchAlleles(int32_t population_type, std::string& letters) {
  const bool to_p1 = BackcrossToP1(population_type), to_p2 = BackcrossToP2(population_type);
  for (char& c : letters) {
    if (to_p1) c = c == 'A' ? 'H' : c == 'H' ? 'A' : c;
    else if (to_p2) c = c == 'B' ? 'H' : c == 'H' ? 'B' : c;
    else c = c == 'A' ? 'B' : c == 'B' ? 'A' : c == 'D' ? 'R' : c == 'R' ? 'D' : c;
  }
}

int32_t SwitchedCategory(int32_t category) { return category == 12 ? 10 : category == 10 ? 12 : category; }

}  // namespace gae
