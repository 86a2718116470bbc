// F2 (type 7): both gametes of the F1 may recombine. With a dominant or recessive marker some
// genotypes merge, and the pair code says which.
#include "twopoint/two_point_model.h"

namespace gae {

template <class Real>
void TwoPointModelF2(int pair_code, const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  // The recurring class probabilities with their derivatives.
  const Real both_parental = Sq(c) / 4;                // d1 -c/2, d2 1/2
  const Real one_recombinant = r * c / 2;              // d1 (1 - 2r)/2, d2 -1
  const Real both_recombinant = Sq(r) / 4;             // d1 r/2, d2 1/2
  const Real not_both_parental = r * (2 - r) / 4;      // d1 c/2, d2 -1/2
  const Real not_both_recombinant = (1 - Sq(r)) / 4;   // d1 -r/2, d2 -1/2
  const Real hetero_pair = (1 - r + Sq(r)) / 2;        // d1 (2r - 1)/2, d2 1
  const Real one_rec_d1 = (1 - 2 * r) / 2;
  ClassModel<Real> m;
  switch (CanonicalPairCode(pair_code)) {
    case 11:
      m.Set(1, both_parental, -c / 2, 0.5f);
      m.Set(2, one_recombinant, one_rec_d1, -1);
      m.Set(3, both_recombinant, r / 2, 0.5f);
      m.Set(4, one_recombinant, one_rec_d1, -1);
      m.Set(5, (1 - 2 * r + 2 * Sq(r)) / 2, 2 * r - 1, 2);
      m.Set(6, one_recombinant, one_rec_d1, -1);
      m.Set(7, both_recombinant, r / 2, 0.5f);
      m.Set(8, one_recombinant, one_rec_d1, -1);
      m.Set(9, both_parental, -c / 2, 0.5f);
      break;
    case 112:
      m.Set(2, not_both_recombinant, -r / 2, -0.5f);
      m.Set(3, both_recombinant, r / 2, 0.5f);
      m.Set(5, hetero_pair, (2 * r - 1) / 2, 1);
      m.Set(6, one_recombinant, one_rec_d1, -1);
      m.Set(8, not_both_parental, c / 2, -0.5f);
      m.Set(9, both_parental, -c / 2, 0.5f);
      break;
    case 110:
      m.Set(1, both_parental, -c / 2, 0.5f);
      m.Set(2, not_both_parental, c / 2, -0.5f);
      m.Set(4, one_recombinant, one_rec_d1, -1);
      m.Set(5, hetero_pair, (2 * r - 1) / 2, 1);
      m.Set(7, both_recombinant, r / 2, 0.5f);
      m.Set(8, not_both_recombinant, -r / 2, -0.5f);
      break;
    case 1212:
      m.Set(5, both_parental + 0.5f, -c / 2, 0.5f);
      m.Set(6, not_both_parental, c / 2, -0.5f);
      m.Set(8, not_both_parental, c / 2, -0.5f);
      m.Set(9, both_parental, -c / 2, 0.5f);
      break;
    case 1210:
      m.Set(4, not_both_recombinant, -r / 2, -0.5f);
      m.Set(5, both_recombinant + 0.5f, r / 2, 0.5f);
      m.Set(7, both_recombinant, r / 2, 0.5f);
      m.Set(8, not_both_recombinant, -r / 2, -0.5f);
      break;
    case 1010:
      m.Set(1, both_parental, -c / 2, 0.5f);
      m.Set(2, not_both_parental, c / 2, -0.5f);
      m.Set(4, not_both_parental, c / 2, -0.5f);
      m.Set(5, both_parental + 0.5f, -c / 2, 0.5f);
      break;
    default:
      break;
  }
  m.Finish(cells, probs, g, h);
}

template void TwoPointModelF2<float>(int, const float*, float, float*, float*, float*);
template void TwoPointModelF2<double>(int, const float*, double, double*, double*, double*);

}  // namespace gae
