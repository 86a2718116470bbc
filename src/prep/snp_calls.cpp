#include "prep/snp_calls.h"
#include "input/tool_codes.h"

#include <algorithm>

namespace gae {

namespace {

constexpr std::string_view kCallTexts[kNumSnpCalls] = {"AA", "TT", "GG", "CC", "AT", "AG",
                                                       "AC", "TG", "TC", "GC", "NN"};

struct Alias {
  std::string_view from;
  SnpCall to;
};
// The other spellings that exports use: missing calls, and heterozygotes in the other order.
constexpr Alias kAliases[] = {{"--", kCallNN}, {"XX", kCallNN}, {"**", kCallNN},
                              {"TA", kCallAT}, {"GA", kCallAG}, {"CA", kCallAC},
                              {"GT", kCallTG}, {"CT", kCallTC}, {"CG", kCallGC}};

}  // namespace

int NormaliseSnpCall(std::string_view token) {
  for (const Alias& alias : kAliases)
    if (token == alias.from) return alias.to;
  for (int call = 0; call < kNumSnpCalls; ++call)
    if (token == kCallTexts[call]) return call;
  return -1;
}

std::string_view SnpCallText(int call) {
  return call >= 0 && call < kNumSnpCalls ? kCallTexts[call] : std::string_view("??");
}

char FirstAllele(int call) { return SnpCallText(call)[0]; }
char SecondAllele(int call) { return SnpCallText(call)[1]; }

int CallOfAlleles(char a, char b) {
  for (int call = 0; call < kNumSnpCalls - 1; ++call) {
    const std::string_view t = kCallTexts[call];
    if ((t[0] == a && t[1] == b) || (t[0] == b && t[1] == a)) return call;
  }
  return -1;
}

int SnpMode(int tool_code) {
  if (tool_code == kClonalToolCode) return kClonalMode;
  if (tool_code == kPureLineToolCode) return kFounderMode;
  return kTwoParentMode;
}

int NumSnpParents(int tool_code, int population_type) {
  const int mode = SnpMode(tool_code);
  if (mode == kTwoParentMode) return 2;
  if (mode == kFounderMode && (population_type == 3 || population_type == 4)) return 8;
  return 4;
}

int ParentTallies::Largest() const { return *std::max_element(count, count + 5); }

ParentTallies TallyParents(std::span<const uint8_t> calls) {
  ParentTallies t;
  for (uint8_t call : calls) {
    if (IsHomozygousCall(call)) ++t.count[call];
    else if (call == kCallNN) ++t.count[4];
  }
  return t;
}

namespace {

int32_t TwoParentCode(const ParentTallies& t) {
  for (int c : t.count)
    if (c == 2) return 0;
  return 1;
}

int32_t FourParentCode(int population_type, std::span<const uint8_t> p, const ParentTallies& t) {
  if (t.Missing() >= 3) return 0;
  for (int c : t.count)
    if (c == 4) return 0;
  if (t.Missing() > 0) {
    const int first = (p[0] == kCallNN) + (p[1] == kCallNN);
    const int second = (p[2] == kCallNN) + (p[3] == kCallNN);
    return first == 1 && second == 1 ? 0 : -1;
  }
  if (t.Largest() == 1) return 1;
  if (p[0] == p[1]) return 2;
  if (p[2] == p[3]) return 3;
  if (p[0] == p[2] && p[1] == p[3]) return 4;
  if (p[0] == p[3] && p[1] == p[2]) return population_type == 1 ? 4 : 5;
  return 0;
}

int32_t FounderPattern(std::span<const uint8_t> p, const ParentTallies& t) {
  const int n = static_cast<int>(p.size());
  for (int c : t.count)
    if (c == n) return 0;
  if (t.Missing() >= 2) return 0;
  int32_t pattern = 0;
  for (int k = 0; k < n; ++k) {
    int digit = k + 1;
    for (int j = 0; j < k; ++j)
      if (p[j] == p[k]) {
        digit = j + 1;
        break;
      }
    pattern = pattern * 10 + digit;
  }
  return pattern;
}

}  // namespace

int32_t ParentCode(int mode, int population_type, std::span<const uint8_t> calls) {
  const ParentTallies t = TallyParents(calls);
  if (mode == kClonalMode) return FourParentCode(population_type, calls, t);
  if (mode == kFounderMode) return FounderPattern(calls, t);
  return TwoParentCode(t);
}

}  // namespace gae
