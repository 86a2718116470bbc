// Which map tool's design a SNP file is of, from the file itself: the number of parents' calls
// on a marker row of its parents' section. Two parents are the inbred parents of a bi-parental
// population; eight, the founders of eight-way pure lines. Four are either the four parental
// alleles of a clonal F1 or double cross or the founders of four-way pure lines: the progeny
// tell them apart, since a pure line is homozygous at (almost) every marker while half or more
// of the offspring of two heterozygous parents are heterozygous at any marker that segregates.
#pragma once

#include <string>

namespace gae {

struct SnpDesignChoice {
  int mode = 0;         // kTwoParentMode, kClonalMode or kFounderMode; 0 when refused
  int num_parents = 0;  // calls on the first row of the parents' section (0: none found)
  std::string why;      // how the design was told, or why the file was refused
};

// `requested_mode` is the caller's design (kTwoParentMode, kClonalMode, kFounderMode), or 0 to
// take the file's. A request that the parents' count contradicts is refused, as is a count
// that no design has or one that the file's population type does not allow. Nothing is printed
// by the count; telling four parents apart reads the file once with the SNP reader, which
// prints what it prints.
SnpDesignChoice ChooseSnpDesign(const std::string& path, int requested_mode);

}  // namespace gae
