#include "engine/ordering_methods.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <limits>
#include <numeric>

#include "engine/local_search.h"
#include "engine/neighbour_lists.h"
#include "engine/sort_sample.h"
#include "engine/tour_primitives.h"
#include "vocabulary/fixed_format.h"

namespace gae {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

void Report(const StartSink& sink, const StartRecord& record) {
  if (sink) sink(record);
}

// Runs job(0) .. job(count-1) on as many threads as the machine has cores, each job once.
// Small matrices stay on the calling thread, where a thread would cost more than the search.
void RunSideBySide(int32_t count, const std::function<void(int32_t)>& job, bool worth_threads) {
  const int32_t threads = worth_threads ? std::min<int32_t>(count, static_cast<int32_t>(std::max(1u, std::thread::hardware_concurrency()))) : 1;
  if (threads <= 1) {
    for (int32_t s = 0; s < count; ++s) job(s);
    return;
  }
  std::atomic<int32_t> next{0};
  auto worker = [&] {
    for (int32_t s = next++; s < count; s = next++) job(s);
  };
  std::vector<std::thread> pool;
  for (int32_t t = 1; t < threads; ++t) pool.emplace_back(worker);
  worker();
  for (std::thread& t : pool) t.join();
}

}  // namespace

std::string StartLine(const StartRecord& r) {
  return fmt::I(r.n, 12) + fmt::I(r.counter, 12) + fmt::F(r.closed_before, 12, 2) +
         fmt::F(r.closed_after, 12, 2) + fmt::F(r.open_before, 12, 2) + fmt::F(r.open_after, 12, 2);
}

void OrderByNearestNeighbour(const TourMatrix& d, std::vector<int32_t>& perm) {
  const int32_t n = d.Size();
  float best = kInfinity;
  Tour tour;
  for (int32_t s = 1; s <= n; ++s) {
    NearestNeighbourTour(d, s, tour);
    const float criterion = PairWeightedSum(d, tour);
    if (criterion < best) {
      best = criterion;
      perm = tour;
    }
  }
}

void OrderMultiStart(const TourMatrix& d, int32_t starts, int32_t search, UniformStream& random,
                     std::vector<int32_t>& perm, const StartSink& sink) {
  const int32_t n = d.Size();
  const UniformStream::Seed saved = random.GetSeed();
  random.SeedFromClock();
  const int32_t count = std::max(0, std::min(starts, n));
  std::vector<int32_t> drawn(static_cast<std::size_t>(count));
  RNSRI(count, n, random, drawn.data());
  random.SetSeed(saved);

  // The starts are independent searches on one matrix: they run side by side, and their
  // results are judged afterwards in the order of the draw, so the earliest start still wins
  // ties and the log lines come in the same order.
  const NeighbourLists near(d);
  std::vector<StartRecord> records(static_cast<std::size_t>(count));
  std::vector<Tour> tours(static_cast<std::size_t>(count));
  auto run = [&](int32_t s) {
    StartRecord& record = records[static_cast<std::size_t>(s)];
    Tour& tour = tours[static_cast<std::size_t>(s)];
    record = {n, s + 1};
    NearestNeighbourTour(d, drawn[static_cast<std::size_t>(s)], tour);
    float longest = 0.0f;
    ClosedLength(d, tour, &record.closed_before, &longest);
    record.open_before = record.closed_before - longest;
    RunLocalSearch(search, d, tour, &near);
    float closing = 0.0f;
    OpenLength(d, tour, &record.open_after, &closing);
    record.closed_after = record.open_after + closing;
  };
  RunSideBySide(count, run, n >= 200);

  float best = kInfinity;
  for (int32_t s = 0; s < count; ++s) {
    const StartRecord& record = records[static_cast<std::size_t>(s)];
    if (record.open_after < best) {
      best = record.open_after;
      perm = tours[static_cast<std::size_t>(s)];
    }
    Report(sink, record);
  }
}

void OrderImproveCurrent(const TourMatrix& d, int32_t search, std::vector<int32_t>& perm,
                         const StartSink& sink) {
  const int32_t n = d.Size();
  StartRecord record{n, n};
  float closing = 0.0f;
  OpenLength(d, perm, &record.open_before, &closing);
  record.closed_before = record.open_before + closing;
  RunLocalSearch(search, d, perm);
  OpenLength(d, perm, &record.open_after, &closing);
  record.closed_after = record.open_after + closing;
  Report(sink, record);
}

