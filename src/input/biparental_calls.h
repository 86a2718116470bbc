// The bi-parental rules of the marker section, one call at a time: which letter a token is,
// what a population type makes of that letter, and the class a marker's folded letters give.
// The marker decoder applies them to a whole row; the command's checks before a run and the
// import of other programs' files use the same rules.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace gae {

// A, H, B, D, R or X for an accepted token (compared as the marker section does, by its first
// two characters), 'Z' for any other.
char BiparentalTokenLetter(std::string_view item);

// The letter a population type keeps of `letter`: itself, X where the type folds it (a dominant
// score in a backcross to P1, a recessive one in a backcross to P2, a heterozygote in inbred or
// doubled-haploid lines), or '\0' where the type cannot show it at all.
char FoldBiparentalLetter(int32_t population_type, char letter);

// The letters a population type's lines can carry, as the reader lists them ("AHDX", ...).
std::string_view LegalBiparentalLetters(int32_t population_type);

// 1 codominant, 12 dominant, 10 recessive, 0 for a marker the type refuses (nothing but
// missing calls, or classes that cannot stand together). `letters` are already folded.
int32_t BiparentalCategory(int32_t population_type, std::span<const char> letters);

}  // namespace gae
