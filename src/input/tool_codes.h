// The tool code a reader is handed names the kind of file it reads, since the same header
// fields, marker rows and anchors are laid out a little differently in each: the bi-parental
// genotype file (104), the consensus file of several maps (105), and the clonal (20) and
// pure-line (30) genotype files, whose rows start with a category field because a marker's
// genotype codes there only mean something once it is known which parents share an allele.
// The map tools pass the same numbers as the ToolCode of their stage exports.
#pragma once

namespace gae {

inline constexpr int kMapToolCode = 104;
inline constexpr int kConsensusToolCode = 105;
inline constexpr int kClonalToolCode = 20;
inline constexpr int kPureLineToolCode = 30;
// The header of a bi-parental file read on its own, for its marker count.
inline constexpr int kMapHeaderCode = 10;

inline bool HasCategoryField(int tool_code) {
  return tool_code == kClonalToolCode || tool_code == kPureLineToolCode;
}

}  // namespace gae
