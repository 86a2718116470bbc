#include "input/marker_token.h"

namespace gae {

TokenTable::TokenTable(std::initializer_list<Rule> rules, char unknown) {
  letter_.fill(unknown);
  for (const Rule& rule : rules) {
    for (const char* token : rule.tokens) letter_[MarkerToken(token).Key()] = rule.letter;
  }
}

}  // namespace gae
