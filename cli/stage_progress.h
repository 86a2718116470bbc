// A bar on the terminal for a long stage of a run (the LOD tree), fed with the share done;
// nothing when stderr is not a terminal.
#pragma once

#include <string_view>

namespace gaecli {

class StageProgress {
 public:
  StageProgress();
  ~StageProgress();
  StageProgress(const StageProgress&) = delete;
  StageProgress& operator=(const StageProgress&) = delete;
  // The stage's bar at `share` (0 to 1); the bar is cleared once the share reaches 1.
  void Show(std::string_view stage, double share);

 private:
  bool terminal_;
  int shown_ = -1;  // tenths of a percent last drawn
};

}  // namespace gaecli
