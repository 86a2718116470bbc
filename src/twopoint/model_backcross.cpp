// Backcross progeny (types 1, 2, 9, 10). A backcross to P1 shows only P1 and F1 genotypes, so
// its classes lie in rows and columns 1 and 2; a backcross to P2 in rows and columns 2 and 3,
// the mirror image: the recurrent parent's class moves from cell 1 to cell 9 and the mixed
// classes from cells 2 and 4 to cells 6 and 8.
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

template <class Real>
ClassModel<Real> Backcross(ClassTerm<Real> recurrent, ClassTerm<Real> mixed,
                           ClassTerm<Real> heterozygous, bool to_p2) {
  ClassModel<Real> m;
  m.Set(to_p2 ? 9 : 1, recurrent);
  m.Set(to_p2 ? 6 : 2, mixed);
  m.Set(to_p2 ? 8 : 4, mixed);
  m.Set(5, heterozygous);
  return m;
}

template <class Real>
ClassModel<Real> FirstBackcross(Real r, bool to_p2) {
  const Real c = 1 - r;
  const ClassTerm<Real> parental{c / 2, -0.5f, 0};
  return Backcross(parental, ClassTerm<Real>{r / 2, 0.5f, 0}, parental, to_p2);
}

// Second backcross: the donor's haplotype must pass two meioses intact, hence (1 - r)^2.
template <class Real>
ClassModel<Real> SecondBackcross(Real r, bool to_p2) {
  const Real c = 1 - r;
  return Backcross(ClassTerm<Real>{Sq(c) / 4 + 0.5f, -c / 2, 0.5f},
                   ClassTerm<Real>{r / 2 - Sq(r) / 4, 0.5f - r / 2, -0.5f},
                   ClassTerm<Real>{Sq(c) / 4, -c / 2, 0.5f}, to_p2);
}

}  // namespace

template <class Real>
void TwoPointModelP1BC1F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  FirstBackcross(r, false).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP2BC1F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  FirstBackcross(r, true).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP1BC2F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  SecondBackcross(r, false).Finish(cells, probs, g, h);
}

// The h of the second backcross to P2, which sets the standard error of this type, is defined
// as it stands below and is not the exact second derivative: with u = (1 - r)^2 it is the P1
// expression with N5 and N9 standing where that one has N1 and N5, although here P5, not P9,
// is the u/4 cell.
template <class Real>
void TwoPointModelP2BC2F1(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  SecondBackcross(r, true).Finish(cells, probs, g, nullptr);
  if (h == nullptr) return;
  const Real u = Sq(1 - r);
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
