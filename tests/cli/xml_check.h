// A small well-formedness check for the SVG the pictures write: one root element, every tag
// closed in order, attributes quoted, entities known. Enough to catch a broken or truncated file
// without a parser dependency.
#pragma once

#include <cctype>
#include <string>
#include <vector>

namespace gae::testing {

struct XmlCheck {
  bool ok = false;
  std::string error, root;
  std::string root_attributes;  // the root tag's attribute text
};

inline XmlCheck CheckXml(const std::string& s) {
  XmlCheck r;
  std::vector<std::string> open;
  std::size_t i = 0;
  int roots = 0;
  auto fail = [&](const std::string& why) {
    r.error = why + " at " + std::to_string(i);
    return r;
  };
  auto name_char = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == ':' || c == '-' || c == '_' || c == '.'; };
  auto entity_ok = [&](std::size_t at) {
    const std::size_t end = s.find(';', at);
    if (end == std::string::npos || end - at > 10) return false;
    const std::string e = s.substr(at + 1, end - at - 1);
    if (e == "amp" || e == "lt" || e == "gt" || e == "quot" || e == "apos") return true;
    if (e.size() > 1 && e[0] == '#') return e.find_first_not_of(e[1] == 'x' ? "x0123456789abcdefABCDEF" : "0123456789", 1) == std::string::npos;
    return false;
  };
  while (i < s.size()) {
    if (s[i] == '<') {
      if (s.compare(i, 4, "<!--") == 0) {
        const std::size_t end = s.find("-->", i);
        if (end == std::string::npos) return fail("open comment");
        i = end + 3;
      } else if (s.compare(i, 9, "<![CDATA[") == 0) {
        const std::size_t end = s.find("]]>", i);
        if (end == std::string::npos || open.empty()) return fail("bad character data");
        i = end + 3;
      } else if (s.compare(i, 2, "<?") == 0) {
        const std::size_t end = s.find("?>", i);
        if (end == std::string::npos) return fail("open declaration");
        i = end + 2;
      } else if (s.compare(i, 2, "</") == 0) {
        std::size_t j = i + 2;
        while (j < s.size() && name_char(s[j])) ++j;
        const std::string name = s.substr(i + 2, j - i - 2);
        while (j < s.size() && std::isspace(static_cast<unsigned char>(s[j]))) ++j;
        if (j >= s.size() || s[j] != '>') return fail("bad end tag");
        if (open.empty() || open.back() != name) return fail("end tag " + name + " does not match");
        open.pop_back();
        i = j + 1;
      } else {
        std::size_t j = i + 1;
        while (j < s.size() && name_char(s[j])) ++j;
        const std::string name = s.substr(i + 1, j - i - 1);
        if (name.empty()) return fail("empty tag name");
        const std::size_t attributes_start = j;
        // Attributes: name = "value" or 'value', separated by blanks.
        while (true) {
          while (j < s.size() && std::isspace(static_cast<unsigned char>(s[j]))) ++j;
          if (j >= s.size()) return fail("open tag " + name);
          if (s[j] == '>' || s.compare(j, 2, "/>") == 0) break;
          const std::size_t a = j;
          while (j < s.size() && name_char(s[j])) ++j;
          if (j == a) return fail("bad attribute in " + name);
          while (j < s.size() && std::isspace(static_cast<unsigned char>(s[j]))) ++j;
          if (j >= s.size() || s[j] != '=') return fail("attribute without value in " + name);
          ++j;
          while (j < s.size() && std::isspace(static_cast<unsigned char>(s[j]))) ++j;
          if (j >= s.size() || (s[j] != '"' && s[j] != '\'')) return fail("unquoted attribute in " + name);
          const std::size_t close = s.find(s[j], j + 1);
          if (close == std::string::npos) return fail("open attribute in " + name);
          for (std::size_t k = j + 1; k < close; ++k) {
            if (s[k] == '<') return fail("'<' in attribute");
            if (s[k] == '&' && !entity_ok(k)) return fail("bad entity in attribute");
          }
          j = close + 1;
        }
        if (open.empty()) {
          if (++roots > 1) return fail("second root element");
          r.root = name;
          r.root_attributes = s.substr(attributes_start, j - attributes_start);
        }
        if (s[j] == '/') {
          i = j + 2;
        } else {
          open.push_back(name);
          i = j + 1;
        }
      }
    } else {
      if (s[i] == '&' && !entity_ok(i)) return fail("bad entity");
      if (open.empty() && !std::isspace(static_cast<unsigned char>(s[i]))) return fail("text outside the root");
      ++i;
    }
  }
  if (!open.empty()) return fail("unclosed " + open.back());
  if (roots != 1) return fail("no root element");
  r.ok = true;
  return r;
}

}  // namespace gae::testing
