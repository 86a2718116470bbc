// Homozygous lines (types 3 to 6, 11, 12, 17 to 20): doubled haploids and recombinant inbred
// lines from F1 or from a backcross. Lines carry no heterozygote, so only the four corner
// cells 1, 3, 7 and 9 occur. Lines from a backcross to P2 are the mirror of those to P1: P1
// and P9 change places.
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// Cell 1 is the class of the recurrent parent (cell 9 for a backcross to P2), cells 3 and 7
// the recombinant classes, and the remaining corner the donor parent's class.
template <class Real>
ClassModel<Real> Corners(ClassTerm<Real> recurrent, ClassTerm<Real> recombinant,
                         ClassTerm<Real> donor, bool to_p2) {
  ClassModel<Real> m;
  const ClassTerm<Real> first = to_p2 ? donor : recurrent;
  const ClassTerm<Real> last = to_p2 ? recurrent : donor;
  m.Set(1, first);
  m.Set(3, recombinant);
  m.Set(7, recombinant);
  m.Set(9, last);
  return m;
}

// Selfing to homozygosity turns r into R = 2 r / (1 + 2 r), the chance that a line is
// recombinant. R' = 2 / W^2 and R'' = -8 / W^3 with W = 1 + 2 r.
template <class Real>
struct SelfedRec {
  Real w, big_r, d1, d2;
  explicit SelfedRec(Real r)
      : w(1 + 2 * r), big_r(2 * r / w), d1(2 / Sq(w)), d2(-8 / Cube(w)) {}
};

// Lines selfed from a first backcross: the chromosome is the backcross gamete's, recombined
// again on the way to homozygosity.
template <class Real>
void BC1Lines(const float cells[9], Real r, bool to_p2, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const SelfedRec<Real> s(r);
  const Real f = c * (1 - s.big_r);  // c (1 - R)
  const Real f1 = -(1 - s.big_r) - c * s.d1;
  const Real f2 = 2 * s.d1 - c * s.d2;
  const Real k1 = -s.big_r + c * s.d1;  // derivatives of c R
  const Real k2 = -2 * s.d1 + c * s.d2;
  const ClassTerm<Real> recurrent{f / 4 + 0.5f, f1 / 4, f2 / 4};
  const ClassTerm<Real> recombinant{r / 4 + c * s.big_r / 4, 0.25f + k1 / 4, k2 / 4};
  const ClassTerm<Real> donor{f / 4, f1 / 4, f2 / 4};
  Corners(recurrent, recombinant, donor, to_p2).Finish(cells, probs, g, h);
}

// Lines selfed from a second backcross. Their h, which sets the standard error of these types,
// is defined as it stands below: with y = (1 - r)^2 / W, it carries the chain-rule factors of
// R (R'^2 = 4 / W^4 and R'' = -8 / W^3), not those of y.
template <class Real>
void BC2Lines(const float cells[9], Real r, bool to_p2, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const SelfedRec<Real> s(r);
  const Real q = (1 - s.big_r) * Sq(c) / 8;
  const Real q1 = (-s.d1 * Sq(c) - 2 * c * (1 - s.big_r)) / 8;
  const Real q2 = (-s.d2 * Sq(c) + 4 * c * s.d1 + 2 * (1 - s.big_r)) / 8;
  const ClassTerm<Real> recurrent{q + 0.75f, q1, q2};
  const ClassTerm<Real> recombinant{0.125f - q, -q1, -q2};
  const ClassTerm<Real> donor{q, q1, q2};
  Corners(recurrent, recombinant, donor, to_p2).Finish(cells, probs, g, nullptr);
  if (h == nullptr) return;
  const Real y = Sq(c) / s.w;
  const Real u = to_p2 ? cells[8] : cells[0];
  const Real v = to_p2 ? cells[0] : cells[8];
  const Real n37 = cells[2] + cells[6];
  *h = (4 / Quart(s.w)) * (-u / Sq(y + 6) - n37 / Sq(y - 1) - v / Sq(y)) -
       (8 / Cube(s.w)) * (u / (y + 6) + n37 / (y - 1) + v / y);
}

