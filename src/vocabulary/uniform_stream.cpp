#include "vocabulary/uniform_stream.h"

#include <chrono>
#include <cstdlib>
#include <string>

namespace gae {

float UniformStream::Next() {
  // Schrage's decomposition keeps every product inside 32 bits.
  int32_t k = seed_.s1 / 53668;
  seed_.s1 = 40014 * (seed_.s1 - k * 53668) - k * 12211;
  if (seed_.s1 < 0) seed_.s1 += 2147483563;
  k = seed_.s2 / 52774;
  seed_.s2 = 40692 * (seed_.s2 - k * 52774) - k * 3791;
  if (seed_.s2 < 0) seed_.s2 += 2147483399;
  int32_t z = seed_.s1 - seed_.s2;
  if (z < 1) z += 2147483562;
  return static_cast<float>(z) * 4.656613e-10f;
}

namespace {

// Brings any integer into the valid range of a component seed, 1 .. modulus-1.
int32_t FoldSeed(long long value, int32_t modulus) {
  long long folded = value % (modulus - 1);
  if (folded < 0) folded += modulus - 1;
  return static_cast<int32_t>(folded + 1);
}

}  // namespace

void UniformStream::SeedFromClock() {
  long long base = 0;
  const char* fixed = std::getenv("GAENGINE_SEED");
  if (fixed != nullptr && *fixed != '\0') {
    char* end = nullptr;
    long long value = std::strtoll(fixed, &end, 10);
    if (end != nullptr && *end == '\0' && value > 0) base = value;
  }
  if (base == 0) {
    base = std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::system_clock::now().time_since_epoch())
               .count();
  }
  seed_.s1 = FoldSeed(base, 2147483563);
  seed_.s2 = FoldSeed(base / 7 + 12345, 2147483399);
}

}  // namespace gae
