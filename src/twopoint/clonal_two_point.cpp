#include "twopoint/clonal_two_point.h"

#include <cmath>
#include <utility>

namespace gae {

namespace {

// Cells are indexed 1..16 as in the tables; N(k) reads cell k.
struct Cells {
  const float* c;
  float operator()(int k) const { return c[k - 1]; }
};

float Fold(float x) { return 0.5f - std::fabs(0.5f - x); }

// A parent's non-recombinant and recombinant counts.
struct Binomial {
  float non = 0.0f, rec = 0.0f;
  float Rate() const { return rec / (non + rec); }
};

// L(S; 1 - r, r) - L(S; 1/2, 1/2), each over the cells of positive probability.
float BinomialLod(Binomial s, float r) {
  float l = 0.0f;
  if (1.0f - r > 0.0f) l += s.non * std::log10(1.0f - r);
  if (r > 0.0f) l += s.rec * std::log10(r);
  const float half = std::log10(0.5f);
  const float l0 = s.non * half + s.rec * half;
  return l - l0;
}

// Sum of N(k) log10 P(k) over the cells of positive probability, cell order. A cell without
// individuals adds nothing whatever its probability, so it is passed over.
float LogLik(Cells n, const float p[16]) {
  float l = 0.0f;
  for (int k = 1; k <= 16; ++k) {
    if (n(k) != 0.0f && p[k - 1] > 0.0f) l += n(k) * std::log10(p[k - 1]);
  }
  return l;
}

// Class probabilities of the category pairs (1, 4) and (1, 5). In (1, 5) the second marker's
// allele A sits on the second parent's D, so the second parent's frequency enters the other
// way round.
void TableOneFour(float a, float b, bool five, float p[16]) {
  const float a1 = 1.0f - a, b1 = five ? b : 1.0f - b, bb = five ? 1.0f - b : b;
  for (int k = 0; k < 16; ++k) p[k] = 0.0f;
  p[0] = a1 * b1 / 4.0f;
  p[1] = (a1 * bb + a * b1) / 4.0f;
  p[2] = a1 * bb / 4.0f;
  p[3] = (a1 * b1 + a * bb) / 4.0f;
  p[5] = a * bb / 4.0f;
  p[7] = a * b1 / 4.0f;
  p[8] = a * b1 / 4.0f;
  p[9] = (a * bb + a1 * b1) / 4.0f;
  p[10] = a * bb / 4.0f;
  p[11] = (a * b1 + a1 * bb) / 4.0f;
  p[13] = a1 * bb / 4.0f;
  p[15] = a1 * b1 / 4.0f;
}

// The two mixtures of a pair of markers with the same two alleles in both parents: Q1 when
// the homologues carry them in the same phase in both parents, Q2 when in opposite phases.
void TableMixture(float a, float b, bool second, float p[16]) {
  const float a1 = 1.0f - a, b1 = 1.0f - b;
  for (int k = 0; k < 16; ++k) p[k] = 0.0f;
  const float ends = second ? a1 * b / 4.0f : a1 * b1 / 4.0f;
  const float mixed = second ? (a1 * b1 + a * b) / 4.0f : (a1 * b + a * b1) / 4.0f;
  const float middle = second ? (a1 * b + a * b1) / 2.0f : (a1 * b1 + a * b) / 2.0f;
  const float cross = second ? a * b1 / 4.0f : a * b / 4.0f;
  p[0] = p[15] = ends;
  p[1] = p[2] = p[7] = p[11] = mixed;
  p[3] = middle;
  p[5] = p[10] = cross;
}

// The combined standard error of a pair with a mixture in its classes; `spread` is 3 for the
// first solutions and 4 for the second.
float MixtureStdErr(float r, float n, float spread) {
  return std::sqrt((r * (1.0f - r) * (1.0f - 2.0f * r + 2.0f * r * r) / n) * 0.5f /
                   (1.0f - spread * r + spread * r * r));
}

// The rows of the dispatch whose two parents are read as binomials.
void Binomials(Binomial s, Binomial t, ClonalPairResult& out) {
  out.rec_a = s.Rate();
  out.rec_b = t.Rate();
  out.lod_a = BinomialLod(s, out.rec_a);
  out.lod_b = BinomialLod(t, out.rec_b);
  out.lod_c = out.lod_a + out.lod_b;
}

float SimpleSe(float r, float n, float factor) { return std::sqrt(factor * r * (1.0f - r) / n); }

void CategoryOneOne(Cells c, float n, ClonalPairResult& out) {
  const Binomial s{c(1) + c(2) + c(3) + c(4) + c(13) + c(14) + c(15) + c(16),
                   c(5) + c(6) + c(7) + c(8) + c(9) + c(10) + c(11) + c(12)};
  const Binomial t{c(1) + c(4) + c(5) + c(8) + c(9) + c(12) + c(13) + c(16),
                   c(2) + c(3) + c(6) + c(7) + c(10) + c(11) + c(14) + c(15)};
  Binomials(s, t, out);
  out.rec_c = 0.5f * (Fold(out.rec_a) + Fold(out.rec_b));
  out.se_a = SimpleSe(out.rec_a, n, 1.0f);
  out.se_b = SimpleSe(out.rec_b, n, 1.0f);
  out.se_c = std::sqrt(out.rec_c * (1.0f - out.rec_c) * 0.5f / n);
}

// Only the second parent informs the pair: the first parent's counts are split evenly, which
// makes rA exactly 1/2 and its LOD 0.
void SecondParentOnly(Binomial t, float n, float factor, ClonalPairResult& out) {
  Binomials(Binomial{0.5f * n, 0.5f * n}, t, out);
  out.rec_c = Fold(out.rec_b);
  out.se_b = SimpleSe(out.rec_b, n, factor);
  out.se_c = out.se_b;
}

void FirstParentOnly(Binomial s, float n, float factor, ClonalPairResult& out) {
  Binomials(s, Binomial{0.5f * n, 0.5f * n}, out);
  out.rec_c = Fold(out.rec_a);
  out.se_a = SimpleSe(out.rec_a, n, factor);
  out.se_c = out.se_a;
}

// The sums of the combined likelihood of an ABCD marker against one with two alleles in both
// parents, under each reading of the second marker's phases.
struct Sums {
  float a, b, c;
};
Sums SumsU(Cells n) {  // U, V, W
  return {n(1) + n(4) + n(6) + 2.0f * n(8) + 2.0f * n(9) + n(10) + n(11) + n(16),
          n(1) + 2.0f * n(3) + n(4) + n(6) + n(10) + n(11) + 2.0f * n(14) + n(16), n(2) + n(12)};
}
Sums SumsX(Cells n) {  // X, Y, Z
  return {n(2) + n(3) + 2.0f * n(6) + n(8) + n(9) + 2.0f * n(11) + n(12) + n(14),
          2.0f * n(1) + n(2) + n(3) + n(8) + n(9) + n(12) + n(14) + 2.0f * n(16), n(4) + n(10)};
}

void CategoryOneFour(bool clonal, bool five, Cells c, float n, ClonalPairResult& out) {
  const Binomial s{c(1) + c(3) + c(14) + c(16), c(6) + c(8) + c(9) + c(11)};
  Binomial t{c(1) + c(8) + c(9) + c(16), c(3) + c(6) + c(11) + c(14)};
  if (five) std::swap(t.non, t.rec);
  Binomials(s, t, out);
  out.se_a = SimpleSe(out.rec_a, n, 2.0f);
  out.se_b = SimpleSe(out.rec_b, n, 2.0f);
  float p[16], p0[16];
  TableOneFour(out.rec_a, out.rec_b, five, p);
  TableOneFour(0.5f, 0.5f, five, p0);
  out.lod_c = LogLik(c, p) - LogLik(c, p0);

  const float r0 = 0.5f * (Fold(out.rec_a) + Fold(out.rec_b));
  const Sums first = five ? SumsU(c) : SumsX(c);
  out.rec_c = ClonalIteration(r0, first.a, first.b, first.c, false);
  out.se_c = MixtureStdErr(out.rec_c, n, 3.0f);
  if (!clonal || five) return;
  // The clonal AB=CD marker does not say which of its alleles sits with C: the parental phases
  // just found pick the sums that read it the right way, and the combined frequency is solved
  // again with them.
  const bool a_low = out.rec_a <= 0.5f, b_low = out.rec_b < 0.5f;
  if (a_low && b_low) return;
  const Sums u = SumsU(c), x = SumsX(c);
  Sums again{};
  if (a_low) again = u;
  else if (b_low) again = Sums{u.b, u.a, u.c};
  else again = Sums{x.b, x.a, x.c};
  out.rec_c = ClonalIteration(r0, again.a, again.b, again.c, false);
  out.se_c = MixtureStdErr(out.rec_c, n, 3.0f);
}

// Both parents in the same phase: one frequency shared by the two parents.
ClonalPairResult FirstSolution(bool five, Cells c, float n) {
  ClonalPairResult out;
  const float x1 = 1.0f - std::sqrt(2.0f * (c(1) + c(16)) / n);
  const float x2 = (0.5f * c(2) + 0.5f * c(3) + 2.0f * c(6) + 0.5f * c(8) + 2.0f * c(11) +
                    0.5f * c(12)) / n;
  const float r0 = 0.5f * (x1 + x2);
  const float a = c(2) + c(3) + 2.0f * c(6) + c(8) + 2.0f * c(11) + c(12);
  // For two A=DB=C markers the same sum stands in both terms; the estimator has always done so.
  const float b = five ? a : 2.0f * c(1) + c(2) + c(3) + c(8) + c(12) + 2.0f * c(16);
  const float r = ClonalIteration(r0, a, b, c(4), true);
  out.rec_a = out.rec_b = r;
  out.rec_c = Fold(r);
  out.se_c = MixtureStdErr(out.rec_c, n, 3.0f);
  out.se_a = out.se_b = out.se_c;
  float p[16], p0[16];
  TableMixture(r, r, false, p);
  TableMixture(0.5f, 0.5f, false, p0);
  out.lod_c = LogLik(c, p) - LogLik(c, p0);
  out.lod_a = out.lod_b = out.lod_c;
  return out;
}

// The parents in opposite phases: the classes only give r (1 - r), so r is the smaller root.
ClonalPairResult SecondSolution(Cells c, float n) {
  ClonalPairResult out;
  const float d = c(1) + c(4) + c(6) + c(11) + c(16);
  float r = 0.5f;
  if (!(d > n / 2.0f)) {
    r = 0.5f * (1.0f - std::sqrt(1.0f - 2.0f * d / n));
    out.se_c = MixtureStdErr(r, n, 4.0f);
  }
  float p[16], p0[16];
  TableMixture(r, r, true, p);
  TableMixture(0.5f, 0.5f, true, p0);
  out.lod_c = LogLik(c, p) - LogLik(c, p0);
  out.rec_a = out.rec_b = out.rec_c = r;
  out.lod_a = out.lod_b = out.lod_c;
  out.se_a = out.se_b = out.se_c;
  return out;
}

void Dispatch(bool clonal, int first, int second, Cells c, float n, ClonalPairOutcome& outcome) {
  ClonalPairResult& out = outcome.result;
  const Binomial rows{c(1) + c(2) + c(3) + c(4) + c(13) + c(14) + c(15) + c(16),
                      c(5) + c(6) + c(7) + c(8) + c(9) + c(10) + c(11) + c(12)};
  const Binomial columns{c(1) + c(4) + c(5) + c(8) + c(9) + c(12) + c(13) + c(16),
                         c(2) + c(3) + c(6) + c(7) + c(10) + c(11) + c(14) + c(15)};
  // Category 5 exists in the double cross only.
  if (clonal && (first == 5 || second == 5)) return;
  switch (first * 10 + second) {
    case 11: CategoryOneOne(c, n, out); break;
    case 12: SecondParentOnly(columns, n, 1.0f, out); break;
    case 13: FirstParentOnly(rows, n, 1.0f, out); break;
    case 14: CategoryOneFour(clonal, false, c, n, out); break;
    case 15: CategoryOneFour(clonal, true, c, n, out); break;
    case 22: SecondParentOnly(columns, n, 2.0f, out); break;
    case 23: break;  // the two markers inform different parents: nothing to estimate
    case 24: SecondParentOnly(Binomial{c(1) + c(8), c(3) + c(6)}, n, 2.0f, out); break;
    case 25: SecondParentOnly(Binomial{c(3) + c(6), c(1) + c(8)}, n, 2.0f, out); break;
    case 33: FirstParentOnly(rows, n, 1.0f, out); break;
    case 34:
    case 35: FirstParentOnly(Binomial{c(1) + c(14), c(6) + c(9)}, n, 2.0f, out); break;
    case 44:
      if (!clonal) {
        out = FirstSolution(false, c, n);
        break;
      } else {
        // Same or opposite phases in the two parents: both readings are solved and the one
        // with the tighter linkage is kept. The opposite reading owes a draw either way.
        const ClonalPairResult same = FirstSolution(false, c, n);
        const ClonalPairResult opposite = SecondSolution(c, n);
        const bool take_second = std::isnan(same.rec_c) || std::isnan(opposite.rec_c) ||
                                 opposite.rec_c < same.rec_c;
        out = take_second ? opposite : same;
        outcome.draw = take_second ? ClonalDraw::kApply : ClonalDraw::kDiscard;
        break;
      }
    case 45: out = SecondSolution(c, n); break;
    case 55: out = FirstSolution(true, c, n); break;
    default: break;  // categories the wrong way round, or unknown: no estimate
  }
}

void Finish(ClonalPairResult& out) {
  if (out.lod_a < 0.0f) out.lod_a = 0.0f;
  if (out.lod_b < 0.0f) out.lod_b = 0.0f;
  if (out.lod_c < 0.0f) out.lod_c = 0.0f;
  out.phase = ClonalPhase(out.rec_a, out.rec_b);
}

}  // namespace

int ClonalClass(char letter) {
  switch (letter) {
    case 'A': case 'E': case 'G': case 'I': return 1;
    case 'B': case 'F': case 'J': return 2;
    case 'C': case 'H': return 3;
    case 'D': case 'K': return 4;
    default: return 0;
  }
}

int ClonalCell(int first_class, int second_class) {
  // Rows by the first parent's alleles at the two markers, columns by the second parent's.
  static constexpr int kCell[4][4] = {{1, 2, 5, 6}, {3, 4, 7, 8}, {9, 10, 13, 14}, {11, 12, 15, 16}};
  return kCell[first_class - 1][second_class - 1] - 1;
}

void CDMPairCounts(int64_t num_individuals, const char* first, const char* second, float cells[16]) {
  for (int k = 0; k < 16; ++k) cells[k] = 0.0f;
  for (int64_t i = 0; i < num_individuals; ++i) {
    const int a = ClonalClass(first[i]), b = ClonalClass(second[i]);
    if (a > 0 && b > 0) cells[ClonalCell(a, b)] += 1.0f;
  }
}

int32_t ClonalPhase(float rec_a, float rec_b) {
  const bool a_low = rec_a <= 0.5f, b_low = rec_b <= 0.5f;
  if (a_low) return b_low ? 1 : 2;
  return b_low ? 3 : 4;
}

float ClonalIteration(float r0, float a, float b, float c, bool clamp_high) {
  auto step = [&](float r) {
    const float q = 1.0f - 2.0f * r + 2.0f * r * r;
    const float g = a / r + b / (r - 1.0f) + c * (4.0f * r - 2.0f) / q;
    const float h = -a / (r * r) - b / ((r - 1.0f) * (r - 1.0f)) + 8.0f * c * r * (1.0f - r) / (q * q);
    return r - g / h;
  };
  float r = r0;
  float q = step(r);
  if (!(q > 0.0f)) q = 0.0001f;
  if (clamp_high && q >= 1.0f) q = 0.9999f;
  int counter = 0;
  while (std::fabs(q - r) > 0.0001f) {
    r = q;
    q = step(r);
    ++counter;
    if (counter > 100) break;
    if (q < 0.0f) {
      q = 0.0f;
      break;
    }
    if (q > 1.0f) {
      q = 0.5f;
      break;
    }
  }
  if (counter > 100 || std::isnan(q)) return 0.5f;
  return q;
}

ClonalPairOutcome CDMPairDeferred(bool clonal, int first_category, int second_category,
                                  const float cells[16]) {
  ClonalPairOutcome outcome;
  const Cells c{cells};
  float n = 0.0f;
  for (int k = 1; k <= 16; ++k) n += c(k);
  if (n < 1.0f) return outcome;  // no common individual: the phase stays unset
  Dispatch(clonal, first_category, second_category, c, n, outcome);
  Finish(outcome.result);
  return outcome;
}

void SettleClonalDraw(ClonalPairOutcome& outcome, float u) {
  if (outcome.draw == ClonalDraw::kApply) {
    // The data cannot tell which parent has which phase: the draw assigns them.
    ClonalPairResult& out = outcome.result;
    const float r = out.rec_c;
    out.rec_a = u <= 0.5f ? r : 1.0f - r;
    out.rec_b = u <= 0.5f ? 1.0f - r : r;
    out.phase = ClonalPhase(out.rec_a, out.rec_b);
  }
  outcome.draw = ClonalDraw::kNone;
}

ClonalPairResult CDMPairClonal(int first_category, int second_category, const float cells[16],
                               UniformStream& random) {
  ClonalPairOutcome outcome = CDMPairDeferred(true, first_category, second_category, cells);
  if (outcome.draw != ClonalDraw::kNone) SettleClonalDraw(outcome, random.Next());
  return outcome.result;
}

ClonalPairResult CDMPairDoubleCross(int first_category, int second_category, const float cells[16]) {
  return CDMPairDeferred(false, first_category, second_category, cells).result;
}

}  // namespace gae
