#include "twopoint/pair_store_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace gae {

bool PairStoreFile::Open(const std::string& path, int record_length, int mapping_function, MappingWatch* watch) {
  Close();
  if (record_length < 1) return false;
  // Non-blocking: a pipe left at the name must not hold the run; it is refused below.
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return false;
  struct stat info {};
  if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    ::close(fd);
    return false;
  }
  bytes_ = static_cast<std::size_t>(info.st_size);
  if (bytes_ > 0) {
    mapping_ = ::mmap(nullptr, bytes_, PROT_READ, MAP_PRIVATE, fd, 0);
    if (mapping_ == MAP_FAILED) {
      mapping_ = nullptr;
      ::close(fd);
      return false;
    }
    // Lookups jump all over the file during grouping and ordering.
    ::madvise(mapping_, bytes_, MADV_RANDOM);
    watch_ = watch;
    if (watch_ != nullptr) watch_->Mapped(mapping_, bytes_);
  }
  ::close(fd);
  table_.records = static_cast<const float*>(mapping_);
  table_.record_length = record_length;
  table_.num_records = static_cast<int64_t>(bytes_ / (4u * static_cast<unsigned>(record_length)));
  table_.mapping_function = mapping_function;
  open_ = true;
  return true;
}

void PairStoreFile::Passed(int64_t records) {
  if (mapping_ == nullptr) return;
  char* start = static_cast<char*>(mapping_);
  if (records < 0) {
    ::madvise(mapping_, bytes_, MADV_RANDOM);
    return;
  }
  const std::size_t done = std::min(bytes_, static_cast<std::size_t>(records) * 4u * static_cast<std::size_t>(table_.record_length));
  const auto page_bytes = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t whole = (done / page_bytes) * page_bytes;
  if (whole > 0) ::madvise(mapping_, whole, MADV_DONTNEED);
  if (whole < bytes_) ::madvise(start + whole, bytes_ - whole, MADV_SEQUENTIAL);
}

void PairStoreFile::Close() {
  if (mapping_ != nullptr) {
    if (watch_ != nullptr) watch_->Unmapped(mapping_);
    ::munmap(mapping_, bytes_);
  }
  mapping_ = nullptr;
  watch_ = nullptr;
  bytes_ = 0;
  table_ = PairTable{};
  open_ = false;
}

bool OpenPairStore(PairStoreFile& store, const PairStoreSettings& settings) {
  if (settings.lrd_name.empty()) return false;
  if (!store.Open(settings.lrd_name, settings.record_length, settings.mapping_function, settings.watch)) return false;
  if (settings.expected_records < 0 || store.Table().num_records == settings.expected_records) return true;
  store.Close();
  return false;
}

}  // namespace gae
