#include "support/literal_pure_line.h"

#include <cmath>
#include <vector>

namespace gae::testing {

namespace {

// Indices from 1 throughout, as the estimate is written.
bool In(const std::vector<int>& cells, int cell) {
  for (int c : cells)
    if (c == cell) return true;
  return false;
}

struct Table {
  int founders;
  std::vector<int> d0, d1, d2;  // the cells of the three named kinds
};

Table TableOf(int founders) {
  if (founders == 4) return {4, {1, 6, 11, 16}, {2, 5, 12, 15}, {}};
  return {8,
          {1, 10, 19, 28, 37, 46, 55, 64},
          {2, 9, 20, 27, 38, 45, 56, 63},
          {3, 4, 11, 12, 17, 18, 25, 26, 39, 40, 47, 48, 53, 54, 61, 62}};
}

int Digit(int founders, int32_t pattern, int k) {
  int32_t v = pattern;
  for (int j = k; j < founders; ++j) v /= 10;
  return v % 10;
}

float Clamp(float p) { return p > 1.0f ? 1.0f : (p < 0.0f ? 0.0f : p); }

float Chance(int type, const Table& t, int cell, float r) {
  const float c = 1.0f - r, w = 1.0f + 2.0f * r;
  const int kind = In(t.d0, cell) ? 0 : In(t.d1, cell) ? 1 : In(t.d2, cell) ? 2 : 3;
  float p = 0.0f;
  switch (type) {
    case 1: p = kind == 0 ? c * c / 4.0f : kind == 1 ? r * c / 4.0f : r / 8.0f; break;
    case 2: p = kind == 0 ? 0.25f - 3.0f * r / 8.0f : r / 8.0f; break;
    case 3:
      p = kind == 0 ? c * c * c / 8.0f : kind == 1 ? r * (c * c) / 8.0f : kind == 2 ? r * c / 16.0f : r / 32.0f;
      break;
    default:
      p = kind == 0 ? c * c / (8.0f * w) : kind == 1 ? r * c / (8.0f * w) : r / (16.0f * w);
      break;
  }
  return Clamp(p);
}

float Term(float count, float weight) { return weight > 0.0f ? count * std::log10(weight) : 0.0f; }

}  // namespace

PureLineEstimate LiteralPureLineTable(int type, int32_t p1, int32_t p2, const float* cells) {
  const int f = type <= 2 ? 4 : 8, nc = f * f;
  const Table t = TableOf(f);
  std::vector<float> n(nc + 1, 0.0f), q(nc + 1, 0.0f), p(nc + 1, 0.0f);
  for (int c = 1; c <= nc; ++c) n[c] = cells[c - 1];

  // Classes: columns of founders alike at the second marker, then rows alike at the first.
  std::vector<int> cls(nc + 1);
  for (int c = 1; c <= nc; ++c) cls[c] = c;
  for (int j = 1; j <= f; ++j)
    for (int k = j + 1; k <= f; ++k)
      if (Digit(f, p2, j) == Digit(f, p2, k))
        for (int a = 1; a <= f; ++a) cls[f * (a - 1) + k] = cls[f * (a - 1) + j];
  for (int j = 1; j <= f; ++j)
    for (int k = j + 1; k <= f; ++k)
      if (Digit(f, p1, j) == Digit(f, p1, k))
        for (int b = 1; b <= f; ++b) cls[f * (k - 1) + b] = cls[f * (j - 1) + b];
  int heads = 0;
  for (int c = 1; c <= nc; ++c) heads += cls[c] == c;

  float next = 0.25f, old = 0.0f, r = 0.5f;
  int counter = 0;
  bool stopped = false;
  float total = 0.0f, d0 = 0.0f, d1 = 0.0f, d2 = 0.0f;
  auto sums = [&] {
    total = d0 = d1 = d2 = 0.0f;
    for (int c = 1; c <= nc; ++c) total += q[c];
    for (int c : t.d0) d0 += q[c];
    for (int c : t.d1) d1 += q[c];
    for (int c : t.d2) d2 += q[c];
  };
  while (std::fabs(next - old) > 0.0001f && counter < 1001) {
    old = next;
    ++counter;
    for (int c = 1; c <= nc; ++c) p[c] = Chance(type, t, c, old);
    bool flat = true;
    for (int h = 1; h <= nc; ++h) {
      if (cls[h] != h) continue;
      float sum = 0.0f;
      int members = 0;
      for (int c = 1; c <= nc; ++c)
        if (cls[c] == h) sum += p[c], ++members;
      if (std::fabs(sum - 1.0f / static_cast<float>(heads)) > 0.0001f) flat = false;
      for (int c = 1; c <= nc; ++c) {
        if (cls[c] != h) continue;
        // 0 x 0 / 0: an empty class whose cells are all impossible at this r gets nothing.
        if (members == 1) q[c] = n[c];
        else q[c] = (n[h] == 0.0f && sum == 0.0f) ? 0.0f : n[h] * p[c] / sum;
      }
    }
    if (flat) {
      stopped = true;
      break;
    }
    sums();
    float s1 = 0, s2 = 0, s3 = 0;
    switch (type) {
      case 1: s1 = total - d0, s2 = 2.0f * d0 + d1, next = s1 / (s1 + s2); break;
      case 2: s1 = d0, s2 = total - d0, next = (2.0f / 3.0f) * s2 / (s1 + s2); break;
      case 3: s1 = total - d0, s2 = 3.0f * d0 + 2.0f * d1 + d2, next = s1 / (s1 + s2); break;
      default:
        s1 = total - d0, s2 = 2.0f * d0 + d1, s3 = total;
        next = PureLineInbredRoot(2.0f * s3 - 2.0f * s1 - 2.0f * s2, s1 - s2 - 2.0f * s3, s1);
        break;
    }
  }
  if (!stopped && counter < 1001) r = next;
  // The LOD from the final Q at r.
  sums();
  float at = 0, base = 0;
  const float s1 = total - d0;
  switch (type) {
    case 1:
    case 3: {
      const float s2 = type == 1 ? 2.0f * d0 + d1 : 3.0f * d0 + 2.0f * d1 + d2;
      at = Term(s1, r) + Term(s2, 1.0f - r);
      base = Term(s1, 0.5f) + Term(s2, 0.5f);
      break;
    }
    case 2:
      at = Term(d0, 2.0f - 3.0f * r) + Term(total - d0, r);
      base = Term(d0, 0.5f) + Term(total - d0, 0.5f);
      break;
    default: {
      const float s2 = 2.0f * d0 + d1, s3 = total;
      at = Term(s1, r) + Term(s2, 1.0f - r) + Term(s3, 1.0f / (1.0f + 2.0f * r));
      base = Term(s1, 0.5f) + Term(s2, 0.5f) + Term(s3, 0.5f);
      break;
    }
  }
  float lod = at - base;
  if (r < 0.0f && r > -0.5f) r = 0.0f;
  if (r > 0.5f) r = 0.5f, lod = 0.0f;
  if (lod < 0.0f) lod = 0.0f;
  if (type == 2 && r > 0.0f) r = r / (2.0f * (1.0f - r));
  return {r, lod};
}

PureLineEstimate LiteralPureLinePair(int type, int64_t lines, int32_t p1, int32_t p2, const char* x,
                                     const char* y) {
  const int f = type <= 2 ? 4 : 8;
  std::vector<float> cells(f * f, 0.0f);
  for (int64_t i = 0; i < lines; ++i) {
    const int a = x[i] - 'A' + 1, b = y[i] - 'A' + 1;
    if (a >= 1 && a <= f && b >= 1 && b <= f) cells[f * (a - 1) + b - 1] += 1.0f;
  }
  return LiteralPureLineTable(type, p1, p2, cells.data());
}

}  // namespace gae::testing
