#include "vcf_import/marker_names.h"

#include "input/marker_section.h"

namespace gae {

std::string MarkerNamer::Name(std::string_view id, std::string_view chromosome, int64_t position) {
  std::string name;
  if (id.empty() || id == ".") {
    ++from_position;
    name = std::string(chromosome) + "_" + std::to_string(position);
  } else {
    ++from_id;
    name = std::string(id);
  }
  bool altered = false;
  for (char& c : name) {
    if (c == ' ' || c == '\t' || c == ',' || c == '\r' || c == '\v' || c == '\f') c = '_', altered = true;
  }
  // A leading '!' would make the first marker row a remark.
  if (!name.empty() && name[0] == '!') name[0] = '_', altered = true;
  if (name.size() > kMarkerNameWidth) name.resize(kMarkerNameWidth), altered = true;
  if (given_.count(name) != 0) {
    altered = true;
    for (int n = 2;; ++n) {
      std::string suffix(1, '_');
      suffix += std::to_string(n);
      std::string numbered = name.substr(0, kMarkerNameWidth - suffix.size()) + suffix;
      if (given_.count(numbered) == 0) {
        name = std::move(numbered);
        break;
      }
    }
  }
  if (altered) ++changed;
  given_.insert(name);
  return name;
}

}  // namespace gae
