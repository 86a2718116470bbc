// The frame that every map tool's pairwise file shares: the tool's log, the file name and
// record layout left for the stages that follow, the reuse of a complete file, and the
// messages and time around the computing.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace gae {

// Leaves the .LRD name beside `project_path`, the record length (words) and the mapping
// function in the process state. A file that already holds the records of `num_markers`
// markers is reused as it stands; otherwise 2801 is printed, `write` fills the file (it is
// given the name) and 2803 gives the time taken. The lines go to the log of `tool`. Returns
// what `write` returned, or true for a reused file.
bool PairFileFrame(std::string_view tool, const std::string& project_path, int record_length,
                   int mapping_function, int64_t num_markers,
                   const std::function<bool(const std::string& lrd_name)>& write);

// A combined frequency above the 32-bit 0.9 is suspicious: 2802 says so, and the pair is
// written all the same.
void WarnHighFrequency(int64_t i, int64_t j, float rec_freq, float lod);

}  // namespace gae
