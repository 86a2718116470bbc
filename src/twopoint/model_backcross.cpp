// Backcross progeny (types 1, 2, 9, 10). A backcross to P1 shows only P1 and F1 genotypes, so
// its classes lie in rows and columns 1 and 2; a backcross to P2 in rows and columns 2 and 3.
#include "twopoint/two_point_model.h"

namespace gae {

template <class Real>
void TwoPointModelP1BC1F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  ClassModel<Real> m;
  m.Set(1, c / 2, -0.5f, 0);
  m.Set(2, r / 2, 0.5f, 0);
  m.Set(4, r / 2, 0.5f, 0);
  m.Set(5, c / 2, -0.5f, 0);
  m.Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP2BC1F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  ClassModel<Real> m;
  m.Set(5, c / 2, -0.5f, 0);
  m.Set(6, r / 2, 0.5f, 0);
  m.Set(8, r / 2, 0.5f, 0);
  m.Set(9, c / 2, -0.5f, 0);
  m.Finish(cells, probs, g, h);
}

// Second backcross: a class is parental at both markers with probability (1 - r)^2 per meiosis
// pair, hence the squares.
template <class Real>
void TwoPointModelP1BC2F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const Real mixed = r / 2 - Sq(r) / 4;
  const Real mixed_d1 = 0.5f - r / 2;
  ClassModel<Real> m;
  m.Set(1, Sq(c) / 4 + 0.5f, -c / 2, 0.5f);
  m.Set(2, mixed, mixed_d1, -0.5f);
  m.Set(4, mixed, mixed_d1, -0.5f);
  m.Set(5, Sq(c) / 4, -c / 2, 0.5f);
  m.Finish(cells, probs, g, h);
}

// The mirror of the second backcross to P1. Its h, which sets the standard error of this type,
// is defined as it stands below and is not the exact second derivative: with u = (1 - r)^2 it
// is the P1 expression with N5 and N9 standing where that one has N1 and N5, although here P5,
// not P9, is the u/4 cell.
template <class Real>
void TwoPointModelP2BC2F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const Real mixed = r / 2 - Sq(r) / 4;
  const Real mixed_d1 = 0.5f - r / 2;
  ClassModel<Real> m;
  m.Set(5, Sq(c) / 4, -c / 2, 0.5f);
  m.Set(6, mixed, mixed_d1, -0.5f);
  m.Set(8, mixed, mixed_d1, -0.5f);
  m.Set(9, Sq(c) / 4 + 0.5f, -c / 2, 0.5f);
  m.Finish(cells, probs, g, nullptr);
  if (h == nullptr) return;
  const Real u = Sq(c);
  const Real n5 = cells[4];
  const Real n68 = cells[5] + cells[7];
  const Real n9 = cells[8];
  *h = 4 * u * (-n5 / Sq(u + 2) - n68 / Sq(u - 1) - n9 / Sq(u)) +
       2 * (n5 / (u + 2) + n68 / (u - 1) + n9 / u);
}

#define GAE_INSTANTIATE(Real)                                                          \
  template void TwoPointModelP1BC1F1<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP2BC1F1<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP1BC2F1<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP2BC2F1<Real>(const float*, Real, Real*, Real*, Real*);
GAE_INSTANTIATE(float)
GAE_INSTANTIATE(double)
#undef GAE_INSTANTIATE

}  // namespace gae
