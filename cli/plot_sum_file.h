// Reading back the fixed-column map summary (.sum, and the parents' .sumf and .summ of clonal
// maps): the pictures are drawn from what the reports say, so they agree with them exactly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gaecli {

struct SumMarker {
  int32_t group = 0;
  std::string group_name;  // blanks trimmed
  std::string name;        // as printed: at most 19 characters
  float interval = 0.0f;
  float position = 0.0f;   // cM
};

struct SumGroup {
  int32_t number = 0;
  std::string name;
  int32_t num_markers = 0;
  float length = 0.0f;
};

struct SumListed {
  int32_t number = 0;  // the marker's number in the input file
  std::string name;
};

struct SumFile {
  std::vector<SumMarker> markers;  // linked markers, group by group in map order
  std::vector<SumGroup> groups;    // every group, also one without markers
  std::vector<SumListed> unlinked, deleted;

  std::vector<const SumMarker*> MarkersOf(int32_t group) const;
};

// Parses the text of a summary file. Only the columns that every tool's summary shares are
// read (group, group name, marker, interval, position); the tool's further columns are passed
// over. False with a one-line `error` when the text is not such a summary.
bool ParseSumText(const std::string& text, SumFile& out, std::string& error);

}  // namespace gaecli
