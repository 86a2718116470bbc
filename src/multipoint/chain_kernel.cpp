#include "multipoint/chain_kernel.h"

#include <cmath>

namespace gae {

int RunIntervals(const RunInput& in) {
  const int inner = in.count > 0 ? in.count - 1 : 0;
  const int ends = (in.left.data != nullptr) + (in.right.data != nullptr);
  return in.count > 0 ? inner + ends : (ends == 2 ? 1 : 0);
}

namespace {

// Adds the normalised product a(s) T(s, t) w(t) to `sum`.
template <int S>
void AddExpected(const double* a, const double* t, const double* w, double* sum) {
  double x[S * S];
  double z = 0;
  for (int s = 0; s < S; ++s)
    for (int u = 0; u < S; ++u) {
      x[s * S + u] = a[s] * t[s * kMaxChainStates + u] * w[u];
      z += x[s * S + u];
    }
  if (!(z > 0)) return;
  const double inv = 1.0 / z;
  for (int s = 0; s < S; ++s)
    for (int u = 0; u < S; ++u) sum[s * kMaxChainStates + u] += x[s * S + u] * inv;
}

template <int S>
double RunTyped(const RunInput& in, const ChainVectors& out, RunSums* sums) {
  const GroupCalls& g = *in.calls;
  const auto& em = *in.emissions;
  const int k = in.count;
  const int32_t n = g.num_individuals;
  const bool has_left = in.left.data != nullptr, has_right = in.right.data != nullptr;
  const int intervals = RunIntervals(in);
  if (k == 0 && intervals == 0) return 0;
  if (sums != nullptr) {
    sums->expected.assign(static_cast<std::size_t>(intervals) * kMatrixSize, 0.0);
    sums->errors = sums->typed = 0;
  }
  const double* first_t = in.transitions;                       // left boundary -> marker 0
  const double* inner_t = in.transitions + (has_left ? kMatrixSize : 0);  // marker j -> j + 1
  const double* last_t = inner_t + (k > 0 ? (k - 1) : 0) * kMatrixSize;   // last -> right boundary
  auto emission = [&](int32_t marker, int32_t i) {
    return &em[marker][g.codes[static_cast<std::size_t>(marker) * n + i] * kMaxChainStates];
  };
  double total = 0;
  for (int32_t i = 0; i < n; ++i) {
    const double* lv = has_left ? in.left.data + i * in.left.stride * S : nullptr;
    const double* rv = has_right ? in.right.data + i * in.right.stride * S : nullptr;
    const double left_log = has_left ? in.left.log[i * in.left.stride] : 0.0;
    const double right_log = has_right ? in.right.log[i * in.right.stride] : 0.0;
    double rw[S];  // right boundary's emission times its backward vector
    if (has_right) {
      const double* er = emission(in.right.marker, i);
      for (int t = 0; t < S; ++t) rw[t] = er[t] * rv[t];
    }
    if (k == 0) {
      // Only the interval that joins the two boundaries.
      double z = 0;
      for (int s = 0; s < S; ++s)
        for (int t = 0; t < S; ++t) z += lv[s] * first_t[s * kMaxChainStates + t] * rw[t];
      total += left_log + right_log + std::log(z);
      if (sums != nullptr) AddExpected<S>(lv, first_t, rw, sums->expected.data());
      continue;
    }
    double* a = out.alpha + i * out.stride * S;
    double* al = out.alpha_log + i * out.stride;
    double* b = out.beta + i * out.stride * S;
    double* bl = out.beta_log + i * out.stride;
    // Forward. Without kept logs the scales are multiplied and their log taken at the end.
    double log_sum = has_left ? left_log : 0.0;
    double scale = 1.0;
    for (int j = 0; j < k; ++j) {
      const double* e = emission(in.markers[j], i);
      double v[S];
      if (j == 0 && !has_left) {
        for (int t = 0; t < S; ++t) v[t] = g.design.initial[t] * e[t];
      } else {
        const double* prev = j == 0 ? lv : a + (j - 1) * S;
        const double* t_m = j == 0 ? first_t : inner_t + (j - 1) * kMatrixSize;
        for (int t = 0; t < S; ++t) {
          double x = 0;
          for (int s = 0; s < S; ++s) x += prev[s] * t_m[s * kMaxChainStates + t];
          v[t] = x * e[t];
        }
      }
      double c = 0;
      for (int t = 0; t < S; ++t) c += v[t];
      const double inv = 1.0 / c;
      for (int t = 0; t < S; ++t) a[j * S + t] = v[t] * inv;
      if (in.keep_logs) {
        log_sum += std::log(c);
        al[j] = log_sum;
      } else {
        scale *= c;
        if (scale < 1e-250) {
          log_sum += std::log(scale);
          scale = 1.0;
        }
      }
    }
    double likelihood = in.keep_logs ? log_sum : log_sum + std::log(scale);
    if (has_right) {
      double z = 0;
      for (int s = 0; s < S; ++s) {
        double x = 0;
        for (int t = 0; t < S; ++t) x += last_t[s * kMaxChainStates + t] * rw[t];
        z += a[(k - 1) * S + s] * x;
      }
      likelihood += std::log(z) + right_log;
    }
    total += likelihood;
    if (sums == nullptr && !in.keep_logs) continue;
    // Backward.
    for (int j = k - 1; j >= 0; --j) {
      double v[S];
      double base = 0;
      if (j == k - 1 && !has_right) {
        for (int s = 0; s < S; ++s) v[s] = 1.0;
      } else {
        double w[S];
        const double* t_m;
        if (j == k - 1) {
          for (int t = 0; t < S; ++t) w[t] = rw[t];
          t_m = last_t;
          base = right_log;
        } else {
          const double* e = emission(in.markers[j + 1], i);
          for (int t = 0; t < S; ++t) w[t] = e[t] * b[(j + 1) * S + t];
          t_m = inner_t + j * kMatrixSize;
          if (in.keep_logs) base = bl[j + 1];
        }
        for (int s = 0; s < S; ++s) {
          double x = 0;
          for (int t = 0; t < S; ++t) x += t_m[s * kMaxChainStates + t] * w[t];
          v[s] = x;
        }
      }
      double c = 0;
      for (int s = 0; s < S; ++s) c += v[s];
      const double inv = 1.0 / c;
      for (int s = 0; s < S; ++s) b[j * S + s] = v[s] * inv;
      if (in.keep_logs) bl[j] = base + std::log(c);
    }
    if (sums == nullptr) continue;
    double* ex = sums->expected.data();
    double w[S];
    if (has_left) {
      const double* e = emission(in.markers[0], i);
      for (int t = 0; t < S; ++t) w[t] = e[t] * b[t];
      AddExpected<S>(lv, first_t, w, ex);
      ex += kMatrixSize;
    }
    for (int j = 0; j + 1 < k; ++j, ex += kMatrixSize) {
      const double* e = emission(in.markers[j + 1], i);
      for (int t = 0; t < S; ++t) w[t] = e[t] * b[(j + 1) * S + t];
      AddExpected<S>(a + j * S, inner_t + j * kMatrixSize, w, ex);
    }
    if (has_right) AddExpected<S>(a + (k - 1) * S, last_t, rw, ex);
    for (int j = 0; j < k; ++j) {
      const uint8_t code = g.codes[static_cast<std::size_t>(in.markers[j]) * n + i];
      if (code == kMissingCall) continue;
      double zj = 0, wrong = 0;
      for (int s = 0; s < S; ++s) {
        const double p = a[j * S + s] * b[j * S + s];
        zj += p;
        if (!CallMatches(code, g.design.state_class[s])) wrong += p;
      }
      sums->errors += wrong / zj;
      sums->typed += 1;
    }
  }
  return total;
}

}  // namespace

double RunForwardBackward(const RunInput& in, const ChainVectors& out, RunSums* sums) {
  switch (in.calls->design.num_states) {
    case 2: return RunTyped<2>(in, out, sums);
    case 3: return RunTyped<3>(in, out, sums);
    case 4: return RunTyped<4>(in, out, sums);
    default: return 0;
  }
}

}  // namespace gae
