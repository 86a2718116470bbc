#include "twopoint/pair_store_writer.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "vocabulary/message_code.h"
#include "vocabulary/messages.h"
#include "vocabulary/path_stem.h"
#include "vocabulary/pair_index.h"

namespace gae {

// Records are written as the processor holds them; the file format is little-endian.
static_assert(std::endian::native == std::endian::little);

std::string PairStoreName(const std::string& project_path) {
  return PathStem(project_path) + ".LRD";
}

bool PairStoreIsComplete(const std::string& lrd_name, int64_t num_markers, int record_length) {
  struct stat info {};
  if (::stat(lrd_name.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  const int64_t records = PairCount(num_markers);
  const int64_t record_bytes = 4 * static_cast<int64_t>(record_length);
  // Record 0 does not exist: a one-marker project never has a complete file.
  // A file of another tool's records (8 bytes against 28) can hold as many whole records plus
  // a remainder: only an exact multiple is a store of this record length.
  return records >= 1 && info.st_size % record_bytes == 0 && info.st_size / record_bytes == records;
}

int PairStoreThreads() {
  if (const char* text = std::getenv("GAENGINE_THREADS")) {
    const long value = std::strtol(text, nullptr, 10);
    if (value > 0) return static_cast<int>(std::min(value, 256L));
  }
  const unsigned cores = std::thread::hardware_concurrency();
  return cores > 0 ? static_cast<int>(cores) : 1;
}

void PairOfRecord(int64_t k, int64_t& i, int64_t& j) {
  // Row i holds records (i-1)(i-2)/2 + 1 .. i(i-1)/2.
  i = static_cast<int64_t>((1.0 + std::sqrt(8.0 * static_cast<double>(k))) / 2.0);
  while (PairCount(i) < k) ++i;
  while (i > 2 && PairCount(i - 1) >= k) --i;
  j = k - PairCount(i - 1);
}

namespace {

// A first value or a frequency that is not a number says nothing about linkage, yet a NaN
// frequency beside a large LOD once chained unrelated chromosomes into one group: the pair is
// kept as unlinked. True when the record was replaced.
bool KeepAsUnlinked(const PairStoreJob& job, float* record) {
  if (!std::isnan(record[0]) && !std::isnan(record[1])) return false;
  record[0] = job.unlinked_first;
  record[1] = 0.5f;
  return true;
}

void EstimateBlock(const PairStoreJob& job, int64_t first, int64_t count, float* out,
                   int64_t* not_a_number) {
  int64_t i = 0, j = 0;
  PairOfRecord(first, i, j);
  for (int64_t n = 0; n < count;) {
    const int64_t run = job.estimate_row ? std::min(count - n, i - j) : 1;
    float* records = out + n * job.record_length;
    if (job.estimate_row) job.estimate_row(i, j, run, records);
    else job.estimate(i, j, records);
    for (int64_t k = 0; k < run; ++k)
      if (job.record_length >= 2 && KeepAsUnlinked(job, records + k * job.record_length)) ++*not_a_number;
    n += run;
    j += run;
    if (j == i) {
      ++i;
      j = 1;
    }
  }
}

}  // namespace

bool WritePairStore(const PairStoreJob& job, int64_t* not_a_number) {
  // Filled under a temporary name and renamed when complete: a run that maps from the old file
  // keeps reading it whole, and no reader ever meets a half-written store.
  const std::string part = TemporaryName(job.lrd_name);
  std::FILE* file = std::fopen(part.c_str(), "wbx");
  if (file == nullptr) return false;
  const int64_t total = PairCount(job.num_markers);
  const int threads = std::max(1, job.threads);
  const int64_t block = std::max<int64_t>(1, job.block_records);
  const int64_t round_records = block * threads;
  // A round is cut into pieces that the threads claim as they come free, so a slow stretch of
  // pairs (unlinked pairs that iterate long) or a core busy with other work holds up only its
  // own piece, not the whole round.
  const int64_t piece = std::max<int64_t>(1, block / 8);
  std::vector<float> buffer(static_cast<std::size_t>(round_records * job.record_length));
  std::vector<int64_t> replaced(threads, 0);

  bool ok = true;
  for (int64_t first = 1; first <= total && ok; first += round_records) {
    const int64_t count = std::min(round_records, total - first + 1);
    const int64_t pieces = (count + piece - 1) / piece;
    std::atomic<int64_t> next{0};
    auto work = [&](int t) {
      for (int64_t p = next++; p < pieces; p = next++) {
        const int64_t offset = p * piece;
        EstimateBlock(job, first + offset, std::min(piece, count - offset),
                      buffer.data() + offset * job.record_length, &replaced[t]);
      }
    };
    std::vector<std::thread> workers;
    const int helpers = static_cast<int>(std::min<int64_t>(threads, pieces)) - 1;
    for (int t = 0; t < helpers; ++t) workers.emplace_back(work, t + 1);
    work(0);
    for (std::thread& w : workers) w.join();
    if (job.inspect) {
      int64_t i = 0, j = 0;
      PairOfRecord(first, i, j);
      for (int64_t n = 0; n < count; ++n) {
        job.inspect(i, j, buffer.data() + n * job.record_length);
        if (++j == i) {
          ++i;
          j = 1;
        }
      }
    }
    const std::size_t words = static_cast<std::size_t>(count * job.record_length);
    ok = std::fwrite(buffer.data(), 4, words, file) == words;
  }
  int64_t unlinked = 0;
  for (const int64_t r : replaced) unlinked += r;
  ok = (std::fclose(file) == 0) && ok;
  ok = ok && std::rename(part.c_str(), job.lrd_name.c_str()) == 0;
  if (!ok) std::remove(part.c_str());
  // One line for all such pairs: a data set can hold thousands of them.
  if (unlinked > 0) {
    MessageCode() = 2806;
    PrintPairwiseMessage(0, 0, 0.0f, 0.0f, 0.0f, unlinked);
    MessageCode() = 0;
  }
  if (not_a_number != nullptr) *not_a_number = unlinked;
  return ok;
}

}  // namespace gae
