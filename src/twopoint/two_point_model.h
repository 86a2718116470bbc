// The likelihood models of the two-point engine: for each population type, the probabilities of
// the nine genotype classes of a marker pair at recombination frequency r, and the first (g)
// and second (h) derivatives in r of ln L = sum N(i) ln P(i).
//
// Each routine fills only what it is given a pointer for. Probabilities are written for the
// cells of the pair code only; the caller zeroes the others. The derivatives are analytic; a
// cell of the code whose probability is 0 makes them NaN or infinite, whatever its count, which
// is how a closed-form estimate at the border ends with a standard error of 0.
//
// The routines are templates on the real type so that tests can evaluate the very same
// formulas in double precision; the engine itself uses only the float instantiations.
#pragma once

#include <limits>

namespace gae {

// Codes 121, 101 and 1012 arrive transposed and share the layouts of 112, 110 and 1210.
constexpr int CanonicalPairCode(int pair_code) {
  switch (pair_code) {
    case 121: return 112;
    case 101: return 110;
    case 1012: return 1210;
    default: return pair_code;
  }
}

// Integer powers the way the runtime's repeated squaring forms them, so that 32-bit results
// do not depend on a library pow.
template <class Real> inline Real Sq(Real x) { return x * x; }
template <class Real> inline Real Cube(Real x) { return Sq(x) * x; }
template <class Real> inline Real Quart(Real x) { return Sq(Sq(x)); }

// One class probability with its first two derivatives in r.
template <class Real>
struct ClassTerm {
  Real p, d1, d2;
};

// The class probabilities of one model at one r with their first two derivatives.
template <class Real>
struct ClassModel {
  Real p[9] = {};
  Real d1[9] = {};
  Real d2[9] = {};
  unsigned used = 0;  // bit k: cell k + 1 belongs to the pair code

  // `cell` is 1-based, as the cells are numbered everywhere in the engine.
  void Set(int cell, Real prob, Real first, Real second) {
    p[cell - 1] = prob;
    d1[cell - 1] = first;
    d2[cell - 1] = second;
    used |= 1u << (cell - 1);
  }
  void Set(int cell, const ClassTerm<Real>& t) { Set(cell, t.p, t.d1, t.d2); }
  bool Uses(int cell) const { return (used >> (cell - 1)) & 1u; }

  // The classes seen from the other parent: cell i takes cell 10 - i.
  ClassModel Mirrored() const {
    ClassModel m;
    for (int i = 1; i <= 9; ++i)
      if (Uses(10 - i)) m.Set(i, p[9 - i], d1[9 - i], d2[9 - i]);
    return m;
  }

  // Writes what is asked for. A model with no cells (an unknown pair code) leaves the
  // probabilities alone and gives NaN derivatives, so an iteration on it goes nowhere.
  void Finish(const float cells[9], Real* probs, Real* g, Real* h) const {
    if (probs != nullptr)
      for (int k = 0; k < 9; ++k)
        if ((used >> k) & 1u) probs[k] = p[k];
    if (g == nullptr && h == nullptr) return;
    if (used == 0) {
      if (g != nullptr) *g = std::numeric_limits<Real>::quiet_NaN();
      if (h != nullptr) *h = std::numeric_limits<Real>::quiet_NaN();
      return;
    }
    // d ln P / dr = P'/P and d2 ln P / dr2 = P''/P - (P'/P)^2, summed in cell order. The
    // quotients are formed for all nine cells at once (the unused ones are thrown away), which
    // lets the compiler divide several at a time; the sums keep their order.
    Real t[9], u[9];
    for (int k = 0; k < 9; ++k) {
      t[k] = d1[k] / p[k];
      u[k] = d2[k] / p[k] - t[k] * t[k];
    }
    Real sum_g = 0;
    Real sum_h = 0;
    for (int k = 0; k < 9; ++k) {
      if (!((used >> k) & 1u)) continue;
      const Real n = cells[k];
      sum_g += n * t[k];
      sum_h += n * u[k];
    }
    if (g != nullptr) *g = sum_g;
    if (h != nullptr) *h = sum_h;
  }
};

// Single-layout models; the pair code does not enter.
template <class Real>
void TwoPointModelP1BC1F1(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP2BC1F1(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelF1DH(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelRIL(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP1BC1RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP2BC1RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP1BC2F1(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP2BC2F1(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP1BC2RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP2BC2RIL(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP1BC1DH(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP2BC1DH(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP1BC2DH(const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP2BC2DH(const float cells[9], Real r, Real* probs, Real* g, Real* h);

// Models whose layout depends on the pair code (types 7, 8, 13 to 16).
template <class Real>
void TwoPointModelF2(int pair_code, const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelF3(int pair_code, const float cells[9], Real r, Real* probs, Real* g, Real* h);
template <class Real>
void TwoPointModelP1BC1F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h);
template <class Real>
void TwoPointModelP2BC1F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h);
template <class Real>
void TwoPointModelP1BC2F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h);
template <class Real>
void TwoPointModelP2BC2F2(int pair_code, const float cells[9], Real r, Real* probs, Real* g,
                          Real* h);

// The model of a population type. An unknown type fills no probability and gives NaN
// derivatives.
template <class Real>
void TwoPointModel(int population_type, int pair_code, const float cells[9], Real r, Real* probs,
                   Real* g, Real* h);

}  // namespace gae
