#include "report/remark_blocks.h"

// The remark lines are the program's own words, misspellings included: the downstream tools'
// input files are compared by eye and by text, so every written file must carry the same lines.

namespace gae {

// Populations of a cross of two inbred parents.
const std::vector<std::string_view>& BiparentalGeneralBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Note: lines staring with \"!\" are remarks and will be ignored in the program*********",
      "!*****General Information*****************************************************************",
      "!Assuming F1 = P1 x P2, populations available in QTL Varnimap are: ",
      "!  1, P1BC1F1 = P1 x F1, the first backcrossing where P1 is used as the recurrent parent;",
      "!  2, P2BC1F1 = P2 x F1, the first backcrossing where P2 is used as the recurrent parent;",
      "!  3, F1DH, F1-derived doubled haploids; ",
      "!  4, RIL or F1RIL, recombination inbred lines through the repeated selfing of F1;",
      "!  5, P1BC1RIL, recombination inbred lines through the repeated selfing of P1BC1F1;",
      "!  6, P2BC1RIL, recombination inbred lines through the repeated selfing of P2BC1F1;",
      "!  7, F2, the selfing generation of F1;",
      "!  8, F3, the selfing generation of F2;",
      "!  9, P1BC2F1, the second backcrossing where P1 is used as the recurrent parent; ",
      "! 10, P2BC2F1, the second backcrossing where P2 is used as the recurrent parent;",
      "! 11, P1BC2RIL, recombination inred lines through the repeated selfing of P1BC2F1; ",
      "! 12, P2BC2RIL, recombination inred lines through the repeated selfing of P2BC2F1; ",
      "! 13, P1BC1F2, the selfing generation of P1BC1F1; ",
      "! 14, P2BC1F2, the selfing generation of P2BC1F1; ",
      "! 15, P1BC2F2, the selfing generation of P1BC2F1; ",
      "! 16, P2BC2F2, the selfing generation of P2BC2F1; ",
      "! 17, P1BC1DH, P1BC1F1-derived doubled haploids; ",
      "! 18, P2BC1DH, P2BC1F1-derived doubled haploids; ",
      "! 19, P1BC2DH, P1BC2F1-derived doubled haploids; ",
      "! 20, P2BC2DH, P2BC2F1-derived doubled haploids; ",
  };
  return lines;
}

// How bi-parental genotypes are coded.
const std::vector<std::string_view>& BiparentalMarkerTypeBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Marker Types************************************************************************",
      "!Co-dominant marker:  When heterozygote F1 is present, ",
      "!  P1 is coded as 2 (=A or AA), F1 is coded as 1 (=H or AB), and P2 is coded as 0 (=B or BB); ",
      "!  Otherwise, P1 is coded as 2 (=A or AA), and P2 is coded as 0 (=B or BB). ",
      "!Dominant marker: When heterozygote F1 is present, ",
      "!  P1 and F1 are coded as 12 (=D or AX), and P2 is coded as 0 (=B or BB); ",
      "!  Otherwise, P1 is coded as 2 (=A or AA), and P2 is coded as 0 (=B or BB). ",
      "!Recessive markers: When heterozygote F1 is present, ",
      "!  P1 is coded as 2 (=A or AA), and F1 and P2 are coded as 10 (=R or XB); ",
      "!  Otherwise, P1 is coded as 2 (=A or AA), and P2 is coded as 0 (=B or BB). ",
      "!Missing marker is coded as -1 (=X or XX). ",
  };
  return lines;
}

// Clonal F1 and double cross: the same first two lines, then the populations.
const std::vector<std::string_view>& ClonalGeneralBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Note: lines staring with \"!\" are remarks and will be ignored in the program*********",
      "!*****General Information*****************************************************************",
      "!Assuming two heterzygouse parents have genotypes AB and CD, ",
      "!  four homozygouse parents have genotypes AA, BB, CC and DD. ",
      "!  1, Clonal F1, the progenies derived from the hybridization of AB and CD. ",
      "!     Linkage phases between linked loci are unknown before linkage analysis! ",
      "!  2, Double Cross, two hybirds are firstly made between AA and BB, and CC and DD. ",
      "!     The double cross is then made between the two hybrids. ",
      "!     Linkage phases are known if the four homozygouse parents are genotyped! ",
      "!     Linkage phases are unknown if the four parents are not genotyped! ",
      "!     For unknown phases, the double cross should be treated as clonal F1! ",
  };
  return lines;
}

