// Does the data fit the population type the file declares? A wrong type makes a wrong map
// without any refusal: lines of an F2 read as a RIL lose every heterozygote to "missing", a
// backcross read as an F2 lacks a whole class. Each marker is tested against the declared type
// and against every other bi-parental type, by the calls the type cannot show and by the
// segregation test of the map reports. When most markers reject the declared type and another
// type fits more of them, the run should stop; markers that reject a type the rest fit are
// segregation distortion, worth naming.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

// A marker rejects a type below this segregation p-value.
inline constexpr float kDistortionLevel = 0.001f;

struct DesignVerdict {
  int32_t declared = 0;
  int markers = 0;
  int fit_declared = 0;               // markers that fit the declared type
  std::vector<int32_t> better;        // the types that fit the most markers, when more than the declared
  int fit_better = 0;
  char unseen = 0;                    // the letter the declared type can show least, if any
  double unseen_share = 0;            // its share of the non-missing calls
  std::vector<int> distorted;         // 0-based markers that reject the declared type
  bool wrong_design = false;          // most markers reject the declared type and another fits
};

// `letters`: per marker, the unfolded letters A H B D R X of each individual.
DesignVerdict CheckDesign(int32_t declared, const std::vector<std::string>& letters);

// Whether `marker_letters` fit `population_type`: no letter the type cannot show, few that it
// folds to missing, a class it accepts, and a segregation p-value of kDistortionLevel or more.
bool MarkerFitsType(int32_t population_type, const std::string& marker_letters);

// The verdict in the file's terms: "39% of calls are H, which a RIL cannot show; an F2 fits
// 93% of the markers" (without a hint, which depends on where the type was given).
std::string DesignMessage(const DesignVerdict& verdict);

// "a RIL", "an F2": the short name of a bi-parental type with its article.
std::string TypeWithArticle(int32_t population_type);
// "1:2:1" of an F2, "1:1" of a backcross or RIL.
std::string SegregationRatioText(int32_t population_type);

}  // namespace gae
