#pragma once

namespace gae {

struct ClassRatios {
  float p2, p1, p0;  // P1 type (A), heterozygote (H), P2 type (B)
};

// Expected proportions of the three genotype classes of one marker in a bi-parental population
// type 1..20 (all zero for any other type): 1:2:1 in an F2, 1:1 in a backcross, 3:1 after a
// backcross and selfing to fixation, and so on.
ClassRatios ExpectedRatios(int population_type);

}  // namespace gae
