#include "prep/snp_reader.h"

#include <string_view>

#include "vocabulary/message_code.h"
#include "vocabulary/messages.h"
#include "input/anchor_section.h"
#include "input/header_fields.h"
#include "input/marker_decoders.h"
#include "input/repeated_names.h"
#include "prep/snp_calls.h"

namespace gae {

namespace {

constexpr std::size_t kNameWidth = 35;

bool Fail(int code, std::initializer_list<MsgArg> args) {
  MessageCode() = code;
  PrintMessage(code, args);
  return false;
}

bool ReadMethod(InputFile& in, int32_t& method) {
  in.SkipRemarks();
  ListRead read(in);
  if (!read.Int(method)) return Fail(kSnpMethodUnreadable, {});
  if (method < 1 || method > 2) return Fail(kSnpMethodOutOfRange, {method});
  return true;
}

// One row: the name and `count` calls, read as one list-directed read. The calls are
// normalised and checked as they come; `illegal` reports the 1-based position and the token
// of the first call that is none.
struct RowProblem {
  bool unreadable = false;
  int position = 0;
  std::string token;
};

RowProblem ReadCallRow(InputFile& in, int32_t count, std::string& name, std::vector<uint8_t>& calls) {
  RowProblem problem;
  ListRead read(in);
  if (!read.Text(name, kNameWidth)) return problem.unreadable = true, problem;
  for (int32_t k = 1; k <= count; ++k) {
    std::string token;
    if (!read.Text(token, 2)) return problem.unreadable = true, problem;
    const int call = NormaliseSnpCall(token);
    if (call < 0) {
      problem.position = k;
      problem.token = token;
      return problem;
    }
    calls.push_back(static_cast<uint8_t>(call));
  }
  return problem;
}

bool ReadParents(InputFile& in, SnpInput& out) {
  in.SkipRemarks();
  std::string name;
  for (int32_t m = 1; m <= out.num_markers; ++m) {
    const RowProblem p = ReadCallRow(in, out.num_parents, name, out.parent_calls);
    if (p.unreadable) return Fail(kSnpParentUnreadable, {m});
    if (p.position != 0) return Fail(kSnpParentIllegal, {m, p.position, p.token});
    out.names.push_back(name);
  }
  // Names are the markers' identity in the map tools, as in their marker sections.
  const std::vector<std::string_view> views(out.names.begin(), out.names.end());
  if (const auto repeat = FirstRepeatedName(views))
    return MarkerFailure(2230, static_cast<int>(repeat->later + 1),
                         static_cast<int>(repeat->earlier + 1), views[repeat->later]);
  return true;
}

bool ReadProgeny(InputFile& in, SnpInput& out) {
  in.SkipRemarks();
  std::string name;
  for (int32_t m = 1; m <= out.num_markers; ++m) {
    const RowProblem p = ReadCallRow(in, out.population_size, name, out.progeny_calls);
    if (p.unreadable) return Fail(kSnpProgenyUnreadable, {m});
    if (name != out.names[m - 1])
      return Fail(kSnpNamesDiffer, {m, name, out.names[m - 1]});
    if (p.position != 0) return Fail(kSnpProgenyIllegal, {m, p.position, p.token});
  }
  return true;
}

}  // namespace

void ReadSnpInput(InputFile& in, int tool_code, SnpInput& out) {
  MessageCode() = 0;
  out = SnpInput{};
  out.tool_code = tool_code;
  int32_t* const fields[] = {&out.population_type, &out.mapping_function, &out.space_type,
                             &out.num_markers, &out.population_size};
  const HeaderField kinds[] = {HeaderField::kPopulationType, HeaderField::kMappingFunction,
                               HeaderField::kSpaceType, HeaderField::kNumMarkers,
                               HeaderField::kPopulationSize};
  for (int i = 0; i < 5; ++i)
    if (!ReadHeaderField(in, kinds[i], tool_code, *fields[i])) return;
  out.num_parents = NumSnpParents(tool_code, out.population_type);
  if (!ReadMethod(in, out.missing_method)) return;
  if (!ReadParents(in, out)) return;
  if (!ReadProgeny(in, out)) return;
  ReadAnchorSection(in, out.names, out.anchors);
}

}  // namespace gae