// Doubled haploids of a first backcross: a gamete of the BC1F1 plant, itself from a gamete of
// the F1, so the donor's haplotype survives two meioses with probability (1 - r)^2 / 2.
template <class Real>
void BC1Haploids(const float cells[9], Real r, bool to_p2, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const ClassTerm<Real> recurrent{Sq(c) / 4 + 0.5f, -c / 2, 0.5f};
  const ClassTerm<Real> recombinant{r / 2 - Sq(r) / 4, 0.5f - r / 2, -0.5f};
  const ClassTerm<Real> donor{Sq(c) / 4, -c / 2, 0.5f};
  Corners(recurrent, recombinant, donor, to_p2).Finish(cells, probs, g, h);
}

template <class Real>
void BC2Haploids(const float cells[9], Real r, bool to_p2, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const ClassTerm<Real> recurrent{Cube(c) / 8 + 0.75f, -3 * Sq(c) / 8, 3 * c / 4};
  const ClassTerm<Real> recombinant{0.125f - Cube(c) / 8, 3 * Sq(c) / 8, -3 * c / 4};
  const ClassTerm<Real> donor{Cube(c) / 8, -3 * Sq(c) / 8, 3 * c / 4};
  Corners(recurrent, recombinant, donor, to_p2).Finish(cells, probs, g, h);
}

}  // namespace

template <class Real>
void TwoPointModelF1DH(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const Real c = 1 - r;
  const ClassTerm<Real> parental{c / 2, -0.5f, 0};
  Corners(parental, ClassTerm<Real>{r / 2, 0.5f, 0}, parental, false).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelRIL(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const SelfedRec<Real> s(r);
  const ClassTerm<Real> parental{(1 - s.big_r) / 2, -s.d1 / 2, -s.d2 / 2};
  const ClassTerm<Real> recombinant{s.big_r / 2, s.d1 / 2, s.d2 / 2};
  Corners(parental, recombinant, parental, false).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP1BC1RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC1Lines(cells, r, false, probs, g, h);
}
template <class Real>
void TwoPointModelP2BC1RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC1Lines(cells, r, true, probs, g, h);
}
template <class Real>
void TwoPointModelP1BC2RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC2Lines(cells, r, false, probs, g, h);
}
template <class Real>
void TwoPointModelP2BC2RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC2Lines(cells, r, true, probs, g, h);
}
template <class Real>
void TwoPointModelP1BC1DH(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC1Haploids(cells, r, false, probs, g, h);
}
template <class Real>
void TwoPointModelP2BC1DH(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC1Haploids(cells, r, true, probs, g, h);
}
template <class Real>
void TwoPointModelP1BC2DH(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC2Haploids(cells, r, false, probs, g, h);
}
template <class Real>
void TwoPointModelP2BC2DH(const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  BC2Haploids(cells, r, true, probs, g, h);
}

#define GAE_INSTANTIATE(Real)                                                           \
  template void TwoPointModelF1DH<Real>(const float*, Real, Real*, Real*, Real*);     \
  template void TwoPointModelRIL<Real>(const float*, Real, Real*, Real*, Real*);      \
  template void TwoPointModelP1BC1RIL<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP2BC1RIL<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP1BC2RIL<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP2BC2RIL<Real>(const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP1BC1DH<Real>(const float*, Real, Real*, Real*, Real*);  \
  template void TwoPointModelP2BC1DH<Real>(const float*, Real, Real*, Real*, Real*);  \
  template void TwoPointModelP1BC2DH<Real>(const float*, Real, Real*, Real*, Real*);  \
  template void TwoPointModelP2BC2DH<Real>(const float*, Real, Real*, Real*, Real*);
GAE_INSTANTIATE(float)
GAE_INSTANTIATE(double)
#undef GAE_INSTANTIATE

}  // namespace gae
