// Read access to a pairwise .LRD file: the file is memory-mapped once, so the map engine's
// millions of random lookups cost a memory read each, never a system call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "twopoint/pair_table.h"

namespace gae {

// Told of each mapping a store makes and drops. A store cut short under a running map (another
// program truncating it in place) ends the process with SIGBUS at the first lookup past the new
// end; only the owner of the process may catch signals, so it watches the mappings and reports
// the damage, and the run fails instead of the process dying.
class MappingWatch {
 public:
  virtual void Mapped(const void* start, std::size_t bytes) = 0;
  virtual void Unmapped(const void* start) = 0;
  // Whether a watched store lost pages since the last call (they read as zeros); clears it.
  virtual bool TakeDamage() = 0;

 protected:
  ~MappingWatch() = default;
};

// Where a pairwise store lies and how to read it: the last successful CheckError of a process
// leaves these for the stage exports that follow.
struct PairStoreSettings {
  std::string lrd_name;          // empty until a CheckError export has written or found one
  int32_t record_length = 0;     // in 4-byte words: 2, or 7 for clonal populations
  int32_t mapping_function = 1;  // 1 Kosambi, 2 Haldane, 3 Morgan: how stored frequencies become cM
  // The records the store must hold, once known: a file cut short since it was written is
  // refused, not read as a map of unlinked markers.
  int64_t expected_records = -1;
  MappingWatch* watch = nullptr;  // none: a store cut short under the run ends the process
};

class PairStoreFile {
 public:
  PairStoreFile() = default;
  PairStoreFile(const PairStoreFile&) = delete;
  PairStoreFile& operator=(const PairStoreFile&) = delete;
  ~PairStoreFile() { Close(); }

  // `record_length` in 4-byte words. False when the file cannot be opened or mapped. An empty
  // file (a project of one marker) opens and holds no record.
  bool Open(const std::string& path, int record_length, int mapping_function, MappingWatch* watch = nullptr);
  void Close();
  bool IsOpen() const { return open_; }
  const PairTable& Table() const { return table_; }
  // A pass over the records in file order has read those before `records`: they leave this
  // process's memory (the system still caches them) and those after are read ahead. A pass
  // over a store larger than memory thus holds a stretch of it at a time. Negative: the pass
  // is over, and lookups jump about again.
  void Passed(int64_t records);

 private:
  void* mapping_ = nullptr;
  MappingWatch* watch_ = nullptr;
  std::size_t bytes_ = 0;
  bool open_ = false;
  PairTable table_;
};

// Opens the store that `settings` describe. False when there is none or it cannot be read.
bool OpenPairStore(PairStoreFile& store, const PairStoreSettings& settings);

}  // namespace gae
