// The process-wide uniform random stream: L'Ecuyer's combined multiplicative congruential
// generator (moduli 2147483563 and 2147483399, multipliers 40014 and 40692). With its default
// seeds a fresh process draws the same numbers, so the same run flags the same genotypes.
#pragma once

#include <cstdint>

namespace gae {

class UniformStream {
 public:
  static constexpr int32_t kDefaultSeed1 = 2147483562;
  static constexpr int32_t kDefaultSeed2 = 2147483398;

  struct Seed {
    int32_t s1 = kDefaultSeed1;
    int32_t s2 = kDefaultSeed2;
    bool operator==(const Seed&) const = default;
  };

  // One 32-bit draw in (0, 1]: the combined state scaled by 4.656613e-10 in single precision.
  float Next();

  Seed GetSeed() const { return seed_; }
  void SetSeed(Seed seed) { seed_ = seed; }
  // Re-seeds from the wall clock, or from the environment variable GAENGINE_SEED when it holds
  // a positive integer, so that a user can reproduce a run that draws random starts.
  void SeedFromClock();

 private:
  Seed seed_;
};

}  // namespace gae
