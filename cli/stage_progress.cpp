#include "stage_progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace gaecli {

namespace {

constexpr int kWidth = 40;

void Clear() { std::fprintf(stderr, "\r%s\r", std::string(kWidth + 24, ' ').c_str()); }

}  // namespace

StageProgress::StageProgress() : terminal_(::isatty(STDERR_FILENO) != 0) {}

StageProgress::~StageProgress() {
  if (terminal_ && shown_ >= 0) Clear();
}

void StageProgress::Show(std::string_view stage, double share) {
  if (!terminal_) return;
  if (share >= 1.0) {
    if (shown_ >= 0) Clear();
    shown_ = -1;
    return;
  }
  const int tenths = static_cast<int>(share * 1000.0);
  if (tenths == shown_) return;
  shown_ = tenths;
  const int filled = static_cast<int>(share * kWidth + 0.5);
  std::fprintf(stderr, "\r%.*s [%s%s] %5.1f%%", static_cast<int>(stage.size()), stage.data(),
               std::string(static_cast<std::size_t>(filled), '#').c_str(),
               std::string(static_cast<std::size_t>(kWidth - filled), ' ').c_str(), 100.0 * share);
  std::fflush(stderr);
}

}  // namespace gaecli
