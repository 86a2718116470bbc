#include "input/map_marker_check.h"

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"

namespace gae {

bool CheckMapAgainstMarkers(const std::vector<ChromosomeRecord>& chromosomes,
                            const std::vector<std::string>& names) {
  MessageCode() = 0;
  std::size_t k = 0;
  for (std::size_t c = 0; c < chromosomes.size(); ++c) {
    const std::vector<std::string>& on_map = chromosomes[c].marker_names;
    // The caller reads as many marker rows as the map has markers; a shorter list ends the
    // comparison rather than reading past it.
    for (std::size_t j = 0; j < on_map.size() && k < names.size(); ++j, ++k) {
      if (on_map[j] != names[k]) {
        MessageCode() = 2501;
        PrintNameMismatchMessage(static_cast<int>(c + 1), static_cast<int>(j + 1),
                                 static_cast<int>(k + 1), on_map[j], names[k]);
        return false;
      }
    }
  }
  return true;
}

}  // namespace gae
