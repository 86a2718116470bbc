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

// Products of a vector with a transition matrix: row vector times T, and T times column vector.
template <int S>
void Propagate(const double* v, const double* t, double* out) {
  for (int u = 0; u < S; ++u) {
    double x = 0;
    for (int s = 0; s < S; ++s) x += v[s] * t[s * kMaxChainStates + u];
    out[u] = x;
  }
}
template <int S>
void PropagateBack(const double* t, const double* w, double* out) {
  for (int s = 0; s < S; ++s) {
    double x = 0;
    for (int u = 0; u < S; ++u) x += t[s * kMaxChainStates + u] * w[u];
    out[s] = x;
  }
}

// Normalises v into `to`; returns its sum.
template <int S>
double Normalise(const double* v, double* to) {
  double c = 0;
  for (int u = 0; u < S; ++u) c += v[u];
  const double inv = 1.0 / c;
  for (int u = 0; u < S; ++u) to[u] = v[u] * inv;
  return c;
}

// One individual's pass over a run.
template <int S>
class IndividualPass {
 public:
  IndividualPass(const RunInput& in, const ChainVectors& out, int32_t i)
      : in_(in), g_(*in.calls), i_(i), k_(in.count), has_left_(in.left.data != nullptr),
        has_right_(in.right.data != nullptr) {
    first_t_ = in.transitions;
    inner_t_ = in.transitions + (has_left_ ? kMatrixSize : 0);
    last_t_ = inner_t_ + (k_ > 0 ? k_ - 1 : 0) * kMatrixSize;
    if (has_left_) {
      lv_ = in.left.data + i * in.left.stride * S;
      left_log_ = in.left.log[i * in.left.stride];
    }
    if (has_right_) {
      const double* rv = in.right.data + i * in.right.stride * S;
      const double* er = Emission(in.right.marker);
      for (int u = 0; u < S; ++u) rw_[u] = er[u] * rv[u];
      right_log_ = in.right.log[i * in.right.stride];
    }
    a_ = out.alpha + i * out.stride * S;
    al_ = out.alpha_log + i * out.stride;
    b_ = out.beta + i * out.stride * S;
    bl_ = out.beta_log + i * out.stride;
  }

  // An empty run between two boundaries: only the interval that joins them.
  double Join(RunSums* sums) const {
    double x[S];
    PropagateBack<S>(first_t_, rw_, x);
    double z = 0;
    for (int s = 0; s < S; ++s) z += lv_[s] * x[s];
    if (sums != nullptr) AddExpected<S>(lv_, first_t_, rw_, sums->expected.data());
    return left_log_ + right_log_ + std::log(z);
  }

  // Forward vectors; returns the log-likelihood. Without kept logs the scales are multiplied
  // and their log taken at the end.
  double Forward() {
    double log_sum = left_log_;
    double scale = 1.0;
    for (int j = 0; j < k_; ++j) {
      const double* e = Emission(in_.markers[j]);
      double v[S];
      if (j == 0 && !has_left_) {
        for (int u = 0; u < S; ++u) v[u] = g_.design.initial[u];
      } else {
        Propagate<S>(j == 0 ? lv_ : a_ + (j - 1) * S, j == 0 ? first_t_ : inner_t_ + (j - 1) * kMatrixSize, v);
      }
      for (int u = 0; u < S; ++u) v[u] *= e[u];
      const double c = Normalise<S>(v, a_ + j * S);
      if (in_.keep_logs) {
        log_sum += std::log(c);
        al_[j] = log_sum;
      } else if ((scale *= c) < 1e-250) {
        log_sum += std::log(scale);
        scale = 1.0;
      }
    }
    double likelihood = log_sum + std::log(scale);
    if (has_right_) {
      double x[S];
      PropagateBack<S>(last_t_, rw_, x);
      double z = 0;
      for (int s = 0; s < S; ++s) z += a_[(k_ - 1) * S + s] * x[s];
      likelihood += std::log(z) + right_log_;
    }
    return likelihood;
  }

