// What the map commands check before they trust a file, and after its pairs stand: a row longer
// than the population, data that fit another population type better than the declared one,
// markers anchored to a group their pairs deny, and markers with switched alleles. Each stops
// the run with exit 1 and a message in the file's terms; --force maps anyway where the data
// may be right after all. The rules are the library's (prep/, input/); this file prints.
#pragma once

#include <string>
#include <vector>

#include "map_check.h"

namespace gaecli {

// The long-row check of any map tool's file, then the design check of a bi-parental one.
// Markers that reject a design the rest fit go into `notes` as a summary line. Returns 0, or 1
// after the message.
int CheckBeforePairs(const std::string& file, int tool_code, bool force, std::vector<std::string>& notes);

// Anchors against the pairs and switched alleles, from the pair file of `file`. Returns 0, or 1
// after the message (switched alleles stop the run unless `force`; anchor conflicts always do,
// since an anchor overrides the data).
int CheckPairFile(const std::string& file, int tool_code, const MarkerTable& markers, float threshold, bool force,
                  std::vector<std::string>& notes);
// The same from the marker names (input order, trailing blanks dropped) and anchors.
int CheckPairFile(const std::string& file, int tool_code, const std::vector<std::string>& names,
                  const std::vector<int32_t>& anchors, float threshold, bool force, std::vector<std::string>& notes);

// `gaengine map --switch-alleles A,B FILE`: writes FILE's data with those markers switched to
// `<stem>_sw.map` beside it and returns that name; empty after a message when it cannot.
std::string WriteSwitchedCopy(const std::string& file, const std::vector<std::string>& markers);

// "D1M3 D2M5 ...": at most `shown` names, then how many more.
std::string NameList(const std::vector<std::string>& names, std::size_t shown = 10);

}  // namespace gaecli
