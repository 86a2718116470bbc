#include "prep/snp_design.h"

#include <string_view>

#include "input/list_reader.h"
#include "input/tool_codes.h"
#include "prep/snp_calls.h"
#include "prep/snp_input.h"
#include "prep/snp_reader.h"
#include "vocabulary/message_code.h"

namespace gae {

namespace {

bool ReadInt(InputFile& in, int32_t& value) {
  in.SkipRemarks();
  ListRead read(in);
  return read.Int(value);
}

// The calls that follow the first marker name of the parents' section on its line.
int CountFirstRowCalls(InputFile& in) {
  in.SkipRemarks();
  const int line = in.LineNumber();
  std::string_view item;
  if (!in.NextItem(item) || in.LineNumber() != line) return 0;  // the marker name
  int calls = 0;
  while (in.NextItem(item) && in.LineNumber() == line && NormaliseSnpCall(item) >= 0) ++calls;
  return calls;
}

// Share of heterozygous calls among the progeny's typed calls, read as a four-parent file.
double HeterozygousShare(const std::string& path) {
  InputFile in;
  if (!in.Open(path)) return 1.0;
  SnpInput input;
  ReadSnpInput(in, kClonalToolCode, input);
  MessageCode() = 0;
  long typed = 0, heterozygous = 0;
  for (uint8_t call : input.progeny_calls) {
    if (call == kCallNN) continue;
    ++typed;
    if (!IsHomozygousCall(call)) ++heterozygous;
  }
  return typed == 0 ? 1.0 : static_cast<double>(heterozygous) / static_cast<double>(typed);
}

const char* DesignName(int mode) {
  switch (mode) {
    case kTwoParentMode: return "two inbred parents (MAP)";
    case kClonalMode: return "a clonal F1 or double cross (CDM)";
    default: return "four- or eight-way pure lines (PLM)";
  }
}

}  // namespace

SnpDesignChoice ChooseSnpDesign(const std::string& path, int requested_mode) {
  SnpDesignChoice out;
  InputFile in;
  if (!in.Open(path)) return out.why = "the file cannot be read", out;
  int32_t header[5], method = 0;
  for (int32_t& value : header)
    if (!ReadInt(in, value)) return out.why = "its header cannot be read", out;
  if (!ReadInt(in, method)) return out.why = "its missing-parent method cannot be read", out;
  const int32_t population_type = header[0];
  out.num_parents = CountFirstRowCalls(in);
  const std::string count = std::to_string(out.num_parents) + " parents per marker";

  switch (out.num_parents) {
    case 2: out.mode = kTwoParentMode; break;
    case 8: out.mode = kFounderMode; break;
    case 4:
      if (requested_mode == kClonalMode || requested_mode == kFounderMode) {
        out.mode = requested_mode;
      } else if (requested_mode == 0) {
        // A quarter lies far from both: under a tenth in pure lines, a half or more in a
        // cross of two heterozygous parents.
        out.mode = HeterozygousShare(path) < 0.25 ? kFounderMode : kClonalMode;
      }
      break;
    default:
      return out.why = count + ": no design has that many (2 bi-parental, 4 clonal F1, double cross or four-way pure lines, 8 eight-way pure lines)", out;
  }
  if (out.mode == 0 || (requested_mode != 0 && requested_mode != out.mode)) {
    out.why = count + " do not make " + DesignName(requested_mode);
    out.mode = 0;
    return out;
  }
  // The founders' count and the population type must name the same pure lines.
  if (out.mode == kFounderMode) {
    const bool eight = population_type == 3 || population_type == 4;
    const bool four = population_type == 1 || population_type == 2;
    if ((out.num_parents == 8 && !eight) || (out.num_parents == 4 && !four)) {
      out.why = count + " with population type " + std::to_string(population_type) +
                (out.num_parents == 8 ? ": eight founders make type 3 (8PDH) or 4 (8PRIL)"
                                      : ": four founders make type 1 (4PDH) or 2 (4PRIL)");
      out.mode = 0;
      return out;
    }
  }
  out.why = count + ": " + DesignName(out.mode);
  if (out.num_parents == 4 && requested_mode == 0)
    out.why += out.mode == kFounderMode ? ", the progeny being homozygous lines" : ", the progeny being mostly heterozygous";
  return out;
}

}  // namespace gae
