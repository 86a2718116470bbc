// Why the reader refuses a bi-parental marker, in words a breeder can act on: the reader's own
// message gives the marker's number and no reason, since one code covers a marker with no call,
// one that mixes partial and full scores, and (with its own codes) a call the population cannot
// show. A marker of one genotype class is read, but no pair can place it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gae {

// Empty when `population_type` takes the marker; else the reason, e.g. "all its calls are
// missing" or "it mixes D with A and H, which an F2 cannot score together". `letters`: the
// unfolded letters A H B D R X of each individual.
std::string BiparentalRefusal(int32_t population_type, std::string_view letters);

// True when the marker's calls, as the population type keeps them, show at most one class.
bool SingleClass(int32_t population_type, std::string_view letters);

}  // namespace gae
