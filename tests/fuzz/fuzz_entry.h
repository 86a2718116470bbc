// One fuzz input through the library as a front end would use it: the bytes become an input
// file, every reader looks at it, and a MAP file that passes its check goes through the
// stages, the output and the whole run. Shared by the libFuzzer target and the plain replay
// driver, so that a seed or a crash input runs the same code under either.
#pragma once

#include <cstddef>
#include <cstdint>

namespace gae::fuzz {

// Runs one input; always returns 0 (a failure is a crash or a sanitizer report).
int RunOneInput(const uint8_t* data, std::size_t size);

}  // namespace gae::fuzz
