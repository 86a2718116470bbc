// Counts what the program allocates with operator new, so that a test can check that a call
// released everything it took and never held more than a bound at once. The test executable
// replaces the global allocation functions; counting costs two atomic additions a call.
#pragma once

#include <cstddef>

namespace gae::testing {

struct AllocationScope {
  AllocationScope();
  // Bytes allocated in the scope and not yet freed (negative when the scope freed older blocks).
  long long LiveBytes() const;
  // The most the scope held at once beyond its start.
  long long PeakBytes() const;

 private:
  long long start_;
};

}  // namespace gae::testing
