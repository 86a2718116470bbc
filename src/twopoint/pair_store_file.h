// Read access to a pairwise .LRD file: the file is memory-mapped once, so the map engine's
// millions of random lookups cost a memory read each, never a system call.
#pragma once

#include <cstddef>
#include <string>

#include "twopoint/pair_table.h"

namespace gae {

class PairStoreFile {
 public:
  PairStoreFile() = default;
  PairStoreFile(const PairStoreFile&) = delete;
  PairStoreFile& operator=(const PairStoreFile&) = delete;
  ~PairStoreFile() { Close(); }

  // `record_length` in 4-byte words. False when the file cannot be opened or mapped. An empty
  // file (a project of one marker) opens and holds no record.
  bool Open(const std::string& path, int record_length, int mapping_function);
  void Close();
  bool IsOpen() const { return open_; }
  const PairTable& Table() const { return table_; }

 private:
  void* mapping_ = nullptr;
  std::size_t bytes_ = 0;
  bool open_ = false;
  PairTable table_;
};

// Opens the store that the last successful CheckError export of this process wrote or found,
// with its record length and mapping function. False when there is none or it cannot be read.
bool OpenProcessPairStore(PairStoreFile& store);

}  // namespace gae
