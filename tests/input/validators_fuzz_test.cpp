// Mutated example files against every validator and reader: truncations, flipped bytes, huge
// counts, empty lines where rows should be, binary garbage. Each call must return with a
// catalogued code (or its flag), give back everything it allocated, and never hold much memory.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "vocabulary/messages.h"
#include "frame/process_state.h"
#include "fuzz/mutate.h"
#include "gaengine.h"
#include "input/map_tool_reader.h"
#include "support/alloc_counter.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

constexpr long long kPeakBound = 64ll << 20;  // far above what files of this size need

const char* const kExamples[] = {
    "examples/ril_two_traits.bip", "examples/f2_segregation.sdl",
    "examples/backcross_three_environments.met", "examples/three_families.nam",
    "examples/four_way_ril_traits.plq", "examples/clonal_f1_traits.cdq", "examples/segment_lines.csl",
    "examples/trial_two_traits.aov", "examples/three_maps_3b.cmp",
    "examples/training_and_breeding.gsp", "examples/f2_five_chromosomes.map", "examples/clonal_f1.cdm",
    "examples/four_way_ril.plm"};

// Every entry, as a call on a path that returns its result code (0 good, else the code or
// the flag), in the order of the examples each one reads.
std::vector<std::function<int(const std::string&)>> Entries() {
  std::vector<std::function<int(const std::string&)>> entries;
  for (auto fn : {CheckErrorBIP, CheckErrorSDL, CheckErrorMET, CheckErrorNAM, CheckErrorPLQ,
                  CheckErrorCDQ, CheckErrorCSL, CheckErrorAOV}) {
    entries.push_back([fn](const std::string& p) {
      int status = -1;
      fn(static_cast<int>(p.size()), p.data(), &status);
      return status;
    });
  }
  entries.push_back([](const std::string& p) {
    int a = 0, b = 0, c = 0, d = 0, status = -1;
    CMPFindNumMarkers(static_cast<int>(p.size()), p.data(), &a, &b, &c, &d, &status);
    return status;
  });
  entries.push_back([](const std::string& p) {
    int n = 0, flag = -1;
    GSPFindNumTraits(static_cast<int>(p.size()), p.data(), &n, &flag);
    if (flag != 0 || n > 1000) return flag;
    std::vector<int> names(static_cast<std::size_t>(n) * 19);
    int first = 0;
    GSPFindTraitName(static_cast<int>(p.size()), p.data(), n, names.data(), &first, &flag);
    return flag;
  });
  for (int tool_code : {104, 20, 30}) {
    entries.push_back([tool_code](const std::string& p) {
      InputFile in;
      if (!in.Open(p)) return 1002;
      MapToolInput input;
      ReadMapToolInput(in, tool_code, input);
      return static_cast<int>(MessageCode());
    });
  }
  return entries;
}

class Fuzz : public testing::InTempDir {};

TEST_F(Fuzz, EveryEntryReturnsAndReleasesOnMutatedExamples) {
  const auto entries = Entries();
  ::testing::internal::CaptureStdout();
  // Each entry first reads its own example, which it must accept; this also puts in place the
  // buffers the frame keeps for the process.
  for (std::size_t e = 0; e < entries.size(); ++e) EXPECT_EQ(entries[e](testing::SourcePath(kExamples[e])), 0) << kExamples[e];
  std::vector<std::string> pool;
  for (const char* example : kExamples) pool.push_back(testing::ReadText(testing::SourcePath(example)));
  std::mt19937_64 rng(20240611);
  int calls = 0;
  for (std::size_t k = 0; k < pool.size(); ++k) {
    for (int m = 0; m <= 36; ++m) {
      // One to eight edits of the example; the last one an empty file.
      std::string mutant = m == 36 ? "" : pool[k];
      for (int edits = m == 36 ? 0 : 1 + static_cast<int>(rng() % 8); edits > 0; --edits) fuzz::Mutate(mutant, pool, rng);
      testing::WriteText("mutant.txt", mutant);
      for (std::size_t e = 0; e < entries.size(); ++e) {
        testing::AllocationScope scope;
        const int result = entries[e]("mutant.txt");
        ++calls;
        EXPECT_TRUE(result == 0 || result == 1 || IsCatalogued(result))
            << kExamples[k] << " entry " << e << " result " << result;
        EXPECT_EQ(scope.LiveBytes(), 0) << kExamples[k] << " entry " << e;
        EXPECT_LT(scope.PeakBytes(), kPeakBound) << kExamples[k] << " entry " << e;
      }
    }
  }
  ::testing::internal::GetCapturedStdout();
  EXPECT_GT(calls, 5000);
}

}  // namespace
}  // namespace gae
