// SNP calls and what the parents' calls say about a marker.
//
// A call is two letters, one per allele. Array exports write the two alleles of a
// heterozygote in either order and the missing call in several ways; every call is brought to
// one of eleven forms first, so that "TA" and "AT" are the same call.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace gae {

enum SnpCall : uint8_t { kCallAA, kCallTT, kCallGG, kCallCC, kCallAT, kCallAG, kCallAC,
                         kCallTG, kCallTC, kCallGC, kCallNN };
inline constexpr int kNumSnpCalls = 11;

// The call of a two-character token (blank padded), or -1 for a token that is no call.
int NormaliseSnpCall(std::string_view token);
std::string_view SnpCallText(int call);
inline bool IsHomozygousCall(int call) { return call >= kCallAA && call <= kCallCC; }
// The two alleles ('A', 'T', 'G', 'C'); 'N' twice for the missing call.
char FirstAllele(int call);
char SecondAllele(int call);
// The call of two alleles in either order (-1 for a pair that is not a call).
int CallOfAlleles(char a, char b);

// How the parents' calls are read: two inbred parents, the four parental alleles of a clonal
// F1 or double cross, or the founders of four- and eight-way pure lines. The numbers are the
// ones users give for the mode, the design code of each family of populations.
inline constexpr int kTwoParentMode = 10;
inline constexpr int kClonalMode = 20;
inline constexpr int kFounderMode = 30;
int SnpMode(int tool_code);
// Parents per marker row: 2, 4 (mode 20, and 4PDH / 4PRIL), or 8 (8PDH / 8PRIL).
int NumSnpParents(int tool_code, int population_type);

// The five tallies of the parents' calls: AA, TT, GG, CC and NN (heterozygotes are not tallied).
struct ParentTallies {
  int count[5] = {0, 0, 0, 0, 0};
  int Missing() const { return count[4]; }
  int Largest() const;
};
ParentTallies TallyParents(std::span<const uint8_t> calls);

// The marker code the parents' calls give: 0 no polymorphism (the marker is deleted); mode 10:
// 1; mode 20: the category 1 to 5, or -1 when missing parents leave it open; mode 30: the
// founder pattern, one digit per parent (the first parent with the same call).
int32_t ParentCode(int mode, int population_type, std::span<const uint8_t> calls);

}  // namespace gae
