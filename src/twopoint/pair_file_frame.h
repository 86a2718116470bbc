// What every tool's pairwise file does around its computing: the reuse of a complete file,
// and the messages and the time taken.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace gae {

// A file `lrd_name` that already holds the records of `num_markers` markers of
// `record_length` words is reused as it stands. Otherwise 2801 is printed, `write` fills the
// file and 2803 gives the time taken, to the caller's log. Returns what `write` returned, or
// true for a reused file.
bool PairFileFrame(const std::string& lrd_name, int64_t num_markers, int record_length,
                   const std::function<bool()>& write);

// A combined frequency above the 32-bit 0.9 is suspicious: 2802 says so, and the pair is
// written all the same.
void WarnHighFrequency(int64_t i, int64_t j, float rec_freq, float lod);

}  // namespace gae