  void Backward() {
    for (int j = k_ - 1; j >= 0; --j) {
      double v[S];
      double base = 0;
      if (j == k_ - 1 && !has_right_) {
        for (int s = 0; s < S; ++s) v[s] = 1.0;
      } else if (j == k_ - 1) {
        PropagateBack<S>(last_t_, rw_, v);
        base = right_log_;
      } else {
        double w[S];
        Weighted(j + 1, w);
        PropagateBack<S>(inner_t_ + j * kMatrixSize, w, v);
        if (in_.keep_logs) base = bl_[j + 1];
      }
      const double c = Normalise<S>(v, b_ + j * S);
      if (in_.keep_logs) bl_[j] = base + std::log(c);
    }
  }

  // Expected transitions of every interval and expected wrong calls (after both passes).
  void AddSums(RunSums& sums) const {
    double* ex = sums.expected.data();
    double w[S];
    if (has_left_) {
      Weighted(0, w);
      AddExpected<S>(lv_, first_t_, w, ex);
      ex += kMatrixSize;
    }
    for (int j = 0; j + 1 < k_; ++j, ex += kMatrixSize) {
      Weighted(j + 1, w);
      AddExpected<S>(a_ + j * S, inner_t_ + j * kMatrixSize, w, ex);
    }
    if (has_right_) AddExpected<S>(a_ + (k_ - 1) * S, last_t_, rw_, ex);
    for (int j = 0; j < k_; ++j) {
      const uint8_t code = Code(in_.markers[j]);
      if (code == kMissingCall) continue;
      double z = 0, wrong = 0;
      for (int s = 0; s < S; ++s) {
        const double p = a_[j * S + s] * b_[j * S + s];
        z += p;
        if (!g_.Agrees(in_.markers[j], code, s)) wrong += p;
      }
      sums.errors += wrong / z;
      sums.typed += 1;
    }
  }

 private:
  uint8_t Code(int32_t marker) const { return g_.codes[static_cast<std::size_t>(marker) * g_.num_individuals + i_]; }
  const double* Emission(int32_t marker) const {
    return &(*in_.emissions)[marker][Code(marker) * kMaxChainStates];
  }
  // Emission times backward vector at run position j.
  void Weighted(int j, double* w) const {
    const double* e = Emission(in_.markers[j]);
    for (int u = 0; u < S; ++u) w[u] = e[u] * b_[j * S + u];
  }

  const RunInput& in_;
  const GroupCalls& g_;
  int32_t i_;
  int k_;
  bool has_left_, has_right_;
  const double *first_t_, *inner_t_, *last_t_;
  const double* lv_ = nullptr;
  double left_log_ = 0, right_log_ = 0;
  double rw_[S] = {};  // the right boundary's emission times its backward vector
  double *a_, *al_, *b_, *bl_;
};

template <int S>
double RunTyped(const RunInput& in, const ChainVectors& out, RunSums* sums) {
  const int intervals = RunIntervals(in);
  if (in.count == 0 && intervals == 0) return 0;
  if (sums != nullptr) {
    sums->expected.assign(static_cast<std::size_t>(intervals) * kMatrixSize, 0.0);
    sums->errors = sums->typed = 0;
  }
  double total = 0;
  for (int32_t i = 0; i < in.calls->num_individuals; ++i) {
    IndividualPass<S> pass(in, out, i);
    if (in.count == 0) {
      total += pass.Join(sums);
      continue;
    }
    total += pass.Forward();
    if (sums == nullptr && (!in.keep_logs || !in.backward)) continue;
    pass.Backward();
    if (sums != nullptr) pass.AddSums(*sums);
  }
  return total;
}

}  // namespace

double RunForwardBackward(const RunInput& in, const ChainVectors& out, RunSums* sums) {
  switch (in.calls->design.num_states) {
    case 2: return RunTyped<2>(in, out, sums);
    case 3: return RunTyped<3>(in, out, sums);
    case 4: return RunTyped<4>(in, out, sums);
    case 8: return RunTyped<8>(in, out, sums);
    default: return 0;
  }
}

}  // namespace gae
