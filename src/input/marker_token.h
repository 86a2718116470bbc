// Genotype tokens as the marker section compares them: the first two characters of the item,
// blank padded. So the literal "A" matches a one-character token, a longer token counts by its
// first two characters, and the comparison is case-sensitive.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace gae {

struct MarkerToken {
  char c[2] = {' ', ' '};

  constexpr MarkerToken() = default;
  constexpr explicit MarkerToken(std::string_view item) {
    if (!item.empty()) c[0] = item[0];
    if (item.size() > 1) c[1] = item[1];
  }
  constexpr uint16_t Key() const {
    return static_cast<uint16_t>((static_cast<unsigned char>(c[0]) << 8) |
                                 static_cast<unsigned char>(c[1]));
  }
  std::string_view Text() const { return std::string_view(c, 2); }
  constexpr bool operator==(const MarkerToken& other) const {
    return c[0] == other.c[0] && c[1] == other.c[1];
  }
};

// The letter of each accepted token; every other token reads as `unknown`.
class TokenTable {
 public:
  struct Rule {
    char letter;
    std::initializer_list<const char*> tokens;
  };
  TokenTable(std::initializer_list<Rule> rules, char unknown);
  char operator()(MarkerToken token) const { return letter_[token.Key()]; }

 private:
  std::array<char, 65536> letter_;
};

}  // namespace gae