// Clonal categories and their legal types, after the same "Marker Types" line.
const std::vector<std::string_view>& ClonalMarkerTypeBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Marker Types************************************************************************",
      "!Column 1 is marker category; 2 is marker name; 3 and on are marker types.",
      "!  For clonal F1, four categories are ABCD, A=B, C=D, AB=CD. Legal types are: ",
      "!    Category ABCD: AC, AD, BC, BD, XX; ",
      "!    Category A=B:  XC, XD, XX; Category C=D:  AX, BX, XX; ",
      "!    Category AB=CD:  AA, AB, BB, XX. ",
      "!  For double cross, five categories are ABCD, A=B, C=D, A=CB=D, A=DB=C. Legal types are: ",
      "!    Category ABCD: AC, AD, BC, BD, XX; ",
      "!    Category A=B:  XC, XD, XX; Category C=D:  AX, BX, XX; ",
      "!    Category A=CB=D and A=DB=C:  AA, AB, BB, XX. ",
  };
  return lines;
}

// Four- and eight-way pure lines.
const std::vector<std::string_view>& PureLineGeneralBlock() {
  static const std::vector<std::string_view> lines = {
      "!**********************Note: lines staring with \"!\" are remarks and will be ignored in the program*************************",
      "!****************************************** General Information ***********************************************************",
      "!Assuming four homozygouse parents are AA, BB, CC, and DD; eight homozygouse parents are AA, BB, CC, DD, EE, FF, GG and HH.",
      "!Assuming eight homozygouse parents are AA, BB, CC, DD, EE, FF, GG and HH. ",
      "!Four types of populations that can analyzed in GNPL are: ",
      "!  1, 4PDH: doubled haploid (DH) lines derived from double cross (AAxBB)x(CCxDD).",
      "!  2, 4PRIL: RILs derived from double cross (AAxBB)x(CCxDD).",
      "!  3, 8PDH: DHs derived from eight-way cross [(AAxBB)x(CCxDD)]x[(EExFF)x(GGxHH)].",
      "!  4, 8PRIL: RILs derived from eight-way cross [(AAxBB)x(CCxDD)]x[(EExFF)x(GGxHH)].",
  };
  return lines;
}

// Pure-line letters, after the same "Marker Types" and "Column 1" lines.
const std::vector<std::string_view>& PureLineMarkerTypeBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Marker Types************************************************************************",
      "!Column 1 is marker category; 2 is marker name; 3 and on are marker types.",
      "!For 4PDH and 4PRIL, Legal marker types are A, B, C, D, X. ",
      "!For 8PDH and 8PRIL, Legal marker types are A, B, C, D, E, F, G, H, X. ",
  };
  return lines;
}

// Before the anchor rows of a mapping file.
const std::vector<std::string_view>& AnchorBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Anchor information******************************************************************",
      "!Marker name followed by anchor group",
  };
  return lines;
}

// Before the chromosome rows of a file with a map.
const std::vector<std::string_view>& ChromosomeBlock() {
  static const std::vector<std::string_view> lines = {
      "!*****Chromosomes and Linkage Maps********************************************************",
      "!ChromosomeName       NumMarkers",
  };
  return lines;
}

// Before the (user-supplied) trait rows.
const std::vector<std::string_view>& PhenotypeBlock() {
  static const std::vector<std::string_view> lines = {
      "!***************************Phenotypic Data***************************",
      "!\"NA\", \"na\", \"*\", \".\", or \"-\" represent missing phenotypic values",
  };
  return lines;
}

}  // namespace gae

namespace gae {

std::string BlockText(const std::vector<std::string_view>& block) {
  std::string text;
  for (std::string_view line : block) {
    text += line;
    text += '\n';
  }
  return text;
}

}  // namespace gae
