#include "engine/local_search.h"

#include <algorithm>

namespace gae {

namespace {

using Passes = void (*)(const TourMatrix&, Successors&, bool, MoveLog*, const NeighbourLists*);

void WithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves, const NeighbourLists* near,
               Passes passes) {
  const int32_t n = d.Size();
  const float big = 2.0f * d.LargestEntry();
  const TourMatrix closed = d.WithDummyCity(big);
  const NeighbourLists near_closed = near != nullptr ? near->WithDummyCity(big) : NeighbourLists(closed);
  Tour cycle = tour;
  cycle.push_back(n + 1);
  Successors next = BuildSuccessors(cycle);
  passes(closed, next, /*open_path=*/false, moves, &near_closed);
  cycle = TourFromCityOne(next, n + 1);
  // The path is the cycle cut open at the dummy city: what follows it, then what precedes it.
  const auto dummy = std::find(cycle.begin(), cycle.end(), n + 1);
  tour.assign(dummy + 1, cycle.end());
  tour.insert(tour.end(), cycle.begin(), dummy);
}

void OpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves, const NeighbourLists* near,
              Passes passes) {
  Successors next = BuildSuccessors(tour);
  passes(d, next, /*open_path=*/true, moves, near);
  tour = TourFromCityOne(next, d.Size());
  RotateToLongestEdge(d, tour);
}

}  // namespace

void TwoOptWithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves, const NeighbourLists* near) {
  WithDummy(d, tour, moves, near, TwoOptPasses);
}
void ThreeOptWithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves, const NeighbourLists* near) {
  WithDummy(d, tour, moves, near, ThreeOptPasses);
}
void TwoOptOpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves, const NeighbourLists* near) {
  OpenPath(d, tour, moves, near, TwoOptPasses);
}
void ThreeOptOpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves, const NeighbourLists* near) {
  OpenPath(d, tour, moves, near, ThreeOptPasses);
}

void RunLocalSearch(int search, const TourMatrix& d, Tour& tour, const NeighbourLists* near) {
  switch (search) {
    case 1: TwoOptWithDummy(d, tour, nullptr, near); break;
    case 2: ThreeOptWithDummy(d, tour, nullptr, near); break;
    case 3: TwoOptOpenPath(d, tour, nullptr, near); break;
    case 4: ThreeOptOpenPath(d, tour, nullptr, near); break;
    default: break;
  }
}

}  // namespace gae
