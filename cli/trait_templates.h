// The QTL files of a map run carry the population's traits when an import kept them beside the
// input (<stem>.traits.tsv): .bip gets every trait, .met the first one as its one environment.
// Each filled file is read back by its validator; one the validator refuses is put back as the
// empty frame the library wrote.
#pragma once

#include <string>

namespace gaecli {

// Returns the summary line ("QTL files ..."), empty when there was nothing to fill.
std::string FillQtlFiles(const std::string& input_file);

}  // namespace gaecli
