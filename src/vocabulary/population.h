// The vocabulary of mapping populations shared by the readers, the two-point engines, the
// writers and the error scan: the families of population (designs), the population types of a
// bi-parental cross, their names and the segregation they are expected to show.
#pragma once

#include <cstdint>
#include <string_view>

namespace gae {

// A design code names the family of population: 10 bi-parental (population types 1 to 20),
// 20 clonal F1 and double cross (types 1, 2), 31 four-way pure lines (1 DH, 2 RIL) and 32
// eight-way pure lines (3 DH, 4 RIL).
inline constexpr int32_t kBiparentalDesign = 10;
inline constexpr int32_t kClonalDesign = 20;
inline constexpr int32_t kFourWayDesign = 31;
inline constexpr int32_t kEightWayDesign = 32;

// Bi-parental types whose individuals carry a backcross to P1 (1, 9) or to P2 (2, 10) in their
// last generation: only the recurrent parent's class and the heterozygote occur.
bool BackcrossToP1(int population_type);
bool BackcrossToP2(int population_type);
// Bi-parental types that end with a selfing generation (F2, F3 and the selfed backcrosses):
// all three classes occur, heterozygotes included.
bool SelfedGeneration(int population_type);

// The name of a population type as the written input files and reports give it: "F2" for
// bi-parental type 7, "Clonal F1" for clonal type 1, "8PRIL" for pure-line type 4. Empty for a
// type that the design does not have. `design` is one of the codes above; both pure-line
// designs take the pure-line types 1 to 4.
std::string_view PopulationName(int32_t design, int population_type);

// The population type that `text` names within a design: its number or its name as above, in
// any case ("f2", "7"); a name with alternatives ("RIL or F1RIL") answers to either word. 0 when
// the design has no such type.
int PopulationTypeNamed(int32_t design, std::string_view text);

// Founders of a pure-line population type: 4 for types 1 and 2 (4PDH, 4PRIL), 8 for types 3
// and 4 (8PDH, 8PRIL), 0 for any other type.
int PureLineFounders(int population_type);

struct ClassRatios {
  float p2, p1, p0;  // P1 type (A), heterozygote (H), P2 type (B)
};

// Expected proportions of the three genotype classes of one marker in a bi-parental population
// type 1..20 (all zero for any other type): 1:2:1 in an F2, 1:1 in a backcross, 3:1 after a
// backcross and selfing to fixation, and so on.
ClassRatios ExpectedRatios(int population_type);

}  // namespace gae
