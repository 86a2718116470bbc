// Small valid input files of the validated tools, one per tool, with a comment behind each
// header value so that a test can change one value by a plain text replacement.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace gae::testing {

// F2, two chromosomes of two markers, four individuals. The chromosome of a map row is given
// by name or by number.
inline const std::string kSdl =
    "7 !pop\n1 !fn\n2 !space\n1 !unit\n2 !chs\n4 !size\n"
    "Chr1 2\nChr2 2\n"
    "M1 Chr1 0.0\nM2 1 10.5\nM3 Chr2 0.0\nM4 2 20.0\n"
    "M1 A H B A\nM2 A H B H\nM3 B B A H\nM4 X H B A\n";

inline const std::string kBip = "1 !ind\n" + kSdl.substr(0, kSdl.find("4 !size")) +
                                "4 !size\n2 !traits\n" + kSdl.substr(kSdl.find("Chr1 2")) +
                                "Yield 1.0 2.0 3.0 4.0\nHeight 10 11 12 13\n";

inline const std::string kMet = kSdl.substr(0, kSdl.find("Chr1 2")) + "2 !envs\n" +
                                kSdl.substr(kSdl.find("Chr1 2")) +
                                "E1 1.0 2.0 3.0 4.0\nE2 1.5 2.5 3.5 4.5\n";

// Two RIL families of two lines each share the population of four.
inline const std::string kNam =
    "4 !pop\n1 !fn\n2 !space\n1 !unit\n1 !chs\n2 !families\n1 !traits\n"
    "F1 2\nF2 2\n"
    "Chr1 2\nM1 1 0.0\nM2 1 5.0\n"
    "M1 A B A B\nM2 A B B AB\n"
    "Yield 1 2 3 4\n";

inline const std::string kPlq =
    "2 !pop\n1 !fn\n2 !space\n1 !unit\n1 !chs\n4 !size\n1 !traits\n"
    "Chr1 2\nM1 1 0.0\nM2 1 5.0\n"
    "ABCD M1 A B C D\nABAB M2 A B C X\n"
    "Yield 1 2 3 4\n";

inline const std::string kCdq =
    "1 !pop\n1 !fn\n2 !space\n1 !unit\n1 !chs\n4 !size\n1 !traits\n"
    "Chr1 2\nM1 1 0.0\nM2 1 5.0\n"
    "ABCD M1 AC AD BC BD\nA=B M2 XC XD XX XC\n"
    "Yield 1 2 3 4\n";

inline const std::string kCsl =
    "1 !ind\n2 !markers\n4 !size\n1 !traits\n1 !envs\n1 !reps\n"
    "M1 2 0 2 0\nM2 2 2 0 -1\n"
    "Yield 1 2 3 4\n";

inline const std::string kAov =
    "3 !rows\n4 !cols\n"
    "Env Gtp Blk Yield\n"
    "E1 G1 1 5.0\nE1 G2 1 6.0\n";

inline const std::string kCmp =
    "2 !space\n1 !unit\n2 !chs\n"
    "MapA 3\nMapB 2\n"
    "M1 MapA 0\nM2 MapA 5\nM3 MapA 9\nM2 MapB 0\nM3 MapB 4\n";

inline const std::string kGsp = "10 !training\n5 !breeding\n2 !traits\nYield Height\n";

// `base` with each `from` replaced (once) by its `to`; a `from` that is not there fails the test.
inline std::string Edit(std::string base,
                        const std::vector<std::pair<std::string, std::string>>& edits) {
  for (const auto& [from, to] : edits) {
    const std::size_t at = base.find(from);
    if (at == std::string::npos) ADD_FAILURE() << "no \"" << from << "\" in the base file";
    else base.replace(at, from.size(), to);
  }
  return base;
}

}  // namespace gae::testing
