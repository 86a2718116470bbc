#include "genotype_codes.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "vocabulary/fixed_format.h"
#include "vocabulary/message_code.h"
#include "input/marker_decoders.h"
#include "input/marker_section.h"
#include "input/tool_codes.h"
#include "library_output.h"

namespace gaecli {

namespace {

// Every token of one or two upper-case letters, the single letters first.
std::vector<gae::MarkerToken> LetterTokens() {
  std::vector<gae::MarkerToken> all;
  for (char a = 'A'; a <= 'Z'; ++a) all.emplace_back(std::string_view(&a, 1));
  for (char a = 'A'; a <= 'Z'; ++a)
    for (char b = 'A'; b <= 'Z'; ++b) {
      const char pair[2] = {a, b};
      all.emplace_back(std::string_view(pair, 2));
    }
  return all;
}

// Bi-parental codes read P1, F1, P2 and then the dominant classes, as the decoders write
// them; the clonal types and the founders of pure lines read alphabetically.
int DisplayRank(const MarkerKind& kind, const std::string& code) {
  constexpr std::string_view kClassOrder = "AHBDR";
  const std::size_t at = gae::HasCategoryField(kind.tool_code) || code.size() != 1 ? std::string_view::npos
                                                                                  : kClassOrder.find(code[0]);
  return at == std::string_view::npos ? static_cast<int>(kClassOrder.size()) : static_cast<int>(at);
}

}  // namespace

// Rows of one token are refused for their content (a single class tells nothing), so the
// search goes in three steps: tokens the decoder refuses alone for another reason than the one
// it gives an unreadable token are the candidates; pairs of candidates it takes show the
// informative codes; a token it takes beside such a pair (the missing code, a dominant class
// that cannot mix with one of the pair) is a code too.
GenotypeCodes::GenotypeCodes(const MarkerKind& kind)
    : kind_(kind), category_(gae::fmt::PadRight(kind.category, gae::kCategoryWidth)) {
  const LibraryOutput quiet(false);
  const int unreadable = Refusal({gae::MarkerToken("?")});
  for (const gae::MarkerToken& token : LetterTokens())
    if (unreadable == 0 || Refusal({token}) != unreadable) candidates_.push_back(token);
  for (std::size_t i = 0; i < candidates_.size(); ++i)
    for (std::size_t j = i + 1; j < candidates_.size(); ++j)
      if (Refusal({candidates_[i], candidates_[j]}) == 0) taken_.emplace_back(candidates_[i], candidates_[j]);

  std::vector<std::string> one, two;
  for (const gae::MarkerToken& token : candidates_) {
    const std::string text = gae::fmt::TrimRight(token.Text());
    if (Takes(text)) (text.size() == 1 ? one : two).push_back(text);
  }
  shown_ = one.empty() ? two : one;
  std::stable_sort(shown_.begin(), shown_.end(), [this](const std::string& a, const std::string& b) {
    const bool ax = a.find('X') != std::string::npos, bx = b.find('X') != std::string::npos;
    if (ax != bx) return bx;
    return DisplayRank(kind_, a) < DisplayRank(kind_, b);
  });
}

int GenotypeCodes::Refusal(std::initializer_list<gae::MarkerToken> tokens) const {
  std::vector<char> letters(tokens.size(), ' ');
  int32_t category = 0;
  const gae::MarkerRow row{1, category_, std::span<const gae::MarkerToken>(tokens.begin(), tokens.size())};
  const bool taken = gae::DecodeMarkerRow(kind_.tool_code, kind_.population_type, row, letters, category);
  const int code = taken ? 0 : gae::MessageCode();
  gae::MessageCode() = 0;
  return code;
}

bool GenotypeCodes::Takes(const std::string& item) {
  const gae::MarkerToken token(item);
  if (const auto known = known_.find(token.Key()); known != known_.end()) return known->second;
  const LibraryOutput quiet(false);
  bool takes = false;
  for (std::size_t p = 0; p < taken_.size() && !takes; ++p) {
    const auto& [a, b] = taken_[p];
    takes = token == a || token == b || Refusal({token, a, b}) == 0;
  }
  for (std::size_t c = 0; c < candidates_.size() && !takes; ++c) takes = Refusal({token, candidates_[c]}) == 0;
  known_[token.Key()] = takes;
  return takes;
}

}  // namespace gaecli
