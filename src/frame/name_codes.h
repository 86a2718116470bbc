// Names cross the C boundary as integer character codes (0 to 255), never as strings. Two
// layouts are in use: marker and trait names with the name index running fastest, and group
// names with the character index running fastest.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace gae {

// Character j of name i at linear index j * extent + i, for the first `extent` names (or all
// of them when there are fewer); a name shorter than `width` is padded with blanks.
void NamesToCodes(std::span<const std::string> names, int width, int extent, int* codes);

// Group names, 19 codes a group, one group after another.
inline constexpr int kGroupNameWidth = 19;
std::vector<int> GroupNamesToCodes(std::span<const std::string> names);
// The 19-character name of group g (0-based) from such codes.
std::string GroupNameFromCodes(const int* codes, int g);

}  // namespace gae
