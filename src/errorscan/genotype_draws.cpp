#include "errorscan/genotype_draws.h"

#include "errorscan/population_states.h"

namespace gae {

namespace {

int32_t FounderCount(int32_t design) { return design == kEightWayDesign ? 8 : 4; }

// The allele group of each founder, read from the category's decimal digits (founder 1 the
// leftmost). A category with the wrong number of digits cannot be read: every founder is then
// taken as carrying its own allele, which trusts the observed letters as they stand.
std::string FounderGroups(int32_t design, int32_t marker_class) {
  const int32_t founders = FounderCount(design);
  int64_t low = 1;
  for (int32_t k = 1; k < founders; ++k) low *= 10;
  std::string groups(founders, ' ');
  const bool readable = marker_class >= low && marker_class < low * 10;
  int64_t rest = marker_class;
  for (int32_t k = founders - 1; k >= 0; --k) {
    groups[k] = readable ? static_cast<char>('0' + rest % 10) : static_cast<char>('a' + k);
    rest /= 10;
  }
  return groups;
}

std::string PureLineAllowed(int32_t design, int32_t marker_class, char genotype) {
  const int32_t founders = FounderCount(design);
  const int32_t founder = genotype - 'A';
  if (founder < 0 || founder >= founders) return {};
  const std::string groups = FounderGroups(design, marker_class);
  std::string allowed;
  for (int32_t g = 0; g < founders; ++g)
    if (groups[g] == groups[founder]) allowed.push_back(static_cast<char>('A' + g));
  return allowed;
}

std::string ClonalAllowed(int32_t marker_class, char genotype) {
  switch (genotype) {
    case 'A': case 'B': case 'C': case 'D': return std::string(1, genotype);
    case 'E': return "AC";
    case 'F': return "BD";
    case 'G': return "AB";
    case 'H': return "CD";
    case 'I': return marker_class == 4 ? "A" : marker_class == 5 ? "B" : "";
    case 'J': return marker_class == 4 ? "BC" : marker_class == 5 ? "AD" : "";
    case 'K': return marker_class == 4 ? "D" : marker_class == 5 ? "C" : "";
    default: return {};
  }
}

}  // namespace

bool IsInformative(int32_t design, int32_t marker_class, char genotype) {
  if (genotype == 'X') return false;
  switch (design) {
    case kBiparentalDesign:
      if (marker_class == 12) return genotype == 'B';
      if (marker_class == 10) return genotype == 'A';
      // D and R cannot stand in a co-dominant marker; should one appear it is read as the
      // partial observation it is.
      return genotype == 'A' || genotype == 'H' || genotype == 'B';
    case kClonalDesign:
      if (marker_class == 1) return genotype >= 'A' && genotype <= 'D';
      if (marker_class == 4) return genotype == 'A' || genotype == 'D';
      if (marker_class == 5) return genotype == 'B' || genotype == 'C';
      return false;
    case kFourWayDesign:
    case kEightWayDesign:
      // A founder letter fixes the state only when that founder's digit is shared by no other
      // founder. Where founders share an allele, the reader has written the letter of the first
      // of them, so the line may carry any founder of the group: the flanks must choose.
      return PureLineAllowed(design, marker_class, genotype).size() == 1;
    default:
      return false;
  }
}

std::string AllowedStates(int32_t design, int32_t marker_class, char genotype) {
  if (genotype == 'X') return {};
  switch (design) {
    case kBiparentalDesign:
      switch (genotype) {
        case 'A': case 'H': case 'B': return std::string(1, genotype);
        case 'D': return "AH";
        case 'R': return "HB";
        default: return {};
      }
    case kClonalDesign: return ClonalAllowed(marker_class, genotype);
    case kFourWayDesign:
    case kEightWayDesign: return PureLineAllowed(design, marker_class, genotype);
    default: return {};
  }
}

void RewritePartialCodes(int32_t design, std::span<const int32_t> marker_classes,
                         int32_t num_individuals, std::span<char> genotypes) {
  if (design != kClonalDesign) return;
  for (std::size_t m = 0; m < marker_classes.size(); ++m) {
    const int32_t c = marker_classes[m];
    if (c != 4 && c != 5) continue;
    for (int32_t i = 0; i < num_individuals; ++i) {
      char& g = genotypes[m * num_individuals + i];
      if (g == 'I') g = (c == 4) ? 'A' : 'B';
      else if (g == 'K') g = (c == 4) ? 'D' : 'C';
    }
  }
}

int32_t DrawGenotype(int32_t design, std::span<const float> probabilities, UniformStream& random) {
  const int32_t n = static_cast<int32_t>(probabilities.size());
  if (n == 0) return 0;
  float sum = 0.0f;
  for (float p : probabilities) sum += p;
  const float u = random.Next();
  float cumulative = 0.0f;
  for (int32_t s = 0; s < n; ++s) {
    cumulative += probabilities[s] / sum;
    const bool reached = (design == kEightWayDesign) ? cumulative > u : cumulative >= u;
    if (reached) return s;
  }
  return n - 1;
}

}  // namespace gae
