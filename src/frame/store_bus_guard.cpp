#include "frame/store_bus_guard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstddef>

namespace gae {

namespace {

// A signal handler may touch only lock-free state, so the live mappings sit in a fixed table
// of atomics; a process maps a handful of stores at once, far below its size.
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
    // The pages from the fault on are replaced by zero pages: the lost records read as
    // unlinked pairs until the run notices the damage and fails.
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

bool InstallHandler() {
  page_bytes = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  struct sigaction action {};
  action.sa_sigaction = OnBusError;
  action.sa_flags = SA_SIGINFO;
  ::sigemptyset(&action.sa_mask);
  return ::sigaction(SIGBUS, &action, &previous_bus_action) == 0;
}

class BusGuard final : public MappingWatch {
 public:
  void Mapped(const void* start, std::size_t bytes) override {
    static const bool installed = InstallHandler();
    if (!installed) return;
    for (LiveMapping& slot : live_mappings) {
      char* empty = nullptr;
      slot.bytes = bytes;
      if (slot.start.compare_exchange_strong(empty, static_cast<char*>(const_cast<void*>(start)))) return;
    }
  }
  void Unmapped(const void* start) override {
    for (LiveMapping& slot : live_mappings) {
      char* mine = static_cast<char*>(const_cast<void*>(start));
      if (slot.start.compare_exchange_strong(mine, nullptr)) return;
    }
  }
  bool TakeDamage() override { return store_damaged.exchange(false); }
};

}  // namespace

MappingWatch& StoreBusGuard() {
  static BusGuard guard;
  return guard;
}

}  // namespace gae