void OrderBestNearestNeighbour(const TourMatrix& d, int32_t search, std::vector<int32_t>& perm,
                               const StartSink& sink) {
  const int32_t n = d.Size();
  StartRecord record{n, n};
  float best = kInfinity;
  Tour tour;
  for (int32_t s = 1; s <= n; ++s) {
    NearestNeighbourTour(d, s, tour);
    float closed = 0.0f, longest = 0.0f;
    ClosedLength(d, tour, &closed, &longest);
    const float open = closed - longest;
    if (open < best) {
      best = open;
      perm = tour;
      record.closed_before = closed;
      record.open_before = open;
    }
  }
  RunLocalSearch(search, d, perm);
  float closing = 0.0f;
  OpenLength(d, perm, &record.open_after, &closing);
  record.closed_after = record.open_after + closing;
  Report(sink, record);
}

namespace {

// Open length of perm[0..length-1], summed from the start.
float PathLength(const TourMatrix& d, const std::vector<int32_t>& perm, int32_t length) {
  float sum = 0.0f;
  for (int32_t i = 0; i + 1 < length; ++i)
    sum += d(perm[static_cast<std::size_t>(i)], perm[static_cast<std::size_t>(i + 1)]);
  return sum;
}

// The gap (0..length) in which `city` lengthens the path least; the first cheapest wins, and
// the end of the path when no cost compares (NaN values).
int32_t CheapestGap(const TourMatrix& d, const std::vector<int32_t>& perm, int32_t length,
                    int32_t city) {
  const float path = PathLength(d, perm, length);
  const float* row = d.Row(city);
  float best = kInfinity;
  int32_t gap = length;
  for (int32_t p = 0; p <= length; ++p) {
    float cost;
    if (p == 0) {
      cost = path + row[perm[0]];
    } else if (p == length) {
      cost = path + row[perm[static_cast<std::size_t>(length - 1)]];
    } else {
      const int32_t left = perm[static_cast<std::size_t>(p - 1)];
      const int32_t right = perm[static_cast<std::size_t>(p)];
      cost = path - d(left, right) + row[left] + row[right];
    }
    if (cost < best) {
      best = cost;
      gap = p;
    }
  }
  return gap;
}

}  // namespace

void OrderByInsertion(const TourMatrix& d, UniformStream& random, std::vector<int32_t>& perm,
                      const StartSink& sink) {
  const int32_t n = d.Size();
  int32_t frame = 0;
  for (const int32_t p : perm)
    if (p >= 1) ++frame;
  for (int32_t i = 0; i < frame; ++i) {
    if (perm[static_cast<std::size_t>(i)] != i + 1) {
      std::iota(perm.begin(), perm.end(), 1);
      return;
    }
  }
  if (frame == n) return;
  if (frame < 3) {
    // The search keeps the order it is given when no tour compares (pair values that are not
    // numbers), so it must be given a full order, not the frame and its zeros.
    std::iota(perm.begin(), perm.end(), 1);
    OrderMultiStart(d, 5, 3, random, perm, sink);
    return;
  }
  // A marker's distance to the frame is fixed (the frame never grows by what is inserted), so
  // it is measured once. NaN values are passed over; a marker with none stays at infinity.
  std::vector<int32_t> rest;
  std::vector<float> to_frame;
  for (int32_t c = frame + 1; c <= n; ++c) {
    const float* row = d.Row(c);
    float nearest = kInfinity;
    for (int32_t f = 1; f <= frame; ++f)
      if (row[f] < nearest) nearest = row[f];
    rest.push_back(c);
    to_frame.push_back(nearest);
  }
  int32_t length = frame;
  while (!rest.empty()) {
    // Closest to the frame first, the earlier in the rest on ties; the first of the rest when
    // none is below the starting bar.
    float closest = 1e10f;
    std::size_t chosen = 0;
    for (std::size_t r = 0; r < rest.size(); ++r) {
      if (to_frame[r] < closest) {
        closest = to_frame[r];
        chosen = r;
      }
    }
    const int32_t city = rest[chosen];
    const int32_t gap = CheapestGap(d, perm, length, city);
    for (int32_t i = length; i > gap; --i) perm[static_cast<std::size_t>(i)] = perm[static_cast<std::size_t>(i - 1)];
    perm[static_cast<std::size_t>(gap)] = city;
    ++length;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(chosen));
    to_frame.erase(to_frame.begin() + static_cast<std::ptrdiff_t>(chosen));
  }
}

void OrderByInput(int32_t n, const int32_t* order, std::vector<int32_t>& perm) {
  std::vector<int32_t> sorted(static_cast<std::size_t>(n));
  perm.resize(static_cast<std::size_t>(n));
  SVIGP(n, order, sorted.data(), perm.data());
}

}  // namespace gae
