// The pair-file writers reuse a pairwise file whenever it holds the right number of records,
// whatever data it was computed from; clearing a stale one is left to the caller. Beside each
// pairwise file a run lets them write, the run keeps a fingerprint of the input it came from,
// and removes the file (so that it is computed again) when the input no longer matches, or when
// the pairwise file is not the one it saw written.
#pragma once

#include <string>
#include <string_view>

#include "input/map_tool_reader.h"
#include "twopoint/pair_estimator.h"

namespace gae {

// The fingerprint of a MAP input file: a 64-bit FNV-1a hash of what its pairs are estimated
// from, as the library reads it: population type, mapping function, sizes, marker names and
// categories, and genotypes. Remarks, spacing and anchors do not count. Empty when the file
// cannot be read (the check that follows says why).
std::string InputFingerprint(const std::string& input_path, int tool_code, PairEstimator estimator);
// The same fingerprint of a genotype file already read (MAP, CDM or PLM): the categories of a
// clonal or pure-line file are its markers' types and founder patterns.
std::string GenotypeFingerprint(const MapToolInput& data, PairEstimator estimator);
// The fingerprint of a consensus (CMP) input file: each input map's marker names and positions.
std::string ConsensusFingerprint(const std::string& input_path);

// Every byte of an input file, for a tool whose pairs have no reader-level fingerprint here.
std::string FileBytesFingerprint(const std::string& input_path);

// What a pairwise file is kept against: the tool that wrote it and its record length (a MAP
// and a PLM file of one stem share the .LRD name, with records of the same length), and the
// fingerprint of the data. Empty when `data` is.
std::string PairFingerprint(std::string_view tool_letters, int record_length, const std::string& data);

// Where the fingerprint of a pairwise file is kept: its name plus ".source".
std::string FingerprintFileName(const std::string& lrd_path);

// Removes `lrd_path` unless the fingerprint kept beside it names this input and this very
// file (its size and modification time). Returns the reason it was removed, empty if kept or
// if there was no pairwise file.
std::string ClearStalePairFile(const std::string& lrd_path, const std::string& fingerprint);

// Records that `lrd_path`, as it now stands, was computed from the input of `fingerprint`.
void RecordPairFileSource(const std::string& lrd_path, const std::string& fingerprint);

}  // namespace gae
