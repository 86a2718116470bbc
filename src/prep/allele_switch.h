// A marker scored with its parents the other way round: each call reads as the other parent's.
// In lines and selfed generations A and B trade places, and so do the partial scores D (not B)
// and R (not A); in a backcross, where one parent's homozygote never occurs, the recurrent
// homozygote and the heterozygote trade places.
#pragma once

#include <cstdint>
#include <string>

namespace gae {

// Switches the reader's letters A H B D R X of one marker in place.
void SwitchAlleles(int32_t population_type, std::string& letters);
// The category after the switch: a dominant marker becomes recessive and back.
int32_t SwitchedCategory(int32_t category);

}  // namespace gae
