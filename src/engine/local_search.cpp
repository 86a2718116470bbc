#include "engine/local_search.h"

#include <algorithm>

namespace gae {

namespace {

using Passes = void (*)(const TourMatrix&, Successors&, bool, MoveLog*);

void WithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves, Passes passes) {
  const int32_t n = d.Size();
  const TourMatrix closed = d.WithDummyCity(2.0f * d.LargestEntry());
  Tour cycle = tour;
  cycle.push_back(n + 1);
  Successors next = BuildSuccessors(cycle);
  passes(closed, next, /*open_path=*/false, moves);
  cycle = TourFromCityOne(next, n + 1);
  // The path is the cycle cut open at the dummy city: what follows it, then what precedes it.
  const auto dummy = std::find(cycle.begin(), cycle.end(), n + 1);
  tour.assign(dummy + 1, cycle.end());
  tour.insert(tour.end(), cycle.begin(), dummy);
}

void OpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves, Passes passes) {
  Successors next = BuildSuccessors(tour);
  passes(d, next, /*open_path=*/true, moves);
  tour = TourFromCityOne(next, d.Size());
  RotateToLongestEdge(d, tour);
}

}  // namespace

void TwoOptWithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves) {
  WithDummy(d, tour, moves, TwoOptPasses);
}
void ThreeOptWithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves) {
  WithDummy(d, tour, moves, ThreeOptPasses);
}
void TwoOptOpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves) {
  OpenPath(d, tour, moves, TwoOptPasses);
}
void ThreeOptOpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves) {
  OpenPath(d, tour, moves, ThreeOptPasses);
}

void RunLocalSearch(int search, const TourMatrix& d, Tour& tour) {
  switch (search) {
    case 1: TwoOptWithDummy(d, tour); break;
    case 2: ThreeOptWithDummy(d, tour); break;
    case 3: TwoOptOpenPath(d, tour); break;
    case 4: ThreeOptOpenPath(d, tour); break;
    default: break;
  }
}

}  // namespace gae
