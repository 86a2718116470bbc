#include "plot_sum_file.h"

#include <cerrno>
#include <cstdlib>
#include <sstream>

#include "vocabulary/fixed_format.h"

namespace gaecli {

namespace {

constexpr std::size_t kField = 20;

std::string Field(const std::string& line, std::size_t column) {
  return column < line.size() ? line.substr(column, kField) : std::string();
}

bool ToInt(const std::string& field, int32_t& value) {
  const std::string text = gae::fmt::Trim(field);
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  const long v = std::strtol(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0') return false;
  value = static_cast<int32_t>(v);
  return true;
}

// A field filled with asterisks (a value too wide to print) is no number and fails here.
bool ToReal(const std::string& field, float& value) {
  const std::string text = gae::fmt::Trim(field);
  if (text.empty()) return false;
  char* end = nullptr;
  value = std::strtof(text.c_str(), &end);
  return *end == '\0';
}

// The sections of the file: runs of non-empty lines, each headed by its column names.
std::vector<std::vector<std::string>> Sections(const std::string& text) {
  std::vector<std::vector<std::string>> sections(1);
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (gae::fmt::Trim(line).empty()) {
      if (!sections.back().empty()) sections.emplace_back();
    } else {
      sections.back().push_back(line);
    }
  }
  if (sections.back().empty()) sections.pop_back();
  return sections;
}

bool HeaderIs(const std::vector<std::string>& section, const char* word) {
  return !section.empty() && gae::fmt::Trim(Field(section[0], 0)) == word;
}

bool Fail(std::string& error, const std::string& what) {
  error = what;
  return false;
}

bool ParseListed(const std::vector<std::string>& section, std::vector<SumListed>& out, std::string& error) {
  for (std::size_t r = 1; r < section.size(); ++r) {
    SumListed m;
    if (!ToInt(Field(section[r], 0), m.number)) return Fail(error, "bad marker row: " + section[r]);
    m.name = gae::fmt::Trim(Field(section[r], kField));
    out.push_back(std::move(m));
  }
  return true;
}

}  // namespace

std::vector<const SumMarker*> SumFile::MarkersOf(int32_t group) const {
  std::vector<const SumMarker*> found;
  for (const SumMarker& m : markers)
    if (m.group == group) found.push_back(&m);
  return found;
}

bool ParseSumText(const std::string& text, SumFile& out, std::string& error) {
  out = SumFile{};
  const auto sections = Sections(text);
  // The first header keeps the reports' own spelling of its first word.
  if (sections.size() < 2 || !HeaderIs(sections[0], "ChromsomeID") || !HeaderIs(sections[1], "ChromosomeID"))
    return Fail(error, "not a map summary: the marker and chromosome tables were not found");
  for (std::size_t r = 1; r < sections[0].size(); ++r) {
    const std::string& line = sections[0][r];
    SumMarker m;
    if (!ToInt(Field(line, 0), m.group) || !ToReal(Field(line, 3 * kField), m.interval) ||
        !ToReal(Field(line, 4 * kField), m.position))
      return Fail(error, "bad marker row: " + line);
    m.group_name = gae::fmt::Trim(Field(line, kField));
    m.name = gae::fmt::Trim(Field(line, 2 * kField));
    out.markers.push_back(std::move(m));
  }
  for (std::size_t r = 1; r < sections[1].size(); ++r) {
    const std::string& line = sections[1][r];
    if (gae::fmt::Trim(Field(line, 0)) == "WholeGenome") break;
    SumGroup g;
    if (!ToInt(Field(line, 0), g.number) || !ToInt(Field(line, 2 * kField), g.num_markers) ||
        !ToReal(Field(line, 3 * kField), g.length))
      return Fail(error, "bad chromosome row: " + line);
    g.name = gae::fmt::Trim(Field(line, kField));
    out.groups.push_back(std::move(g));
  }
  for (std::size_t s = 2; s < sections.size(); ++s) {
    if (HeaderIs(sections[s], "UnlinkedMarkerID") && !ParseListed(sections[s], out.unlinked, error)) return false;
    if (HeaderIs(sections[s], "DeletedMarkerID") && !ParseListed(sections[s], out.deleted, error)) return false;
  }
  for (const SumGroup& g : out.groups) {
    if (static_cast<int32_t>(out.MarkersOf(g.number).size()) != g.num_markers)
      return Fail(error, "the chromosome table does not count the markers listed for " + g.name);
  }
  return true;
}

}  // namespace gaecli
