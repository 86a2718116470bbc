#include "run_guard.h"
#include "map_check.h"

#include <glob.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <cstdio>
#include <thread>

#include "commands.h"
#include "gaengine.h"
#include "library_output.h"
#include "frame/tool_profile.h"
#include "input/tool_codes.h"
#include "pipeline/pair_fingerprint.h"
#include "run_settings.h"
#include "twopoint/input_pair_file.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

namespace {

// The library fills the pairwise file under a temporary name of this process and renames it
// when complete: the size of that file is the progress.
long long FileSize(const std::string& lrd) {
  glob_t found {};
  long long size = 0;
  const std::string pattern = lrd + ".part" + std::to_string(::getpid()) + "_*";
  if (::glob(pattern.c_str(), 0, nullptr, &found) == 0) {
    struct stat info {};
    for (std::size_t k = 0; k < found.gl_pathc; ++k)
      if (::stat(found.gl_pathv[k], &info) == 0) size = std::max(size, static_cast<long long>(info.st_size));
  }
  ::globfree(&found);
  return size;
}

}  // namespace

void PairProgress::Show(const std::string& lrd, long long expected_bytes, const std::atomic<bool>& done) {
  if (expected_bytes <= 0 || !::isatty(STDERR_FILENO)) return;
  bool shown = false;
  while (!done.load()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const double share = static_cast<double>(FileSize(lrd)) / static_cast<double>(expected_bytes);
    if (share <= 0.0 || share >= 1.0) continue;
    const int width = 40, filled = static_cast<int>(share * width + 0.5);
    std::fprintf(stderr, "\rpairs [%s%s] %5.1f%%", std::string(filled, '#').c_str(),
                 std::string(width - filled, ' ').c_str(), 100.0 * share);
    std::fflush(stderr);
    shown = true;
  }
  if (shown) std::fprintf(stderr, "\r%s\r", std::string(56, ' ').c_str());
}

void PairProgress::Start(const std::string& lrd, long long expected_bytes) {
  Stop();
  done_ = false;
  thread_ = std::thread(Show, lrd, expected_bytes, std::cref(done_));
}

void PairProgress::Stop() {
  done_ = true;
  if (thread_.joinable()) thread_.join();
}

std::string PreparePairFile(const std::string& path, int tool_code) {
  const gae::PairEstimator estimator = Settings().front_end ? gae::PairEstimator::kFrontEnd : gae::PairEstimator::kExact;
  const std::string lrd = gae::PairStoreName(path);
  const std::string fingerprint = [&] {
    const LibraryOutput quiet(false);  // a bad file is read again, and explained, by the check
    const gae::MapTool tool = tool_code == gae::kClonalToolCode     ? gae::MapTool::kCDM
                              : tool_code == gae::kPureLineToolCode ? gae::MapTool::kPLM
                                                                    : gae::MapTool::kMAP;
    const gae::ToolProfile& profile = gae::ProfileOf(tool);
    return gae::PairFingerprint(profile.letters, profile.record_length, gae::InputFingerprint(path, tool_code, estimator));
  }();
  if (const std::string reason = gae::ClearStalePairFile(lrd, fingerprint); !reason.empty())  // the clonal and pure-line checks hold stdout
    std::fprintf(tool_code == gae::kMapToolCode ? stdout : stderr, "%s is computed again: %s.\n", lrd.c_str(), reason.c_str());
  if (estimator == gae::PairEstimator::kExact && !fingerprint.empty()) {
    const LibraryOutput quiet;
    gae::WriteInputPairFile(path, tool_code, estimator, gae::PairStoreThreads());
  }
  return fingerprint;
}

int CheckToolFile(const std::string& path, int tool_code, MarkerTable& table) {
  if (tool_code == 20) return CheckCdmFile(path, table);
  if (tool_code == 30) return CheckPlmFile(path, table);
  return CheckMapFile(path, table);
}

