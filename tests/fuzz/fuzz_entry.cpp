#include "fuzz/fuzz_entry.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "gaengine.h"

namespace gae::fuzz {

namespace {

// Whole runs cost time in the square of the markers: larger files only meet the readers.
constexpr int kLargestWholeRun = 200;
constexpr const char* kInput = "fuzz.map";

// A private working folder for the logs and result files, entered once, and the message lines
// that every export also prints kept off the terminal.
char scratch[] = "/tmp/gaengine_fuzz_XXXXXX";

// Every input starts from an empty folder: no log, no pairwise file of an earlier input.
void ClearScratchFolder() {
  DIR* dir = ::opendir(".");
  if (dir == nullptr) return;
  std::vector<std::string> names;
  while (const dirent* entry = ::readdir(dir)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  ::closedir(dir);
  for (const std::string& name : names) std::remove(name.c_str());
}

void EnterScratchFolder() {
  static const bool entered = [] {
    if (::mkdtemp(scratch) == nullptr || ::chdir(scratch) != 0) std::abort();
    if (std::freopen("/dev/null", "w", stdout) == nullptr) std::abort();
    std::atexit([] {
      ClearScratchFolder();
      ::rmdir(scratch);
    });
    return true;
  }();
  (void)entered;
}

void RunReaders(int len, const char* path) {
  int status = 0, n = 0;
  for (auto* check : {CheckErrorBIP, CheckErrorSDL, CheckErrorMET, CheckErrorNAM, CheckErrorPLQ,
                      CheckErrorCDQ, CheckErrorCSL, CheckErrorAOV})
    check(len, path, &status);
  CDMFindNumMarkers(len, path, &n, &status);
  PLMFindNumMarkers(len, path, &n, &status);
  for (const int tool : {2, 20, 30}) {
    SNPFindNumMarkers(tool, len, path, &n, &status);
    BINFindNumMarkers(tool, len, path, &n, &status);
  }
  int space_type = 0, unit = 0, chs = 0;
  CMPFindNumMarkers(len, path, &space_type, &unit, &chs, &n, &status);
  int traits = 0, flag = 0;
  GSPFindNumTraits(len, path, &traits, &flag);
  if ((flag & 1) == 0 && traits >= 1 && traits <= 1000) {
    std::vector<int> names(static_cast<std::size_t>(traits) * 19);
    int first = 0;
    GSPFindTraitName(len, path, traits, names.data(), &first, &flag);
  }
}

// The step-by-step road of a front end: check, group, order, ripple, edit, write.
void RunMapStages(int len, const char* path, int n) {
  std::vector<int> names(static_cast<std::size_t>(n) * 35), anchor(n), a(n), h(n), b(n), x(n), cat(n);
  std::vector<float> chi(n), prob(n);
  int status = 0;
  CheckErrorMAP(len, path, n, names.data(), anchor.data(), a.data(), h.data(), b.data(), x.data(),
                cat.data(), chi.data(), prob.data(), &status);
  if (status != 0) return;
  std::vector<int> group(n, 0);
  MAPGrouping(104, 1, 1, 3.0f, n, anchor.data(), group.data(), &status);
  int num_groups = *std::max_element(group.begin(), group.end());
  MapGroupCheck(n, &num_groups, group.data());
  num_groups = std::max(0, *std::max_element(group.begin(), group.end()));
  std::vector<int> size(num_groups, 0), state(num_groups, 1), order;
  for (int g = 1; g <= num_groups; ++g)
    for (int m = 1; m <= n; ++m)
      if (group[m - 1] == g) order.push_back(m), ++size[g - 1];
  const int mapped = static_cast<int>(order.size());
  for (int m = 1; m <= n; ++m)
    if (group[m - 1] == 0) order.push_back(m);
  const int unlinked = static_cast<int>(order.size()) - mapped;
  for (int m = 1; m <= n; ++m)
    if (group[m - 1] < 0) order.push_back(m);
  std::vector<float> position(n, 0.0f);
  int map_state = 1;
  MAPOrderingAll(104, 3, 2, 1, 5, 3, n, num_groups, size.data(), state.data(), &map_state,
                 anchor.data(), group.data(), order.data(), position.data(), &status);
  MAPRipplingAll(104, 1, 5, n, num_groups, size.data(), state.data(), &map_state, group.data(),
                 order.data(), position.data(), &status);
  if (num_groups >= 2) MAPGroupMove(2, 1, num_groups, n, size.data(), state.data(), group.data(), order.data(), position.data());
  std::vector<int> group_names(static_cast<std::size_t>(num_groups) * 19, 'G');
  MAPOutput(len, path, n, anchor.data(), mapped, unlinked, num_groups, group_names.data(), size.data(),
            order.data(), position.data(), 1, 1, 1, 1);
}

// The other map tools' checks with arrays of the size read, and their whole runs when small.
void RunOtherMapTools(int len, const char* path) {
  int n = 0, status = 0;
  CDMFindNumMarkers(len, path, &n, &status);
  if (status == 0 && n >= 1 && n <= kLargestWholeRun) {
    std::vector<int> ints(static_cast<std::size_t>(n) * 35);
    std::vector<std::vector<int>> c(13, std::vector<int>(n));
    std::vector<float> chi(n), prob(n);
    CheckErrorCDM(len, path, n, ints.data(), c[0].data(), c[1].data(), c[2].data(), c[3].data(), c[4].data(),
                  c[5].data(), c[6].data(), c[7].data(), c[8].data(), c[9].data(), c[10].data(), c[11].data(),
                  c[12].data(), c[0].data(), chi.data(), prob.data(), &status);
    std::remove("fuzz.LRD");
    CDMAllByDefault(len, path, &status);
  }
  PLMFindNumMarkers(len, path, &n, &status);
  if (status == 0 && n >= 1 && n <= kLargestWholeRun) {
    std::vector<int> ints(static_cast<std::size_t>(n) * 35);
    std::vector<std::vector<int>> c(10, std::vector<int>(n));
    std::vector<float> chi(n), prob(n);
    CheckErrorPLM(len, path, n, ints.data(), c[0].data(), c[1].data(), c[2].data(), c[3].data(), c[4].data(),
                  c[5].data(), c[6].data(), c[7].data(), c[8].data(), c[9].data(), c[0].data(), chi.data(),
                  prob.data(), &status);
    std::remove("fuzz.LRD");
    PLMAllByDefault(len, path, &status);
  }
  int space_type = 0, unit = 0, chs = 0;
  CMPFindNumMarkers(len, path, &space_type, &unit, &chs, &n, &status);
  if (status == 0 && n >= 1 && n <= kLargestWholeRun && chs >= 1 && chs <= 50) {
    std::vector<int> names(static_cast<std::size_t>(n) * 35), held(n), places(static_cast<std::size_t>(n) * chs);
    CheckErrorCMP(len, path, chs, n, names.data(), held.data(), places.data(), &status);
    std::remove("fuzz.LRD");
    CMPAllByDefault(len, path, &status);
  }
  for (const int tool : {2, 20, 30}) {
    SNPFindNumMarkers(tool, len, path, &n, &status);
    if (status == 0 && n >= 1 && n <= kLargestWholeRun) {
      std::vector<int> names(static_cast<std::size_t>(n) * 35), a(n), b(n);
      CheckErrorSNP(tool, len, path, n, names.data(), a.data(), b.data(), &status);
    }
    BINFindNumMarkers(tool, len, path, &n, &status);
    if (status == 0 && n >= 1 && n <= kLargestWholeRun) {
      std::vector<int> names(static_cast<std::size_t>(n) * 35), a(n), b(n);
      CheckErrorBIN(tool, len, path, n, names.data(), a.data(), b.data(), &status);
    }
  }
}

}  // namespace

int RunOneInput(const uint8_t* data, std::size_t size) {
  EnterScratchFolder();
  ClearScratchFolder();
  if (std::FILE* file = std::fopen(kInput, "wb")) {
    if (size > 0) std::fwrite(data, 1, size, file);
    std::fclose(file);
  } else {
    return 0;
  }
  const int len = static_cast<int>(std::string(kInput).size());
  RunReaders(len, kInput);
  RunOtherMapTools(len, kInput);
  int n = 0, status = 0;
  MAPFindNumMarkers(len, kInput, &n, &status);
  if (status == 0 && n >= 1 && n <= kLargestWholeRun) {
    RunMapStages(len, kInput, n);
    std::remove("fuzz.LRD");  // the whole run computes its own pairs
    MAPAllByDefault(len, kInput, &status);
  }
  return 0;
}

}  // namespace gae::fuzz
