// The library reuses a pairwise file whenever it holds the right number of records, whatever
// data it was computed from; clearing a stale one is left to the caller. The command line
// keeps, beside each pairwise file it lets the library write, a fingerprint of the input it
// came from, and removes the file (so that the library computes it again) when the input no
// longer matches, or when the pairwise file is not the one it saw written.
#pragma once

#include <string>

#include "twopoint/pair_estimator.h"

namespace gaecli {

// The fingerprint of a MAP, CDM or PLM input file (by the tool's code, 104, 20 or 30) and of the
// estimator its pairs are computed with: a 64-bit FNV-1a hash of what the pairs are estimated
// from, as the library reads it (population type, mapping function, sizes, marker names and
// categories or founder patterns, and genotypes), then the estimator's name. Remarks, spacing
// and anchors do not count. Empty when the file cannot be read (the check that follows says
// why).
std::string InputFingerprint(const std::string& input_path, int tool_code, gae::PairEstimator estimator);
// The fingerprint of a consensus (CMP) input file: each input map's marker names and positions.
std::string ConsensusFingerprint(const std::string& input_path);

// Where the fingerprint of a pairwise file is kept: its name plus ".source".
std::string FingerprintFileName(const std::string& lrd_path);

// Removes `lrd_path` unless the fingerprint kept beside it names this input, this estimator and
// this very file (its size and modification time). Returns the reason it was removed, empty if kept or
// if there was no pairwise file.
std::string ClearStalePairFile(const std::string& lrd_path, const std::string& fingerprint);

// Records that `lrd_path`, as it now stands, was computed from the input of `fingerprint`.
void RecordPairFileSource(const std::string& lrd_path, const std::string& fingerprint);

}  // namespace gaecli