std::string MarkerTable::Name(int i) const {
  std::string name;
  for (int j = 0; j < 35; ++j) name += static_cast<char>(name_codes[static_cast<size_t>(j) * num_markers + i]);
  return name.substr(0, name.find_last_not_of(' ') + 1);
}

int CheckMapFile(const std::string& path, MarkerTable& t) {
  const PathArg arg(path);
  int n = 0, status = 0;
  {
    const LibraryOutput quiet;
    MAPFindNumMarkers(arg.Len(), arg.Data(), &n, &status);
  }
  if (status != 0) return status;
  if (!DeclaredSizeFits(path, n, "markers")) return kRefusedByCommand;
  t.num_markers = n;
  t.name_codes.assign(static_cast<size_t>(n) * 35, 0);
  for (auto* v : {&t.anchor, &t.size_a, &t.size_h, &t.size_b, &t.size_x, &t.category}) v->assign(n, 0);
  t.chi_square.assign(n, 0.0f);
  t.probability.assign(n, 0.0f);
  const std::string lrd = gae::PairStoreName(path);
  const std::string fingerprint = PreparePairFile(path, gae::kMapToolCode);
  PairProgress progress;
  progress.Start(lrd, 8LL * n * (n - 1) / 2);
  std::optional<LibraryOutput> quiet(std::in_place);
  CheckErrorMAP(arg.Len(), arg.Data(), n, t.name_codes.data(), t.anchor.data(), t.size_a.data(),
                t.size_h.data(), t.size_b.data(), t.size_x.data(), t.category.data(),
                t.chi_square.data(), t.probability.data(), &status);
  quiet.reset();
  progress.Stop();
  if (status == 0) gae::RecordPairFileSource(lrd, fingerprint);
  return status;
}

bool DeclaredMarkersFit(const std::string& path, int tool_code) {
  const PathArg arg(path);
  int n = 0, status = 0;
  {
    const LibraryOutput quiet(false);
    if (tool_code == gae::kClonalToolCode) CDMFindNumMarkers(arg.Len(), arg.Data(), &n, &status);
    else if (tool_code == gae::kPureLineToolCode) PLMFindNumMarkers(arg.Len(), arg.Data(), &n, &status);
    else MAPFindNumMarkers(arg.Len(), arg.Data(), &n, &status);
  }
  return status != 0 || DeclaredSizeFits(path, n, "markers");  // a bad header is the reader's to explain
}

int CheckCdmFile(const std::string& path, MarkerTable& t) {
  const PathArg arg(path);
  int n = 0, status = 0;
  {
    const LibraryOutput quiet;
    CDMFindNumMarkers(arg.Len(), arg.Data(), &n, &status);
  }
  if (status != 0) return status;
  if (!DeclaredSizeFits(path, n, "markers")) return kRefusedByCommand;
  t.num_markers = n;
  t.name_codes.assign(static_cast<size_t>(n) * 35, 0);
  for (auto* v : {&t.anchor, &t.category}) v->assign(n, 0);
  t.clonal_sizes.assign(12, std::vector<int>(n, 0));
  t.chi_square.assign(n, 0.0f);
  t.probability.assign(n, 0.0f);
  const std::string lrd = gae::PairStoreName(path);
  const std::string fingerprint = PreparePairFile(path, gae::kClonalToolCode);
  PairProgress progress;
  progress.Start(lrd, 28LL * n * (n - 1) / 2);
  auto s = [&t](int k) { return t.clonal_sizes[k].data(); };
  CheckErrorCDM(arg.Len(), arg.Data(), n, t.name_codes.data(), t.anchor.data(), s(0), s(1), s(2),
                s(3), s(4), s(5), s(6), s(7), s(8), s(9), s(10), s(11), t.category.data(),
                t.chi_square.data(), t.probability.data(), &status);
  progress.Stop();
  if (status == 0) gae::RecordPairFileSource(lrd, fingerprint);
  return status;
}

}  // namespace gaecli
