// The catalogue as data: code, whether the line carries the "--ErrorNNNN: " prefix, and the
// text with "{}" where a value stands. A '\n' in the text starts a further line (which never
// carries the prefix).
#pragma once

#include <span>

namespace gae {

struct CatalogueEntry {
  int code;
  bool prefixed;
  const char* text;
  bool open_record = false;  // the line is left open for the next write (1301..1308)
};

std::span<const CatalogueEntry> Catalogue();

}  // namespace gae
