// The genotype codes a marker row may hold, asked of the library's own decoders rather than
// kept as a second list: a code in a bi-parental file depends on the population, in a clonal or
// pure-line file also on the marker's category field.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "input/marker_token.h"

namespace gaecli {

struct MarkerKind {
  int tool_code = 0;        // the reader's tool code: which decoder reads the row
  int population_type = 0;
  std::string category;     // the category field as the file gives it (clonal and pure-line files)
};

// A token is a code of the kind when the decoder takes some row that holds it.
class GenotypeCodes {
 public:
  explicit GenotypeCodes(const MarkerKind& kind);

  // Whether the decoder takes `item` (read, as the reader does, by its first two characters).
  bool Takes(const std::string& item);

  // The codes to show a breeder: those of one letter, or of two where no single letter is a
  // code (clonal types). Bi-parental files also take synonyms (AA, AB, 1, ...) that are left
  // out. In the order a breeder reads them: the parental and heterozygous classes first,
  // codes with an unknown allele last. Empty when the decoder takes no row of this kind, e.g.
  // a category it refuses.
  std::vector<std::string> Shown() const { return shown_; }

 private:
  int Refusal(std::initializer_list<gae::MarkerToken> tokens) const;

  MarkerKind kind_;
  std::string category_;                     // as the reader pads it
  std::vector<gae::MarkerToken> candidates_; // tokens refused alone for their content only
  std::vector<std::pair<gae::MarkerToken, gae::MarkerToken>> taken_;  // rows of two the decoder takes
  std::map<uint16_t, bool> known_;
  std::vector<std::string> shown_;
};

}  // namespace gaecli
