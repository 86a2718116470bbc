#include "support/alloc_counter.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long long> g_live{0};
std::atomic<long long> g_peak{0};

void* Take(std::size_t size, std::size_t alignment = 0) {
  if (size == 0) size = 1;
  void* p = alignment > alignof(std::max_align_t)
                ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                : std::malloc(size);
  if (p == nullptr) return nullptr;
  const long long now = g_live += static_cast<long long>(malloc_usable_size(p));
  long long peak = g_peak.load();
  while (now > peak && !g_peak.compare_exchange_weak(peak, now)) {
  }
  return p;
}

void Give(void* p) noexcept {
  if (p == nullptr) return;
  g_live -= static_cast<long long>(malloc_usable_size(p));
  std::free(p);
}

void* TakeOrThrow(std::size_t size, std::size_t alignment = 0) {
  void* p = Take(size, alignment);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}

}  // namespace

void* operator new(std::size_t size) { return TakeOrThrow(size); }
void* operator new[](std::size_t size) { return TakeOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Take(size); }
void* operator new(std::size_t size, std::align_val_t a) { return TakeOrThrow(size, static_cast<std::size_t>(a)); }
void* operator new[](std::size_t size, std::align_val_t a) { return TakeOrThrow(size, static_cast<std::size_t>(a)); }
void operator delete(void* p) noexcept { Give(p); }
void operator delete[](void* p) noexcept { Give(p); }
void operator delete(void* p, std::size_t) noexcept { Give(p); }
void operator delete[](void* p, std::size_t) noexcept { Give(p); }
void operator delete(void* p, std::align_val_t) noexcept { Give(p); }
void operator delete[](void* p, std::align_val_t) noexcept { Give(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { Give(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { Give(p); }

namespace gae::testing {

AllocationScope::AllocationScope() : start_(g_live.load()) { g_peak = start_; }

long long AllocationScope::LiveBytes() const { return g_live.load() - start_; }

long long AllocationScope::PeakBytes() const { return g_peak.load() - start_; }

}  // namespace gae::testing
