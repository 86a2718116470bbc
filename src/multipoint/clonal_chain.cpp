#include "multipoint/clonal_chain.h"

#include <cmath>
#include <cstddef>

namespace gae {

namespace {

constexpr int kS = kClonalStates;
constexpr int kCodes = 12;

// Observable classes a category shows.
int ClassCount(int32_t category) {
  if (category == 1) return 4;
  return category == 2 || category == 3 ? 2 : 3;
}

// Class of a call code at a marker of `category`, or -1 if the category cannot show it.
int CallClass(int32_t category, uint8_t code) {
  switch (category) {
    case 1: return code <= 3 ? code : -1;
    case 2: return code == 4 || code == 5 ? code - 4 : -1;
    case 3: return code == 6 || code == 7 ? code - 6 : -1;
    default: return code >= 8 && code <= 10 ? code - 8 : -1;
  }
}

// Class of the alleles a1 (0 A, 1 B) and a2 (0 C, 1 D). In AB=CD and A=CB=D the second
// parent's C is the first allele, in A=DB=C its D is, and the class counts second alleles.
int AlleleClass(int32_t category, int a1, int a2) {
  switch (category) {
    case 1: return a1 * 2 + a2;
    case 2: return a2;
    case 3: return a1;
    case 4: return a1 + a2;
    default: return a1 + 1 - a2;
  }
}


// The transition is the first parent's switch times the second's, so it applies one parent at
// a time: states are first homologue * 2 + second.
void ApplySecond(const double* v, double rb, double* out) {
  for (int u = 0; u < kS; u += 2) {
    out[u] = v[u] * (1 - rb) + v[u + 1] * rb;
    out[u + 1] = v[u] * rb + v[u + 1] * (1 - rb);
  }
}
void ApplyFirst(const double* v, double ra, double* out) {
  for (int u = 0; u < 2; ++u) {
    out[u] = v[u] * (1 - ra) + v[u + 2] * ra;
    out[u + 2] = v[u] * ra + v[u + 2] * (1 - ra);
  }
}

// pred(t) = sum_u prev(u) T(u, t); T is symmetric, so this serves backward steps as well.
void Transit(const double* prev, double ra, double rb, double* pred) {
  double half[kS];
  ApplySecond(prev, rb, half);
  ApplyFirst(half, ra, pred);
}

double Normalise(double* v) {
  const double sum = v[0] + v[1] + v[2] + v[3];
  for (int s = 0; s < kS; ++s) v[s] /= sum;
  return sum;
}

// Expected switches of each parent over an interval: xi(u, t) ∝ prev(u) T(u, t) next(t). With
// nb = the second parent's step applied to next, the first parent switches in
// ra * sum_u prev(u) nb(u with the first homologue exchanged); likewise the second.
void AddSwitches(const double* prev, const double* next, double ra, double rb, double& rec_a, double& rec_b) {
  double nb[kS], na[kS], full[kS];
  ApplySecond(next, rb, nb);
  ApplyFirst(next, ra, na);
  ApplyFirst(nb, ra, full);
  double total = 0, a = 0, b = 0;
  for (int u = 0; u < kS; ++u) {
    total += prev[u] * full[u];
    a += prev[u] * nb[u ^ 2];
    b += prev[u] * na[u ^ 1];
  }
  if (total > 0) {
    rec_a += ra * a / total;
    rec_b += rb * b / total;
  }
}

}  // namespace

bool SegregatesIn(int32_t category, int parent) { return parent == 0 ? category != 2 : category != 3; }

ClonalCalls MakeClonalCalls(int32_t num_individuals, const std::vector<char>& types,
                            const std::vector<int32_t>& categories) {
  ClonalCalls calls;
  calls.num_markers = static_cast<int32_t>(categories.size());
  calls.num_individuals = num_individuals;
  calls.categories = categories;
  calls.codes.assign(types.size(), kClonalMissing);
  for (std::size_t k = 0; k < types.size(); ++k) {
    const char c = types[k];
    if (c < 'A' || c > 'K') continue;
    const auto code = static_cast<uint8_t>(c - 'A');
    const int32_t category = categories[k / static_cast<std::size_t>(num_individuals)];
    if (CallClass(category, code) >= 0) calls.codes[k] = code;
  }
  return calls;
}

ClonalEmission MakeClonalEmission(int32_t category, Phase phase, double error_rate) {
  ClonalEmission e;
  const double other = error_rate / (ClassCount(category) - 1);
  for (int code = 0; code < kCodes; ++code) {
    const int seen = code == kClonalMissing ? -1 : CallClass(category, static_cast<uint8_t>(code));
    for (int s = 0; s < kS; ++s) {
      const int truth = AlleleClass(category, (s >> 1) ^ phase.first, (s & 1) ^ phase.second);
      e[static_cast<std::size_t>(code * kS + s)] = seen < 0 ? 1.0 : (seen == truth ? 1.0 - error_rate : other);
    }
  }
  return e;
}

std::vector<Phase> PhaseChoices(int32_t category) {
  if (category == 2) return {{0, 0}, {0, 1}};
  if (category == 3) return {{0, 0}, {1, 0}};
  return {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
}

double RunClonal(const ClonalCalls& calls, ClonalRun& run, bool choose_phases, bool keep_vectors, ClonalPass& out) {
  const int count = static_cast<int>(run.markers.size());
  const int n = calls.num_individuals;
  const std::size_t cells = static_cast<std::size_t>(n) * static_cast<std::size_t>(count);
  out.alpha.assign(cells * kS, 0.0);
  out.alpha_log.assign(cells, 0.0);
  out.beta.assign(cells * kS, 0.0);
  out.beta_log.assign(cells, 0.0);
  out.recombinations_first.assign(static_cast<std::size_t>(count) + 1, 0.0);
  out.recombinations_second.assign(static_cast<std::size_t>(count) + 1, 0.0);
  out.errors = out.typed = out.log_likelihood = 0;
  auto at = [count](int i, int k) { return static_cast<std::size_t>(i) * static_cast<std::size_t>(count) + static_cast<std::size_t>(k); };
  auto code_of = [&](int k, int i) {
    return calls.codes[static_cast<std::size_t>(run.markers[static_cast<std::size_t>(k)]) * static_cast<std::size_t>(n) + static_cast<std::size_t>(i)];
  };
  auto category_of = [&](int k) { return calls.categories[static_cast<std::size_t>(run.markers[static_cast<std::size_t>(k)])]; };
  const double* ra = run.rf_first.data();
  const double* rb = run.rf_second.data();

  if (count == 0) {  // the chromosome with nothing between its two boundaries
    for (int i = 0; i < n; ++i) {
      const double* l = run.left + static_cast<std::size_t>(i) * kS;
      const double* r = run.right + static_cast<std::size_t>(i) * kS;
      double pred[kS];
      Transit(l, ra[0], rb[0], pred);
      out.log_likelihood += run.left_log[i] + run.right_log[i] +
                            std::log(pred[0] * r[0] + pred[1] * r[1] + pred[2] * r[2] + pred[3] * r[3]);
      AddSwitches(l, r, ra[0], rb[0], out.recombinations_first[0], out.recombinations_second[0]);
    }
    return out.log_likelihood;
  }

  std::vector<ClonalEmission> emission(static_cast<std::size_t>(count));
  for (int k = 0; k < count; ++k)
    emission[static_cast<std::size_t>(k)] = MakeClonalEmission(category_of(k), run.phases[static_cast<std::size_t>(k)], run.error_rate);

  // Backward, at the phases the run came with.
  for (int i = 0; i < n && run.past_only; ++i)
    for (int k = 0; k < count; ++k)
      for (int s = 0; s < kS; ++s) out.beta[at(i, k) * kS + static_cast<std::size_t>(s)] = 0.25;
  for (int i = 0; i < n && !run.past_only; ++i) {
    double* b = &out.beta[at(i, count - 1) * kS];
    if (run.right) {
      double next[kS];
      const double* r = run.right + static_cast<std::size_t>(i) * kS;
      for (int s = 0; s < kS; ++s) next[s] = r[s];
      // sum_t T(s, t) r(t): the chain is reversible, so the forward step serves.
      Transit(next, ra[count], rb[count], b);
      out.beta_log[at(i, count - 1)] = run.right_log[i] + std::log(Normalise(b));
    } else {
      for (int s = 0; s < kS; ++s) b[s] = 0.25;
      out.beta_log[at(i, count - 1)] = std::log(4.0);
    }
    for (int k = count - 2; k >= 0; --k) {
      const double* e = &emission[static_cast<std::size_t>(k + 1)][static_cast<std::size_t>(code_of(k + 1, i)) * kS];
      const double* later = &out.beta[at(i, k + 1) * kS];
      double weighted[kS];
      for (int s = 0; s < kS; ++s) weighted[s] = e[s] * later[s];
      double* here = &out.beta[at(i, k) * kS];
      Transit(weighted, ra[k + 1], rb[k + 1], here);
      out.beta_log[at(i, k)] = out.beta_log[at(i, k + 1)] + std::log(Normalise(here));
    }
  }

  // Forward, choosing each marker's phase from everything before and after it.
  std::vector<double> pred(static_cast<std::size_t>(n) * kS), pred_log(static_cast<std::size_t>(n));
  for (int k = 0; k < count; ++k) {
    const bool has_prev = k > 0 || run.left != nullptr;
    for (int i = 0; i < n; ++i) {
      double* p = &pred[static_cast<std::size_t>(i) * kS];
      if (k > 0) {
        Transit(&out.alpha[at(i, k - 1) * kS], ra[k], rb[k], p);
        pred_log[static_cast<std::size_t>(i)] = out.alpha_log[at(i, k - 1)];
      } else if (run.left) {
        Transit(run.left + static_cast<std::size_t>(i) * kS, ra[0], rb[0], p);
        pred_log[static_cast<std::size_t>(i)] = run.left_log[i];
      } else {
        for (int s = 0; s < kS; ++s) p[s] = 0.25;
        pred_log[static_cast<std::size_t>(i)] = 0.0;
      }
    }
    if (choose_phases) {
      double best = -HUGE_VAL;
      Phase chosen = run.phases[static_cast<std::size_t>(k)];
      std::vector<Phase> options = PhaseChoices(category_of(k));
      options.insert(options.begin(), chosen);  // the current phase wins ties
      for (const Phase option : options) {
        const ClonalEmission e = MakeClonalEmission(category_of(k), option, run.error_rate);
        double ll = 0;
        for (int i = 0; i < n; ++i) {
          const double* p = &pred[static_cast<std::size_t>(i) * kS];
          const double* b = &out.beta[at(i, k) * kS];
          const double* ei = &e[static_cast<std::size_t>(code_of(k, i)) * kS];
          ll += std::log(p[0] * ei[0] * b[0] + p[1] * ei[1] * b[1] + p[2] * ei[2] * b[2] + p[3] * ei[3] * b[3]);
        }
        if (ll > best + 1e-9) {
          best = ll;
          chosen = option;
        }
      }
      run.phases[static_cast<std::size_t>(k)] = chosen;
      emission[static_cast<std::size_t>(k)] = MakeClonalEmission(category_of(k), chosen, run.error_rate);
    }
    const ClonalEmission& ek = emission[static_cast<std::size_t>(k)];
    const int32_t category = category_of(k);
    for (int i = 0; i < n; ++i) {
      const uint8_t code = code_of(k, i);
      const double* e = &ek[static_cast<std::size_t>(code) * kS];
      const double* b = &out.beta[at(i, k) * kS];
      double* a = &out.alpha[at(i, k) * kS];
      const double* p = &pred[static_cast<std::size_t>(i) * kS];
      if (has_prev) {
        const double* prev = k > 0 ? &out.alpha[at(i, k - 1) * kS] : run.left + static_cast<std::size_t>(i) * kS;
        double next[kS];
        for (int s = 0; s < kS; ++s) next[s] = e[s] * b[s];
        AddSwitches(prev, next, ra[k], rb[k], out.recombinations_first[static_cast<std::size_t>(k)],
                    out.recombinations_second[static_cast<std::size_t>(k)]);
      }
      for (int s = 0; s < kS; ++s) a[s] = p[s] * e[s];
      out.alpha_log[at(i, k)] = pred_log[static_cast<std::size_t>(i)] + std::log(Normalise(a));
      if (code != kClonalMissing) {
        const int seen = CallClass(category, code);
        const Phase ph = run.phases[static_cast<std::size_t>(k)];
        double total = 0, wrong = 0;
        for (int s = 0; s < kS; ++s) {
          const double g = a[s] * b[s];
          total += g;
          if (AlleleClass(category, (s >> 1) ^ ph.first, (s & 1) ^ ph.second) != seen) wrong += g;
        }
        out.errors += wrong / total;
        out.typed += 1;
      }
    }
  }
  for (int i = 0; i < n; ++i) {
    const double* a = &out.alpha[at(i, count - 1) * kS];
    double ll = out.alpha_log[at(i, count - 1)];
    if (run.right) {
      const double* r = run.right + static_cast<std::size_t>(i) * kS;
      double pred_r[kS];
      Transit(a, ra[count], rb[count], pred_r);
      ll += run.right_log[i] + std::log(pred_r[0] * r[0] + pred_r[1] * r[1] + pred_r[2] * r[2] + pred_r[3] * r[3]);
      AddSwitches(a, r, ra[count], rb[count], out.recombinations_first[static_cast<std::size_t>(count)],
                  out.recombinations_second[static_cast<std::size_t>(count)]);
    }
    out.log_likelihood += ll;
  }
  if (!keep_vectors) {
    out.alpha.clear();
    out.beta.clear();
  }
  return out.log_likelihood;
}

}  // namespace gae
