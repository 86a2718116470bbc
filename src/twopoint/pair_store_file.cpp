#include "twopoint/pair_store_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>

namespace gae {

namespace {

// A store cut short under a running map (another program truncating it in place) would end
// the process with SIGBUS at the first lookup past the new end. The signal is caught for the
// stores this process maps: the lost pages read as zeros from then on, and the damage is
// reported, so the entry fails the run instead of the process dying. The table of mappings is
// process-wide because a signal handler is.
struct LiveMapping {
  std::atomic<char*> start{nullptr};
  std::atomic<std::size_t> bytes{0};
};
constexpr int kMappingSlots = 64;
LiveMapping live_mappings[kMappingSlots];
std::atomic<bool> store_damaged{false};
struct sigaction previous_bus_action {};
std::size_t page_bytes = 4096;

void OnBusError(int, siginfo_t* info, void*) {
  char* at = static_cast<char*>(info->si_addr);
  for (LiveMapping& slot : live_mappings) {
    char* start = slot.start.load();
    const std::size_t bytes = slot.bytes.load();
    if (start == nullptr || at < start || at >= start + bytes) continue;
    char* from = start + ((at - start) / page_bytes) * page_bytes;
    if (::mmap(from, static_cast<std::size_t>(start + bytes - from), PROT_READ,
               MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED) {
      store_damaged = true;
      return;  // the read is made again, on the zero page
    }
  }
  // Not a store of ours: the fault takes its usual course when the read is made again.
  ::sigaction(SIGBUS, &previous_bus_action, nullptr);
}

void WatchMapping(void* start, std::size_t bytes) {
  static const bool installed = [] {
    page_bytes = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    struct sigaction action {};
    action.sa_sigaction = OnBusError;
    action.sa_flags = SA_SIGINFO;
    ::sigemptyset(&action.sa_mask);
    return ::sigaction(SIGBUS, &action, &previous_bus_action) == 0;
  }();
  if (!installed) return;
  for (LiveMapping& slot : live_mappings) {
    char* empty = nullptr;
    slot.bytes = bytes;
    if (slot.start.compare_exchange_strong(empty, static_cast<char*>(start))) return;
  }
}

void ForgetMapping(void* start) {
  for (LiveMapping& slot : live_mappings) {
    char* mine = static_cast<char*>(start);
    if (slot.start.compare_exchange_strong(mine, nullptr)) return;
  }
}

}  // namespace

bool TakePairStoreDamage() { return store_damaged.exchange(false); }

bool PairStoreFile::Open(const std::string& path, int record_length, int mapping_function) {
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
    WatchMapping(mapping_, bytes_);
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
  const std::size_t whole = (done / page_bytes) * page_bytes;
  if (whole > 0) ::madvise(mapping_, whole, MADV_DONTNEED);
  if (whole < bytes_) ::madvise(start + whole, bytes_ - whole, MADV_SEQUENTIAL);
}

void PairStoreFile::Close() {
  if (mapping_ != nullptr) {
    ForgetMapping(mapping_);
    ::munmap(mapping_, bytes_);
  }
  mapping_ = nullptr;
  bytes_ = 0;
  table_ = PairTable{};
  open_ = false;
}

bool OpenPairStore(PairStoreFile& store, const PairStoreSettings& settings) {
  if (settings.lrd_name.empty()) return false;
  if (!store.Open(settings.lrd_name, settings.record_length, settings.mapping_function)) return false;
  if (settings.expected_records < 0 || store.Table().num_records == settings.expected_records) return true;
  store.Close();
  return false;
}

}  // namespace gae
