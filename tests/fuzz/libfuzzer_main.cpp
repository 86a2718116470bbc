// The libFuzzer target (clang, -fsanitize=fuzzer): coverage-guided inputs through the library.
#include "fuzz/fuzz_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return gae::fuzz::RunOneInput(data, size);
}
