// Selfed backcross progeny (types 13 to 16): the F2 of a BC1F1 or BC2F1 plant. The recurrent
// parent's genotype dominates the table. Progeny of backcrosses to P2 are the mirror of those
// to P1: cell i of one takes the formula of cell 10 - i of the other, and the pair codes cross
// (112 with 110, 1212 with 1010). A dominant-recessive pair has no mirror image in its cells;
// there cells 4 and 8 change places and cells 5 and 7 stay.
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

template <class Real>
ClassModel<Real> P1BC1F2Classes(int code, Real r) {
  const Real c = 1 - r;
  const Real big_t = 1 - r + Sq(r);
  // A = 1/2 - r/4 + c^3/8
  const Real a = 0.5f - r / 4 + Cube(c) / 8, a1 = -0.25f - 3 * Sq(c) / 8, a2 = 3 * c / 4;
  // B = r/8 + r^2 c/8, with r^2 c = r^2 - r^3
  const Real b = r / 8 + Sq(r) * c / 8, b1 = 0.125f + (2 * r - 3 * Sq(r)) / 8, b2 = (2 - 6 * r) / 8;
  // C = c^2 (1 + r)/8 = (1 - r - r^2 + r^3)/8
  const Real cc = Sq(c) * (1 + r) / 8, c1 = (-1 - 2 * r + 3 * Sq(r)) / 8, c2 = (-2 + 6 * r) / 8;
  // D = r/8 + r c (2 - r)/8, with r c (2 - r) = 2r - 3r^2 + r^3
  const Real d = r / 8 + r * c * (2 - r) / 8, dd1 = 0.125f + (2 - 6 * r + 3 * Sq(r)) / 8,
             dd2 = (-6 + 6 * r) / 8;
  // r c^2 / 4 with r c^2 = r - 2r^2 + r^3, and r/4 + r c^2/4
  const Real rc2 = r * Sq(c) / 4, rc21 = (1 - 4 * r + 3 * Sq(r)) / 4, rc22 = (-4 + 6 * r) / 4;
  const Real c3 = Cube(c) / 8, c31 = -3 * Sq(c) / 8, c32 = 3 * c / 4;
  ClassModel<Real> m;
  switch (code) {
    case 11:
      m.Set(1, a, a1, a2);
      m.Set(2, r / 4 + r * Sq(c) / 4, 0.25f + rc21, rc22);
      m.Set(3, b, b1, b2);
      m.Set(4, r / 4 + r * Sq(c) / 4, 0.25f + rc21, rc22);
      // c (1 - 2r + 2r^2) = 1 - 3r + 4r^2 - 2r^3
      m.Set(5, c * (1 - 2 * r + 2 * Sq(r)) / 4, (-3 + 8 * r - 6 * Sq(r)) / 4, (8 - 12 * r) / 4);
      m.Set(6, rc2, rc21, rc22);
      m.Set(7, b, b1, b2);
      m.Set(8, rc2, rc21, rc22);
      m.Set(9, c3, c31, c32);
      break;
    case 112:
      m.Set(2, cc + 0.5f, c1, c2);
      m.Set(3, b, b1, b2);
      // r/4 + c T/4 with c T = 1 - 2r + 2r^2 - r^3
      m.Set(5, r / 4 + c * big_t / 4, 0.25f + (-2 + 4 * r - 3 * Sq(r)) / 4, (4 - 6 * r) / 4);
      m.Set(6, rc2, rc21, rc22);
      m.Set(8, d, dd1, dd2);
      m.Set(9, c3, c31, c32);
      break;
    case 110:
      m.Set(1, a, a1, a2);
      m.Set(2, 2 * r / 8 + d, 0.25f + dd1, dd2);
      m.Set(4, r / 4 + r * Sq(c) / 4, 0.25f + rc21, rc22);
      m.Set(5, c * big_t / 4, (-2 + 4 * r - 3 * Sq(r)) / 4, (4 - 6 * r) / 4);
      m.Set(7, b, b1, b2);
      m.Set(8, cc, c1, c2);
      break;
    case 1212:
      m.Set(5, Cube(c) / 8 + 0.75f, c31, c32);
      m.Set(6, d, dd1, dd2);
      m.Set(8, d, dd1, dd2);
      m.Set(9, c3, c31, c32);
      break;
    case 1210:
      m.Set(4, cc + 0.5f, c1, c2);
      // 3r/8 + c (r^2 + 2)/8 with c (r^2 + 2) = 2 - 2r + r^2 - r^3
      m.Set(5, 3 * r / 8 + c * (Sq(r) + 2) / 8, 0.375f + (-2 + 2 * r - 3 * Sq(r)) / 8,
            (2 - 6 * r) / 8);
      m.Set(7, b, b1, b2);
      m.Set(8, cc, c1, c2);
      break;
    case 1010:
      m.Set(1, a, a1, a2);
      m.Set(2, 2 * r / 8 + d, 0.25f + dd1, dd2);
      m.Set(4, 2 * r / 8 + d, 0.25f + dd1, dd2);
      m.Set(5, c / 4 + Cube(c) / 8, -0.25f + c31, c32);
      break;
    default:
      break;
  }
  return m;
}

