// Pair codes and the table of genotype classes of a marker pair.
#include "twopoint/two_point.h"

namespace gae {

namespace {

bool IsMarkerKind(int kind) { return kind == 1 || kind == 12 || kind == 10; }

// Row (or column) of a genotype letter: P1 type first, P2 type last. The two partial letters
// share the middle with the heterozygote: D (not P2) sits beside B, R (not P1) beside A, so a
// dominant marker fills rows 2 and 3 and a recessive one rows 1 and 2.
int ClassIndex(char letter) {
  switch (letter) {
    case 'A': return 0;
    case 'H':
    case 'D':
    case 'R': return 1;
    case 'B': return 2;
    default: return -1;
  }
}

}  // namespace

int PairCode(int first_kind, int second_kind) {
  // Both kinds have been validated by the marker reader; anything else names no estimator.
  if (!IsMarkerKind(first_kind) || !IsMarkerKind(second_kind)) return kUnknownPairCode;
  return first_kind * (second_kind == 1 ? 10 : 100) + second_kind;
}

void PairCounts(int num_individuals, const char* first, const char* second, float cells[9]) {
  for (int k = 0; k < 9; ++k) cells[k] = 0.0f;
  for (int i = 0; i < num_individuals; ++i) {
    const int row = ClassIndex(first[i]);
    const int col = ClassIndex(second[i]);
    if (row < 0 || col < 0) continue;
    cells[3 * row + col] += 1.0f;
  }
}

}  // namespace gae
