// gaengine map FILE on a consensus-map (CMP) file: the consensus with the default settings, run
// step by step through the exports, and a summary of how each input map agrees with it.
#pragma once

#include <string>

namespace gaecli {

int RunConsensus(const std::string& file);

}  // namespace gaecli