template <class Real>
ClassModel<Real> P1BC2F2Classes(int code, Real r) {
  const Real c = 1 - r;
  const Real big_t = 1 - r + Sq(r);
  // A = c^2/8 + 5/8 + c^4/16
  const Real a = Sq(c) / 8 + 0.625f + Quart(c) / 16, a1 = -c / 4 - Cube(c) / 4,
             a2 = 0.25f + 0.75f * Sq(c);
  // K = c^3 (1 + r)/16
  const Real k = Cube(c) * (1 + r) / 16, k1 = (-3 * Sq(c) * (1 + r) + Cube(c)) / 16,
             k2 = (6 * c * (1 + r) - 6 * Sq(c)) / 16;
  // M = 3/16 - c^2/8 - c^4/16
  const Real mm = 0.1875f - Sq(c) / 8 - Quart(c) / 16, m1 = c / 4 + Cube(c) / 4,
             m2 = -0.25f - 0.75f * Sq(c);
  // c^2 T/8 with c^2 T = 1 - 3r + 4r^2 - 3r^3 + r^4
  const Real ct1 = (-3 + 8 * r - 9 * Sq(r) + 4 * Cube(r)) / 8, ct2 = (8 - 18 * r + 12 * Sq(r)) / 8;
  // r c^3/8
  const Real rc3 = r * Cube(c) / 8, rc31 = (Cube(c) - 3 * r * Sq(c)) / 8,
             rc32 = (-6 * Sq(c) + 6 * r * c) / 8;
  const Real c4 = Quart(c) / 16, c41 = -Cube(c) / 4, c42 = 0.75f * Sq(c);
  ClassModel<Real> m;
  switch (code) {
    case 11: {
      const Real cross = 0.0625f - (1 - Sq(r)) * Sq(c) / 16;  // (1 - r^2) c^2 = 1 - 2r + 2r^3 - r^4
      const Real cross1 = -(-2 + 6 * Sq(r) - 4 * Cube(r)) / 16;
      const Real cross2 = -(12 * r - 12 * Sq(r)) / 16;
      m.Set(1, a, a1, a2);
      m.Set(2, 0.125f - Sq(c) * big_t / 8, -ct1, -ct2);
      m.Set(3, cross, cross1, cross2);
      m.Set(4, 0.125f - Sq(c) * big_t / 8, -ct1, -ct2);
      // (1 - 2r + 2r^2) c^2 = 1 - 4r + 7r^2 - 6r^3 + 2r^4
      m.Set(5, (1 - 2 * r + 2 * Sq(r)) * Sq(c) / 8, (-4 + 14 * r - 18 * Sq(r) + 8 * Cube(r)) / 8,
            (14 - 36 * r + 24 * Sq(r)) / 8);
      m.Set(6, rc3, rc31, rc32);
      m.Set(7, cross, cross1, cross2);
      m.Set(8, rc3, rc31, rc32);
      m.Set(9, c4, c41, c42);
      break;
    }
    case 112:
      m.Set(2, k + 0.75f, k1, k2);
      m.Set(3, 0.0625f - k, -k1, -k2);
      m.Set(5, 0.125f - r * Cube(c) / 8, -rc31, -rc32);
      m.Set(6, rc3, rc31, rc32);
      m.Set(8, 0.0625f - Quart(c) / 16, -c41, -c42);
      m.Set(9, c4, c41, c42);
      break;
    case 110:
      m.Set(1, a, a1, a2);
      m.Set(2, mm, m1, m2);
      m.Set(4, 0.125f - Sq(c) * big_t / 8, -ct1, -ct2);
      m.Set(5, Sq(c) * big_t / 8, ct1, ct2);
      m.Set(7, 0.0625f - k, -k1, -k2);
      m.Set(8, k, k1, k2);
      break;
    case 1212:
      m.Set(5, Quart(c) / 16 + 0.875f, c41, c42);
      m.Set(6, 0.0625f - Quart(c) / 16, -c41, -c42);
      m.Set(8, 0.0625f - Quart(c) / 16, -c41, -c42);
      m.Set(9, c4, c41, c42);
      break;
    case 1210:
      m.Set(4, k + 0.75f, k1, k2);
      m.Set(5, 0.1875f - k, -k1, -k2);
      m.Set(7, 0.0625f - k, -k1, -k2);
      m.Set(8, k, k1, k2);
      break;
    case 1010:
      m.Set(1, a, a1, a2);
      m.Set(2, mm, m1, m2);
      m.Set(4, mm, m1, m2);
      m.Set(5, Sq(c) / 8 + Quart(c) / 16, -m1, -m2);
      break;
    default:
      break;
  }
  return m;
}

