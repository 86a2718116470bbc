// Calls of a clonal group that look like genotyping errors: a call whose type the chain, from
// the whole chromosome around it, gives little posterior chance is suspect, as in the
// bi-parental engine.
#pragma once

#include <vector>

#include "multipoint/clonal_map.h"

namespace gae {

// `chain` evaluated with its vectors kept. A call is suspect when the posterior chance of the
// states whose type it shows is below `threshold`; markers are indices into the group's.
std::vector<SuspectCall> ClonalSuspects(const ClonalCalls& calls, const ClonalChain& chain, double threshold);

}  // namespace gae
