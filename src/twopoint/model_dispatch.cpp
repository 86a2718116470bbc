// The model of each population type.
#include <limits>

#include "twopoint/two_point_model.h"

namespace gae {

template <class Real>
void TwoPointModel(int population_type, int pair_code, const float cells[9], Real r, Real* probs,
                   Real* g, Real* h) {
  switch (population_type) {
    case 1: TwoPointModelP1BC1F1(cells, r, probs, g, h); return;
    case 2: TwoPointModelP2BC1F1(cells, r, probs, g, h); return;
    case 3: TwoPointModelF1DH(cells, r, probs, g, h); return;
    case 4: TwoPointModelRIL(cells, r, probs, g, h); return;
    case 5: TwoPointModelP1BC1RIL(cells, r, probs, g, h); return;
    case 6: TwoPointModelP2BC1RIL(cells, r, probs, g, h); return;
    case 7: TwoPointModelF2(pair_code, cells, r, probs, g, h); return;
    case 8: TwoPointModelF3(pair_code, cells, r, probs, g, h); return;
    case 9: TwoPointModelP1BC2F1(cells, r, probs, g, h); return;
    case 10: TwoPointModelP2BC2F1(cells, r, probs, g, h); return;
    case 11: TwoPointModelP1BC2RIL(cells, r, probs, g, h); return;
    case 12: TwoPointModelP2BC2RIL(cells, r, probs, g, h); return;
    case 13: TwoPointModelP1BC1F2(pair_code, cells, r, probs, g, h); return;
    case 14: TwoPointModelP2BC1F2(pair_code, cells, r, probs, g, h); return;
    case 15: TwoPointModelP1BC2F2(pair_code, cells, r, probs, g, h); return;
    case 16: TwoPointModelP2BC2F2(pair_code, cells, r, probs, g, h); return;
    case 17: TwoPointModelP1BC1DH(cells, r, probs, g, h); return;
    case 18: TwoPointModelP2BC1DH(cells, r, probs, g, h); return;
    case 19: TwoPointModelP1BC2DH(cells, r, probs, g, h); return;
    case 20: TwoPointModelP2BC2DH(cells, r, probs, g, h); return;
    default:
      if (g != nullptr) *g = std::numeric_limits<Real>::quiet_NaN();
      if (h != nullptr) *h = std::numeric_limits<Real>::quiet_NaN();
      return;
  }
}

template void TwoPointModel<float>(int, int, const float*, float, float*, float*, float*);
template void TwoPointModel<double>(int, int, const float*, double, double*, double*, double*);

}  // namespace gae
