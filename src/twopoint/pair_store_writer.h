// Writing the pairwise .LRD file: one fixed-length record of 32-bit little-endian words for
// each unordered marker pair, record K = (I-1)(I-2)/2 + J for J < I, lower triangle row by
// row, no header.
//
// Pairs are estimated on all cores, in pieces of consecutive records that the threads claim as
// they come free, and are written in record order, so the file is the same byte for byte
// whatever the number of threads. Memory stays flat: one block of records per thread, never an
// m by m matrix.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace gae {

// The .LRD name of a project file: its path less the last four characters, plus ".LRD".
std::string PairStoreName(const std::string& project_path);

// Whether a file of `record_length` words per record holds exactly the records of
// `num_markers` markers: the file is then taken as complete and reused, whatever it holds.
bool PairStoreIsComplete(const std::string& lrd_name, int64_t num_markers, int record_length);

// Number of threads for estimating pairs: the environment variable GAENGINE_THREADS when it
// holds a positive number, otherwise the number of cores.
int PairStoreThreads();

struct PairStoreJob {
  std::string lrd_name;
  int64_t num_markers = 0;
  int record_length = 2;
  int threads = 1;
  int64_t block_records = int64_t{1} << 18;  // records per thread held at once
  // Fills the record of the pair (i, j), i > j, 1-based. Called from several threads at once.
  std::function<void(int64_t i, int64_t j, float* record)> estimate;
  // When given, used in place of `estimate`: fills the `count` consecutive records of row i
  // from the pair (i, j) on (all of them pairs of the row), so that pairs can be taken together.
  std::function<void(int64_t i, int64_t j, int64_t count, float* records)> estimate_row;
  // Sees every record in record order, on the calling thread, before it is written: warnings
  // go here, and so does whatever must follow record order (a draw from the random stream).
  std::function<void(int64_t i, int64_t j, float* record)> inspect;
  // The first word of an unlinked pair: minus a LOD of 0. A store of distances sets its own.
  float unlinked_first = 0.0f;
};

// Writes the whole file; false when it cannot be created or written. A record whose first
// value or frequency is not a number is stored as unlinked (`unlinked_first`, 0.5); such
// records are counted in `not_a_number` and in one 2806 warning line of the caller's log.
bool WritePairStore(const PairStoreJob& job, int64_t* not_a_number = nullptr);

// The pair (i, j), i > j, of record k (1-based).
void PairOfRecord(int64_t k, int64_t& i, int64_t& j);

}  // namespace gae
