#include "prep/snp_conversion.h"

#include <algorithm>
#include <array>

#include "prep/snp_calls.h"

namespace gae {

namespace {

constexpr char kMissing = 'X';

bool Matches(int call, char u, char v) {
  const char x = FirstAllele(call), y = SecondAllele(call);
  return (x == u && y == v) || (x == v && y == u);
}

// Bi-parental groups as the MAP reader folds them: backcrosses to P1 (1, 9) and to P2 (2, 10)
// cannot show the other parent's homozygote; selfed or doubled lines count H as missing.
enum class Group { kBackcrossP1, kBackcrossP2, kLines, kSelfed };
Group GroupOf(int population_type) {
  switch (population_type) {
    case 1: case 9: return Group::kBackcrossP1;
    case 2: case 10: return Group::kBackcrossP2;
    case 7: case 8: case 13: case 14: case 15: case 16: return Group::kSelfed;
    default: return Group::kLines;
  }
}

bool TwoParentLetter(int population_type, std::span<const uint8_t> parents, int call, char& letter) {
  const char p = FirstAllele(parents[0]), q = FirstAllele(parents[1]);
  if (Matches(call, p, p)) letter = 'A';
  else if (Matches(call, q, q)) letter = 'B';
  else if (Matches(call, p, q)) letter = 'H';
  else return false;
  const Group group = GroupOf(population_type);
  if (group == Group::kBackcrossP1 && letter == 'B') return false;
  if (group == Group::kBackcrossP2 && letter == 'A') return false;
  if (group == Group::kLines && letter == 'H') letter = kMissing;
  return true;
}

// The clonal types by the two parental alleles a line carries: one of parents 1 and 2 (A, B)
// and one of parents 3 and 4 (C, D); an X stands for a side whose alleles are alike.
bool FourParentLetter(int32_t category, std::span<const uint8_t> parents, int call, char& letter) {
  std::array<char, 4> a{};
  for (int k = 0; k < 4; ++k) a[k] = FirstAllele(parents[k]);
  switch (category) {
    case 1: {
      const char letters[2][2] = {{'A', 'B'}, {'C', 'D'}};  // AC AD / BC BD
      for (int i = 0; i < 2; ++i)
        for (int j = 2; j < 4; ++j)
          if (Matches(call, a[i], a[j])) return letter = letters[i][j - 2], true;
      return false;
    }
    case 2:  // XC XD
      for (int j = 2; j < 4; ++j)
        if (Matches(call, a[0], a[j])) return letter = j == 2 ? 'E' : 'F', true;
      return false;
    case 3:  // AX BX
      for (int i = 0; i < 2; ++i)
        if (Matches(call, a[i], a[2])) return letter = i == 0 ? 'G' : 'H', true;
      return false;
    default:  // both parents share their alleles: AA AB BB
      if (Matches(call, a[0], a[0])) letter = 'I';
      else if (Matches(call, a[0], a[1])) letter = 'J';
      else if (Matches(call, a[1], a[1])) letter = 'K';
      else return false;
      return true;
  }
}

bool FounderLetter(std::span<const uint8_t> founders, int call, char& letter) {
  auto carried = [&](char allele) {
    for (std::size_t k = 0; k < founders.size(); ++k)
      if (FirstAllele(founders[k]) == allele) return static_cast<int>(k);
    return -1;
  };
  const int first = carried(FirstAllele(call)), second = carried(SecondAllele(call));
  if (first < 0 || second < 0) return false;
  letter = IsHomozygousCall(call) ? static_cast<char>('A' + first) : kMissing;
  return true;
}

bool ProgenyLetter(const SnpDesign& d, int32_t code, std::span<const uint8_t> parents, int call,
                   char& letter) {
  if (call == kCallNN) return letter = kMissing, true;
  if (d.mode == kClonalMode) return FourParentLetter(code, parents, call, letter);
  if (d.mode == kFounderMode) return FounderLetter(parents, call, letter);
  return TwoParentLetter(d.population_type, parents, call, letter);
}

// The letters of all lines; the 1-based line of the first impossible call, 0 when none.
int ProgenyLetters(const SnpDesign& d, int32_t code, std::span<const uint8_t> parents,
                   std::span<const uint8_t> progeny, std::string& letters) {
  letters.assign(progeny.size(), kMissing);
  for (std::size_t i = 0; i < progeny.size(); ++i)
    if (!ProgenyLetter(d, code, parents, progeny[i], letters[i])) return static_cast<int>(i + 1);
  return 0;
}

// A marker is worth mapping only if the lines show at least two classes; the map tools' readers
// refuse the others.
bool Segregates(const std::string& letters) {
  char seen = 0;
  for (char c : letters) {
    if (c == kMissing) continue;
    if (seen == 0) seen = c;
    else if (c != seen) return true;
  }
  return false;
}

SnpMarkerResult Deleted(PolymorphismSource source) {
  SnpMarkerResult r;
  r.source = source;
  return r;
}

// Method 2: every homozygous call is tried for each missing parent. An allele counts as
// inferred when exactly one choice makes a polymorphic marker whose progeny calls can all occur
// and segregate. When both parents of one side of a four-parent cross are missing, the two
// orders of that side's alleles are one choice: which parent carried which is unknowable.
SnpMarkerResult InferMissingParents(const SnpDesign& d, std::span<const uint8_t> parents,
                                    std::span<const uint8_t> progeny) {
  std::vector<int> missing;
  for (int k = 0; k < static_cast<int>(parents.size()); ++k)
    if (parents[k] == kCallNN) missing.push_back(k);
  bool whole_side = false;
  if (d.mode == kClonalMode)
    whole_side = (parents[0] == kCallNN && parents[1] == kCallNN) ||
                 (parents[2] == kCallNN && parents[3] == kCallNN);
  const PolymorphismSource source =
      whole_side ? PolymorphismSource::kProgeny : PolymorphismSource::kProgenyAndParent;

  std::vector<uint8_t> filled(parents.begin(), parents.end());
  SnpMarkerResult found = Deleted(source);
  std::vector<uint8_t> found_key;
  int choices = 1;
  for (std::size_t i = 0; i < missing.size(); ++i) choices *= 4;
  for (int choice = 0; choice < choices; ++choice) {
    for (std::size_t i = 0, rest = choice; i < missing.size(); ++i, rest /= 4)
      filled[missing[i]] = static_cast<uint8_t>(rest % 4);
    const int32_t code = ParentCode(d.mode, d.population_type, filled);
    if (code <= 0) continue;
    std::string letters;
    if (ProgenyLetters(d, code, filled, progeny, letters) != 0 || !Segregates(letters)) continue;
    std::vector<uint8_t> key = filled;
    if (d.mode == kClonalMode) {
      if (parents[0] == kCallNN && parents[1] == kCallNN) std::sort(key.begin(), key.begin() + 2);
      if (parents[2] == kCallNN && parents[3] == kCallNN) std::sort(key.begin() + 2, key.end());
    }
    if (found.code == 0) {
      found.code = code;
      found.letters = std::move(letters);
      found_key = std::move(key);
    } else if (key != found_key) {
      return Deleted(source);  // the progeny leave the choice open
    }
  }
  return found;
}

}  // namespace

SnpDesign DesignOf(const SnpInput& input) {
  SnpDesign d;
  d.tool_code = input.tool_code;
  d.mode = SnpMode(input.tool_code);
  d.population_type = input.population_type;
  d.num_parents = input.num_parents;
  d.missing_method = input.missing_method;
  return d;
}

SnpMarkerResult ConvertSnpMarker(const SnpDesign& d, std::span<const uint8_t> parents,
                                 std::span<const uint8_t> progeny) {
  const int32_t code = ParentCode(d.mode, d.population_type, parents);
  if (code == 0) return Deleted(PolymorphismSource::kParent);
  const bool missing = std::find(parents.begin(), parents.end(), kCallNN) != parents.end();
  if (missing && d.missing_method == 1) return Deleted(PolymorphismSource::kParent);
  for (std::size_t k = 0; k < parents.size(); ++k) {
    if (parents[k] != kCallNN && !IsHomozygousCall(parents[k])) {
      SnpMarkerResult r = Deleted(PolymorphismSource::kParent);
      r.failure = kSnpIllegalMarker;
      r.failure_index = static_cast<int>(k + 1);
      r.failure_call = parents[k];
      return r;
    }
  }
  if (missing) return InferMissingParents(d, parents, progeny);

  SnpMarkerResult r;
  r.code = code;
  if (const int line = ProgenyLetters(d, code, parents, progeny, r.letters); line != 0) {
    r = Deleted(PolymorphismSource::kParent);
    r.failure = kSnpInvalidMarkerType;
    r.failure_index = line;
    r.failure_call = progeny[line - 1];
    return r;
  }
  if (!Segregates(r.letters)) return Deleted(PolymorphismSource::kProgenyAndParent);
  // SNP calls are co-dominant: a kept two-parent marker is always category 1.
  return r;
}

SnpConversion ConvertSnpInput(const SnpInput& input) {
  SnpConversion out;
  const SnpDesign d = DesignOf(input);
  const std::size_t np = static_cast<std::size_t>(input.num_parents);
  const std::size_t n = static_cast<std::size_t>(input.population_size);
  out.markers.reserve(input.names.size());
  for (std::size_t m = 0; m < input.names.size(); ++m) {
    out.markers.push_back(ConvertSnpMarker(
        d, std::span<const uint8_t>(input.parent_calls.data() + m * np, np),
        std::span<const uint8_t>(input.progeny_calls.data() + m * n, n)));
    if (out.markers.back().failure != 0) {
      out.failed_marker = static_cast<int>(m + 1);
      break;
    }
  }
  return out;
}

}  // namespace gae