// The code of the P1 model whose cells, read backwards, give the P2 model's cells.
constexpr int CrossedPairCode(int code) {
  switch (code) {
    case 112: return 110;
    case 110: return 112;
    case 1212: return 1010;
    case 1010: return 1212;
    default: return code;
  }
}

template <class Real>
ClassModel<Real> MirrorOfP1(const ClassModel<Real>& p1, int code) {
  if (code != 1210) return p1.Mirrored();
  ClassModel<Real> m = p1;
  m.Set(4, p1.p[7], p1.d1[7], p1.d2[7]);
  m.Set(8, p1.p[3], p1.d1[3], p1.d2[3]);
  return m;
}

}  // namespace

template <class Real>
void TwoPointModelP1BC1F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h) {
  P1BC1F2Classes(CanonicalPairCode(pair_code), r).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP2BC1F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h) {
  const int code = CanonicalPairCode(pair_code);
  MirrorOfP1(P1BC1F2Classes(CrossedPairCode(code), r), code).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP1BC2F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h) {
  P1BC2F2Classes(CanonicalPairCode(pair_code), r).Finish(cells, probs, g, h);
}

template <class Real>
void TwoPointModelP2BC2F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h) {
  const int code = CanonicalPairCode(pair_code);
  MirrorOfP1(P1BC2F2Classes(CrossedPairCode(code), r), code).Finish(cells, probs, g, h);
}

#define GAE_INSTANTIATE(Real)                                                                \
  template void TwoPointModelP1BC1F2<Real>(int, const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP2BC1F2<Real>(int, const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP1BC2F2<Real>(int, const float*, Real, Real*, Real*, Real*); \
  template void TwoPointModelP2BC2F2<Real>(int, const float*, Real, Real*, Real*, Real*);
GAE_INSTANTIATE(float)
GAE_INSTANTIATE(double)
#undef GAE_INSTANTIATE

}  // namespace gae
