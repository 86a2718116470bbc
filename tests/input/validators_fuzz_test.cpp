// Mutated example files against every validator and reader: truncations, flipped bytes, huge
// counts, empty lines where rows should be, binary garbage. Each call must return with a
// catalogued code (or its flag), give back everything it allocated, and never hold much memory.
#include <gtest/gtest.h>

#include <cctype>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "vocabulary/messages.h"
#include "frame/process_state.h"
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
    "examples/four_way_ril.plq", "examples/clonal_f1.cdq", "examples/segment_lines.csl",
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

std::vector<std::string> Mutants(const std::string& text, std::mt19937& rng) {
  std::vector<std::string> out;
  auto below = [&rng](std::size_t n) { return n == 0 ? 0 : rng() % n; };
  for (int i = 0; i < 6; ++i) out.push_back(text.substr(0, below(text.size())));
  for (int i = 0; i < 8; ++i) {
    std::string m = text;
    for (int f = 1 + static_cast<int>(below(16)); f > 0; --f) m[below(m.size())] = static_cast<char>(rng());
    out.push_back(m);
  }
  // Each of the first numbers of the file made huge or absurd.
  const char* huge[] = {"2147483647", "2000000000", "-2147483648", "99999999999", "0"};
  std::size_t pos = 0;
  for (int n = 0; n < 9; ++n) {
    while (pos < text.size() && !(std::isdigit(static_cast<unsigned char>(text[pos])) &&
                                  (pos == 0 || text[pos - 1] == ' ' || text[pos - 1] == '\n'))) {
      if (text[pos] == '!') pos = text.find('\n', pos);  // skip remark lines
      if (pos == std::string::npos) break;
      ++pos;
    }
    if (pos == std::string::npos || pos >= text.size()) break;
    std::size_t end = pos;
    while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end]))) ++end;
    out.push_back(text.substr(0, pos) + huge[below(5)] + text.substr(end));
    pos = end;
  }
  auto line_starts = [&text] {
    std::vector<std::size_t> starts{0};
    for (std::size_t i = 0; i < text.size(); ++i) if (text[i] == '\n') starts.push_back(i + 1);
    return starts;
  }();
  for (int i = 0; i < 4; ++i) {
    const std::size_t at = line_starts[below(line_starts.size())];
    out.push_back(text.substr(0, at) + "\n\n\n" + text.substr(at));
    const std::size_t next = text.find('\n', at);
    out.push_back(text.substr(0, at) + (next == std::string::npos ? "" : text.substr(next + 1)));
  }
  for (int i = 0; i < 3; ++i) {
    std::string m = text;
    const std::size_t at = below(m.size());
    for (std::size_t k = at; k < std::min(m.size(), at + 64); ++k) m[k] = static_cast<char>(rng());
    out.push_back(m);
  }
  std::string garbage(3000, '\0');
  for (char& c : garbage) c = static_cast<char>(rng());
  out.push_back(garbage);
  out.push_back("");
  return out;
}

class Fuzz : public testing::InTempDir {};

TEST_F(Fuzz, EveryEntryReturnsAndReleasesOnMutatedExamples) {
  const auto entries = Entries();
  ::testing::internal::CaptureStdout();
  // Each entry first reads its own example, which it must accept; this also puts in place the
  // buffers the frame keeps for the process.
  for (std::size_t e = 0; e < entries.size(); ++e) EXPECT_EQ(entries[e](testing::SourcePath(kExamples[e])), 0) << kExamples[e];
  std::mt19937 rng(20240611);
  int calls = 0;
  for (const char* example : kExamples) {
    for (const std::string& mutant : Mutants(testing::ReadText(testing::SourcePath(example)), rng)) {
      testing::WriteText("mutant.txt", mutant);
      for (std::size_t e = 0; e < entries.size(); ++e) {
        testing::AllocationScope scope;
        const int result = entries[e]("mutant.txt");
        ++calls;
        EXPECT_TRUE(result == 0 || result == 1 || IsCatalogued(result))
            << example << " entry " << e << " result " << result;
        EXPECT_EQ(scope.LiveBytes(), 0) << example << " entry " << e;
        EXPECT_LT(scope.PeakBytes(), kPeakBound) << example << " entry " << e;
      }
    }
  }
  ::testing::internal::GetCapturedStdout();
  EXPECT_GT(calls, 5000);
}

}  // namespace
}  // namespace gae
