#include "input/marker_refusal.h"

#include <set>

#include "input/biparental_calls.h"
#include "vocabulary/population.h"

namespace gae {

namespace {

std::string TypeName(int32_t type) {
  const std::string name(PopulationName(kBiparentalDesign, type));
  const std::string short_name = name.substr(0, name.find(" or "));
  return (!short_name.empty() && short_name[0] == 'F' ? "an " : "a ") + short_name;
}

std::string Letters(const std::set<char>& letters) {
  std::string text;
  std::size_t k = 0;
  for (const char c : letters) {
    if (k > 0) text += k + 1 == letters.size() ? " and " : ", ";
    text += c;
    ++k;
  }
  return text;
}

}  // namespace

std::string BiparentalRefusal(int32_t population_type, std::string_view letters) {
  std::set<char> unseen, kept;
  std::string folded;
  for (const char c : letters) {
    const char f = FoldBiparentalLetter(population_type, c);
    if (f == '\0') unseen.insert(c);
    else folded += f;
    if (f != '\0' && f != 'X') kept.insert(f);
  }
  if (!unseen.empty())
    return "it shows " + Letters(unseen) + ", which " + TypeName(population_type) + " cannot show";
  if (kept.empty()) return "all its calls are missing";
  if (BiparentalCategory(population_type, folded) != 0) return "";
  return "it mixes " + Letters(kept) + ", which " + TypeName(population_type) +
         " cannot score in one marker (a marker is co-dominant, dominant or recessive throughout)";
}

bool SingleClass(int32_t population_type, std::string_view letters) {
  std::set<char> kept;
  for (const char c : letters) {
    const char f = FoldBiparentalLetter(population_type, c);
    if (f != '\0' && f != 'X') kept.insert(f);
  }
  return kept.size() <= 1;
}

}  // namespace gae
