// F3 (type 8): one more generation of selfing after the F2, so an individual's two-locus
// genotype has passed through two rounds of meiosis and the probabilities reach the fourth
// power of r.
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// The recurring class probabilities of the F3 with their first two derivatives.
template <class Real>
struct F3Terms {
  Real c;
  Real e, e1, e2;  // E = c/4 + c^4/8 + r^4/8
  Real f, f1, f2;  // F = r/4 + r^2 c^2/4
  Real gg, g1, g2;  // G = r/4 + r c (2 - r + r^2)/4
  Real t, t1, t2;  // r c T / 2 with T = 1 - r + r^2
  Real q, q1, q2;  // Q = r + r^2 - 2 r^3 + r^4

  explicit F3Terms(Real r) : c(1 - r) {
    const Real big_t = 1 - r + Sq(r);
    e = c / 4 + Quart(c) / 8 + Quart(r) / 8;
    e1 = -0.25f - Cube(c) / 2 + Cube(r) / 2;
    e2 = 1.5f * Sq(c) + 1.5f * Sq(r);
    f = r / 4 + Sq(r) * Sq(c) / 4;  // r^2 c^2 = r^2 - 2 r^3 + r^4
    f1 = 0.25f + (2 * r - 6 * Sq(r) + 4 * Cube(r)) / 4;
    f2 = (2 - 12 * r + 12 * Sq(r)) / 4;
    gg = r / 4 + r * c * (2 - r + Sq(r)) / 4;  // r c (2 - r + r^2) = 2r - 3r^2 + 2r^3 - r^4
    g1 = 0.25f + (2 - 6 * r + 6 * Sq(r) - 4 * Cube(r)) / 4;
    g2 = (-6 + 12 * r - 12 * Sq(r)) / 4;
    t = r * c * big_t / 2;  // = (r - 2r^2 + 2r^3 - r^4) / 2
    t1 = (1 - 4 * r + 6 * Sq(r) - 4 * Cube(r)) / 2;
    t2 = -2 + 6 * r - 6 * Sq(r);
    q = r + Sq(r) - 2 * Cube(r) + Quart(r);
    q1 = 1 + 2 * r - 6 * Sq(r) + 4 * Cube(r);
    q2 = 2 - 12 * r + 12 * Sq(r);
  }
};

}  // namespace

template <class Real>
void TwoPointModelF3(int pair_code, const float cells[9], Real r, Real* probs, Real* g, Real* h) {
  const F3Terms<Real> k(r);
  // 1/2 - r + 2r^2 - 2r^3 + r^4, the double heterozygote's share (halved) in the 112 layouts.
  const Real het = (0.5f - r + 2 * Sq(r) - 2 * Cube(r) + Quart(r)) / 2;
  const Real het1 = (-1 + 4 * r - 6 * Sq(r) + 4 * Cube(r)) / 2;
  const Real het2 = (4 - 12 * r + 12 * Sq(r)) / 2;
  const Real not_rec = (1.5f - k.q) / 4;
  // P5 of the all-dominant layouts: 1/2 - r/4 + c^4/8 + r^4/8.
  const Real dom5 = 0.5f - r / 4 + Quart(k.c) / 8 + Quart(r) / 8;
  const Real dom51 = -0.25f - Cube(k.c) / 2 + Cube(r) / 2;
  const Real dom52 = 1.5f * Sq(k.c) + 1.5f * Sq(r);
  const int code = CanonicalPairCode(pair_code);
  ClassModel<Real> m;
  switch (code) {
    case 11: {
      const Real mid = 1 - 2 * r + 2 * Sq(r);
      const Real mid1 = -2 + 4 * r;
      m.Set(1, k.e, k.e1, k.e2);
      m.Set(2, k.t, k.t1, k.t2);
      m.Set(3, k.f, k.f1, k.f2);
      m.Set(4, k.t, k.t1, k.t2);
      m.Set(5, Sq(mid) / 4, mid * mid1 / 2, (Sq(mid1) + 4 * mid) / 2);
      m.Set(6, k.t, k.t1, k.t2);
      m.Set(7, k.f, k.f1, k.f2);
      m.Set(8, k.t, k.t1, k.t2);
      m.Set(9, k.e, k.e1, k.e2);
      break;
    }
    case 112:
      m.Set(2, not_rec, -k.q1 / 4, -k.q2 / 4);
      m.Set(3, k.f, k.f1, k.f2);
      m.Set(5, het, het1, het2);
      m.Set(6, k.t, k.t1, k.t2);
      m.Set(8, k.gg, k.g1, k.g2);
      m.Set(9, k.e, k.e1, k.e2);
      break;
    case 110:
      m.Set(1, k.e, k.e1, k.e2);
      m.Set(2, k.gg, k.g1, k.g2);
      m.Set(4, k.t, k.t1, k.t2);
      m.Set(5, het, het1, het2);
      m.Set(7, k.f, k.f1, k.f2);
      m.Set(8, not_rec, -k.q1 / 4, -k.q2 / 4);
      break;
    case 1212:
      m.Set(5, dom5, dom51, dom52);
      m.Set(6, k.gg, k.g1, k.g2);
      m.Set(8, k.gg, k.g1, k.g2);
      m.Set(9, k.e, k.e1, k.e2);
      break;
    case 1210:
      m.Set(4, not_rec, -k.q1 / 4, -k.q2 / 4);
      m.Set(5, (1 + k.q) / 4, k.q1 / 4, k.q2 / 4);
      m.Set(7, k.f, k.f1, k.f2);
      m.Set(8, not_rec, -k.q1 / 4, -k.q2 / 4);
      break;
    case 1010:
      m.Set(1, k.e, k.e1, k.e2);
      m.Set(2, k.gg, k.g1, k.g2);
      m.Set(4, k.gg, k.g1, k.g2);
      m.Set(5, dom5, dom51, dom52);
      break;
    default:
      break;
  }
  if (code != 1210) {
    m.Finish(cells, probs, g, h);
    return;
  }
  // With a dominant and a recessive marker, h is defined as it stands below, since it steers
  // the iteration and sets the standard error: in the terms of cells 4, 8 and 5 the first
  // power of Q' stands where the exact second derivative has its square. g and the cell-7 term
  // are exact.
  m.Finish(cells, probs, g, nullptr);
  if (h == nullptr) return;
  const Real n48 = cells[3] + cells[7];
  const Real n5 = cells[4];
  const Real n7 = cells[6];
  const Real rest = 1.5f - k.q;
  const Real term48 = n48 * (-k.q1 - k.q2 * rest) / Sq(rest);
  const Real term5 = n5 * (k.q2 * (1 + k.q) - k.q1) / Sq(1 + k.q);
  const Real ratio7 = k.f1 / k.f;
  const Real term7 = n7 * (k.f2 / k.f - ratio7 * ratio7);
  *h = term48 + term5 + term7;
}

template void TwoPointModelF3<float>(int, const float*, float, float*, float*, float*);
template void TwoPointModelF3<double>(int, const float*, double, double*, double*, double*);

}  // namespace gae
